// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}   // namespace CLI

namespace QZ::Tool {

// The parser of the command line is a library of headers, slow to compile: Command.cpp and CommandLine.cpp
// alone include it.

/// An option or an operand of a command, to be described further.
class Option {
public:
    explicit Option(CLI::Option& option) : m_option(&option) {}

    Option& Required();
    /// Any number but NaN and the infinities.
    Option& Finite();
    /// A number within [low, high]; NaN is outside.
    Option& Between(double low, double high);
    /// A whole number within [low, high].
    Option& InRange(std::int64_t low, std::int64_t high);
    Option& OneOf(const std::vector<std::string>& values);
    /// Refused without another option.
    Option& Needs(const std::string& option);

    /// What the help calls the value.
    Option& TypeName(const std::string& name);
    /// The heading under which the help lists the option.
    Option& Group(const std::string& heading);
    Option& Description(const std::string& text);

private:
    CLI::Option* m_option;
};

/// A command that takes options. A handle: copies are the same command.
class Command {
public:
    explicit Command(CLI::App& app) : m_app(&app) {}

    /// \param names  "-n,--count", or "OUT" of an operand
    /// \param value  outlives the parsing. T: int, std::uint64_t, float, double, std::string, or std::optional of the
    ///               last two.
    template <class T>
    Option AddOption(const std::string& names, T& value, const std::string& text);
    Option AddFlag(const std::string& name, bool& value, const std::string& text);

    /// An option whose text is given to a function, which may refuse it.
    Option AddText(const std::string& name, const std::function<void(const std::string&)>& take,
                   const std::string& text);
    /// An option that takes as many finite numbers, parted by commas: "0.5,1,2".
    Option AddNumbers(const std::string& name, std::size_t count,
                      const std::function<void(const std::vector<float>&)>& take, const std::string& text);

    /// An option that was added.
    [[nodiscard]] Option Find(const std::string& name) const;

private:
    CLI::App* m_app;
};

/// Ends the parsing: the command line is wrong.
[[noreturn]] void RefuseValue(const std::string& message);

}   // namespace QZ::Tool
