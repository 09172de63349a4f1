// SPDX-License-Identifier: MIT
#include "tools/qz/Command.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <cmath>
#include <optional>
#include <sstream>

namespace QZ::Tool {

Option& Option::Required()
{
    m_option->required();
    return *this;
}

Option& Option::Finite()
{
    m_option->check(CLI::Validator(
        [](std::string& input) {
            double value = 0.0;
            if (CLI::detail::lexical_cast(input, value) && std::isfinite(value))
                return std::string();
            return input + " is not a number";
        },
        "NUMBER"));
    return *this;
}

Option& Option::Between(double low, double high)
{
    std::ostringstream range;
    range << "[" << low << " - " << high << "]";
    m_option->check(CLI::Validator(
        [low, high, text = range.str()](std::string& input) {
            double value = 0.0;
            if (CLI::detail::lexical_cast(input, value) && value >= low && value <= high)
                return std::string();
            return input + " is not a number in " + text;
        },
        range.str()));
    return *this;
}

Option& Option::InRange(std::int64_t low, std::int64_t high)
{
    m_option->check(CLI::Range(low, high).description(""));
    return *this;
}

Option& Option::OneOf(const std::vector<std::string>& values)
{
    m_option->check(CLI::IsMember(values).description(""));
    return *this;
}

Option& Option::Needs(const std::string& option)
{
    m_option->needs(option);
    return *this;
}

Option& Option::TypeName(const std::string& name)
{
    m_option->type_name(name);
    return *this;
}

Option& Option::Group(const std::string& heading)
{
    m_option->group(heading);
    return *this;
}

Option& Option::Description(const std::string& text)
{
    m_option->description(text);
    return *this;
}

template <class T>
Option Command::AddOption(const std::string& names, T& value, const std::string& text)
{
    return Option(*m_app->add_option(names, value, text));
}

template Option Command::AddOption(const std::string&, int&, const std::string&);
template Option Command::AddOption(const std::string&, std::uint64_t&, const std::string&);
template Option Command::AddOption(const std::string&, float&, const std::string&);
template Option Command::AddOption(const std::string&, double&, const std::string&);
template Option Command::AddOption(const std::string&, std::string&, const std::string&);
template Option Command::AddOption(const std::string&, std::optional<double>&, const std::string&);
template Option Command::AddOption(const std::string&, std::optional<std::string>&, const std::string&);

Option Command::AddFlag(const std::string& name, bool& value, const std::string& text)
{
    return Option(*m_app->add_flag(name, value, text));
}

Option Command::AddText(const std::string& name, const std::function<void(const std::string&)>& take,
                        const std::string& text)
{
    return Option(*m_app->add_option_function<std::string>(name, take, text));
}

Option Command::AddNumbers(const std::string& name, std::size_t count,
                           const std::function<void(const std::vector<float>&)>& take,
                           const std::string& text)
{
    const auto parse = [name, count, take](const std::string& list) {
        std::vector<float> numbers;
        for (const std::string& word : CLI::detail::split(list, ',')) {
            float number = 0.0f;
            if (!CLI::detail::lexical_cast(word, number) || !std::isfinite(number))
                RefuseValue(name + ": '" + word + "' is not a number");
            numbers.push_back(number);
        }
        if (numbers.size() != count)
            RefuseValue(name + ": wants " + std::to_string(count) + " numbers parted by commas");
        take(numbers);
    };
    return AddText(name, parse, text).TypeName("LIST");
}

Option Command::Find(const std::string& name) const
{
    return Option(*m_app->get_option(name));
}

void RefuseValue(const std::string& message)
{
    throw CLI::ValidationError(message);
}

}   // namespace QZ::Tool
