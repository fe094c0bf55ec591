#include "SummaryReporter.h"

#include <cstdio>

void SummaryReporter::ReportRuns(const std::vector<Run>& reports)
{
    benchmark::ConsoleReporter::ReportRuns(reports);
    for (const Run& run : reports) {
        // Each benchmark is repeated; the median of the repetitions is the
        // figure least disturbed by whatever else the machine is doing.
        if (run.error_occurred || run.run_type != Run::RT_Aggregate || run.aggregate_name != "median")
            continue;
        const std::string name = run.benchmark_name();
        const std::size_t slash = name.find('/');
        if (slash == std::string::npos)
            continue;
        const std::string operation = name.substr(0, slash);
        const std::string side = name.substr(slash + 1, name.find('/', slash + 1) - slash - 1);
        const double ms = run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e3;
        if (!m_times.count(operation))
            m_order.push_back(operation);
        auto& entry = m_times[operation];
        if (side == "ours")
            entry.first = ms;
        else if (side == "floor")
            entry.second = ms;
    }
}

void SummaryReporter::printSummary() const
{
    std::printf("\n%-34s %12s %12s %12s\n", "operation (10,000 entries)", "ours ms", "floor ms", "ours/floor");
    for (const std::string& operation : m_order) {
        const auto& entry = m_times.at(operation);
        const double ratio = entry.second > 0 ? entry.first / entry.second : 0;
        std::printf("%-34s %12.3f %12.3f %12.2f\n", operation.c_str(), entry.first, entry.second, ratio);
    }
    std::fflush(stdout);
}
