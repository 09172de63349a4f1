// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>

#include "tools/qz/Command.h"
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
    ~CommandLine();

    /// Adds a command with the options common to all (--quiet, --force, --help).
    /// \param action  runs after the command line was parsed; keep the command's options alive by capturing
    ///                them.
    /// \return  the command, for its own options.
    Command Add(const std::string& name, const std::string& summary, std::initializer_list<Example> examples,
                Action action);

    /// Adds --json to a command that measures something.
    void AddJson(Command& command);

    /// Parses and runs.
    /// \return  the exit status. Every failure ends here, as one line on standard error.
    int Run(int argc, const char* const* argv);

private:
    Status ParseAndRun(int argc, const char* const* argv);
    const CLI::App* Chosen() const;

    std::unique_ptr<CLI::App> m_app;
    Context m_context;
    std::map<const CLI::App*, Action> m_actions;
};

}   // namespace QZ::Tool
