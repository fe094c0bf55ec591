#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

// The few statistics every benchmark reports, one definition for all.
namespace BenchFigures {

using Clock = std::chrono::steady_clock;

inline double msSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// The value below which p percent of values lie; 0 for none.
inline double percentile(std::vector<double> values, int p)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, values.size() * size_t(p) / 100)];
}

inline double median(const std::vector<double>& values)
{
    return percentile(values, 50);
}

} // namespace BenchFigures
