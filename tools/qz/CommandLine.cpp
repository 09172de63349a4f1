// SPDX-License-Identifier: MIT
#include "tools/qz/CommandLine.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <new>
#include <utility>

#include "tools/qz/commands/Commands.h"

namespace QZ::Tool {

namespace {

// Help with the examples before everything else: they are what most readers came for.
class ExamplesFirst : public CLI::Formatter {
public:
    ExamplesFirst() { column_width(32); }

    std::string make_description(const CLI::App* app) const override
    {
        return app->get_description() + "\n\nExamples:\n" + app->get_footer() + "\n";
    }
    std::string make_footer(const CLI::App*) const override { return {}; }
};

std::string Examples(std::initializer_list<CommandLine::Example> examples)
{
    std::size_t width = 0;
    for (const auto& example : examples)
        width = std::max(width, example.line.size());
    std::string text;
    for (const auto& example : examples)
        text +=
            "  " + example.line + std::string(width + 3 - example.line.size(), ' ') + example.effect + "\n";
    return text;
}

void Complain(std::string_view message)
{
    const std::string line = "qz: " + OneLine(message) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

// Results that did not reach their reader are not results.
void FlushResults()
{
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        throw Failure(Status::Output, "standard output", std::strerror(errno), "");
}

// The help and the version are errors to the parser, too.
Status UsageStatus(const CLI::ParseError& error, const CLI::App& app, const CLI::App* command)
{
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
        app.exit(error);   // prints the help or the version
        std::cout.flush();
        FlushResults();
        return Status::Done;
    }
    const std::string name = command != nullptr ? "qz " + command->get_name() : "qz";
    throw Failure(Status::Usage, command != nullptr ? command->get_name() : "", error.what(),
                  "try '" + name + " --help'");
}

}   // namespace

CommandLine::CommandLine()
    : m_app(std::make_unique<CLI::App>(
          "qz: colour science and image analysis on pictures, with the QZFoundation library.", "qz"))
{
    m_app->formatter(std::make_shared<ExamplesFirst>());
    m_app->require_subcommand(1);
    m_app->set_help_flag("-h,--help", "Print this help and exit");
    m_app->set_version_flag("--version", "qz " QZ_VERSION, "Print the version and exit");
    m_app->get_formatter()->label("SUBCOMMAND", "COMMAND");
    m_app->get_formatter()->label("Subcommands", "Commands");
    m_app->footer(Examples({{"qz tones photo.jpg tones.png", "a photograph in a few greys"},
                            {"qz tones --help", "a command's options, examples first"},
                            {"qz demo shown", "all commands at work, in shown/index.html"}}));
    RegisterCommands(*this);
}

CommandLine::~CommandLine() = default;

Command CommandLine::Add(const std::string& name, const std::string& summary,
                         std::initializer_list<Example> examples, Action action)
{
    CLI::App& command = *m_app->add_subcommand(name, summary);
    command.footer(Examples(examples));
    command.add_flag("-q,--quiet", m_context.quiet, "No remarks, no progress: failures only");
    command.add_flag("-f,--force", m_context.force, "Replace an output that exists");
    m_actions[&command] = std::move(action);
    return Command(command);
}

void CommandLine::AddJson(Command& command)
{
    command.AddFlag("--json", m_context.json, "Print what was measured as JSON");
}

const CLI::App* CommandLine::Chosen() const
{
    const auto chosen = m_app->get_subcommands();
    return chosen.empty() ? nullptr : chosen.front();
}

int CommandLine::Run(int argc, const char* const* argv)
{
    Status status = Status::Bug;
    try {
        status = ParseAndRun(argc, argv);
    } catch (const Failure& failure) {
        m_context.Progress({});
        Complain(failure.what());
        status = failure.status;
    } catch (const std::bad_alloc&) {
        m_context.Progress({});
        Complain("not enough memory for this picture; try a smaller one");
        status = Status::Malformed;
    } catch (const std::exception& error) {
        m_context.Progress({});
        Complain(std::string("an error of qz itself: ") + error.what() +
                 "; please report it with the command line");
        status = Status::Bug;
    }
    return static_cast<int>(status);
}

Status CommandLine::ParseAndRun(int argc, const char* const* argv)
{
    // Told apart from no command at all, which the parser does not do.
    const auto isNamed = [&](const auto& command) { return command.first->get_name() == argv[1]; };
    if (argc > 1 && argv[1][0] != '-' && std::none_of(m_actions.begin(), m_actions.end(), isNamed))
        throw Failure(Status::Usage, argv[1], "no such command", "try 'qz --help'");
    try {
        m_app->parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return UsageStatus(error, *m_app, Chosen());
    }
    const Status status = m_actions.at(Chosen())(m_context);
    m_context.Progress({});
    FlushResults();
    return status;
}

}   // namespace QZ::Tool
