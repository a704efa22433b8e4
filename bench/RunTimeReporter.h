#pragma once

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <map>
#include <string>
#include <vector>

// The console table as usual, plus the CPU seconds per iteration of every run, for a summary.
class RunTimeReporter : public benchmark::ConsoleReporter
{
public:
    using ConsoleReporter::ConsoleReporter;

    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.error_occurred || run.run_type != Run::RT_Iteration)
                continue;
            m_seconds[run.benchmark_name()] =
                run.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
        }
    }

protected:
    const std::map<std::string, double> &seconds() const { return m_seconds; }

private:
    std::map<std::string, double> m_seconds;
};

// Runs every registered benchmark with Reporter (aligned columns on a terminal, tabular into a
// file or pipe), then prints the reporter's summary.
template <class Reporter>
void runAndSummarize()
{
    Reporter reporter(isatty(STDOUT_FILENO) ? benchmark::ConsoleReporter::OO_Defaults
                                            : benchmark::ConsoleReporter::OO_Tabular);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printSummary();
}
