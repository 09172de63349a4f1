// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace QZ::Bench {

/// Prints as usual and keeps the best processor time for an item of each benchmark.
class BestOfRuns : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const auto items = run.counters.find("items_per_second");
            if (run.run_type != Run::RT_Iteration || items == run.counters.end())
                continue;
            double& best = m_best.try_emplace(run.run_name.function_name, std::numeric_limits<double>::max())
                               .first->second;
            best = std::min(best, 1e9 / items->second);
        }
    }

    /// In nanoseconds; none of a benchmark that did not run.
    [[nodiscard]] std::optional<double> Of(const std::string& name) const
    {
        const auto found = m_best.find(name);
        return found == m_best.end() ? std::nullopt : std::optional(found->second);
    }

private:
    std::map<std::string, double> m_best;
};

/// Runs every benchmark several times, all in turn, with the options of the command line.
/// \return  whether the options were understood.
inline bool RunInTurn(int argc, char** argv, BestOfRuns& reporter)
{
    // Later arguments win over these.
    std::vector<char*> arguments = {argv[0]};
    std::string defaults[] = {"--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=7",
                              "--benchmark_min_time=0.1"};
    for (std::string& argument : defaults)
        arguments.push_back(argument.data());
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return false;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return true;
}

}   // namespace QZ::Bench
