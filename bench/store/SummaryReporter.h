#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

// Console output as usual, and at the end one line per operation with the
// module's time, the floor's time (medians of the repetitions) and their ratio. Benchmarks are named
// "<operation>/ours" and "<operation>/floor".
class SummaryReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& reports) override;
    void printSummary() const;

private:
    // Milliseconds per iteration by operation: ours, floor.
    std::map<std::string, std::pair<double, double>> m_times;
    std::vector<std::string> m_order;
};
