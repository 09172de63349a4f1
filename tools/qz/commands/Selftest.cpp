// SPDX-License-Identifier: MIT
#include "tools/qz/selftest/Selftest.h"

#include <memory>
#include <nlohmann/json.hpp>

#include "tools/qz/CommandLine.h"
#include "tools/qz/commands/Commands.h"

namespace QZ::Tool {

namespace {

struct Options {
    bool list = false;
};

nlohmann::ordered_json AsJson(const std::vector<Selftest::Outcome>& outcomes)
{
    auto document = nlohmann::ordered_json::array();
    for (const auto& outcome : outcomes)
        document.push_back({{"target", outcome.target},
                            {"functions", outcome.lines.size()},
                            {"different", outcome.different}});
    return document;
}

Status Run(const Options& options, const Context& context)
{
    const auto outcomes = Selftest::Run(
        [&](const std::string& target, const std::string& name) { context.Progress(target + ": " + name); });
    context.Progress("");

    std::size_t different = 0;
    for (const auto& outcome : outcomes)
        different += outcome.different.size();
    if (options.list) {
        context.Print(Selftest::AsText(outcomes[0].lines) + Selftest::AsText(outcomes[1].lines));
    } else if (context.json) {
        context.PrintJson(AsJson(outcomes));
    } else {
        for (const auto& outcome : outcomes) {
            for (const std::string& name : outcome.different)
                context.Print(outcome.target + ": " + name + " differs\n");
            context.Print(outcome.target + ": " + std::to_string(outcome.different.size()) + " of " +
                          std::to_string(outcome.lines.size()) + " lines differ\n");
        }
    }
    return different == 0 || options.list ? Status::Done : Status::Different;
}

}   // namespace

void RegisterSelftest(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    Command command =
        line.Add("selftest",
                 "Check that this machine computes the same bits as every other.\n"
                 "Hashes the results of every conversion and every analysis over fixed inputs, on\n"
                 "each instruction set of the machine, and compares them with the list that came\n"
                 "with the program. Exit status 1 when a line differs.",
                 {{"qz selftest", "0 lines differ, or the names of those that do"},
                  {"qz selftest --list >expected.txt", "the list of this machine"}},
                 [options](Context& context) { return Run(*options, context); });
    command.AddFlag("--list", options->list, "Print the list instead of comparing it");
    line.AddJson(command);
}

}   // namespace QZ::Tool
