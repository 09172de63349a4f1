// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>

#include "tools/qz/Context.h"
#include "tools/qz/Failure.h"

namespace QZ::Tool {

/// The command line of qz: the commands that registered themselves, and the options that all share.
class CommandLine {
public:
    using Action = std::function<Status(Context&)>;

    /// An example of a command's help: the line to type and what it does.
    struct Example {
        std::string line;
        std::string effect;
    };

    CommandLine();

    /// Adds a command with the options common to all (--quiet, --force, --help).
    /// \param action  runs after the command line was parsed; keep the command's options alive by capturing
    ///                them.
    /// \return  the command, for its own options.
    CLI::App& Add(const std::string& name, const std::string& summary,
                  std::initializer_list<Example> examples, Action action);

    /// Adds --json to a command that measures something.
    void AddJson(CLI::App& command);

    /// Parses and runs.
    /// \return  the exit status. Every failure ends here, as one line on standard error.
    int Run(int argc, const char* const* argv);

private:
    Status ParseAndRun(int argc, const char* const* argv);
    Status UsageStatus(const CLI::ParseError& error);
    const CLI::App* Chosen() const;

    CLI::App m_app;
    Context m_context;
    std::map<const CLI::App*, Action> m_actions;
};

/// A number within [low, high]; NaN is outside.
[[nodiscard]] CLI::Validator Between(double low, double high);
/// Any number but NaN and the infinities.
[[nodiscard]] CLI::Validator Finite();

}   // namespace QZ::Tool
