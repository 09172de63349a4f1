// SPDX-License-Identifier: MIT
#include "tools/qz/color/ColorValue.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <vector>

#include "tools/qz/Failure.h"

namespace QZ::Tool {

namespace {

using nlohmann::ordered_json;

constexpr std::string_view kBlanks = " \t\n\r";

[[noreturn]] void Refuse(std::string_view text, const std::string& what, const std::string& remedy)
{
    throw Failure(Status::Usage, std::string(text), what, remedy);
}

std::string_view Trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool IsHexColor(std::string_view digits)
{
    return digits.size() == 6 && digits.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

Triple DecodeHex(std::string_view digits)
{
    unsigned value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    const auto channel = [&](unsigned shift) { return static_cast<float>(value >> shift & 0xFFu) / 255.0f; };
    return FindSpace("srgb")->to(CColor::eD65, {channel(16), channel(8), channel(0)});
}

float ParseNumber(std::string_view whole, std::string_view number)
{
    float value = 0.0f;
    const char* end = number.data() + number.size();
    const auto [stop, error] = std::from_chars(number.data(), end, value);
    if (error != std::errc() || stop != end || !std::isfinite(value))
        Refuse(whole, "'" + std::string(number) + "' is not a number", "write numbers like 0.25 or -1e-3");
    return value;
}

std::vector<float> ParseNumbers(std::string_view whole, std::string_view list)
{
    std::vector<float> numbers;
    while (!Trimmed(list).empty()) {
        list = Trimmed(list);
        const auto end = std::min(list.find_first_of(", \t\n\r"), list.size());
        numbers.push_back(ParseNumber(whole, list.substr(0, end)));
        list = Trimmed(list.substr(end));
        if (list.starts_with(',')) {
            list.remove_prefix(1);
            if (Trimmed(list).empty())
                Refuse(whole, "a number is missing after the last comma", "");
        }
    }
    return numbers;
}

std::string AllNames()
{
    std::string names;
    for (const Space& space : Spaces())
        names += (names.empty() ? "" : ", ") + std::string(space.name);
    return names;
}

std::string Number(float value)
{
    char text[48];
    std::snprintf(text, sizeof text, "%10.5f", static_cast<double>(value));
    return text;
}

std::string Values(const Space& space, CColor::EIlluminant white, const Triple& linear)
{
    const Triple value = space.from(white, linear);
    std::string text;
    for (int i = 0; i < 3; ++i)
        text += i < space.Size() ? Number(value[i]) : std::string(10, ' ');
    return text;
}

std::string Row(std::string_view name, std::string_view letters, const std::string& values)
{
    char text[160];
    std::snprintf(text, sizeof text, "%-18s %-8s", std::string(name).c_str(), std::string(letters).c_str());
    std::string row = text + values;
    row.erase(row.find_last_not_of(' ') + 1);
    return row + "\n";
}

// The double that prints as the shortest decimal which names the float: 0.2f prints as 0.2.
ordered_json JsonNumber(float value)
{
    if (!std::isfinite(value))
        return nullptr;
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    double shortest = 0.0;
    std::from_chars(text, end, shortest);
    return shortest;
}

ordered_json JsonValues(const Space& space, CColor::EIlluminant white, const Triple& linear)
{
    const Triple value = space.from(white, linear);
    ordered_json numbers = ordered_json::array();
    for (int i = 0; i < space.Size(); ++i)
        numbers.push_back(JsonNumber(value[i]));
    return numbers;
}

}   // namespace

Triple ParseColor(std::string_view text, CColor::EIlluminant white)
{
    const std::string_view value = Trimmed(text);
    const std::string_view digits = value.starts_with('#') ? value.substr(1) : value;
    if (IsHexColor(digits))
        return DecodeHex(digits);
    const auto open = value.find('(');
    if (value.starts_with('#') || open == std::string_view::npos)
        Refuse(text, "not a colour", "write #rrggbb or a space with its values, like 'lab(0.6, 0.1, -0.2)'");
    if (!value.ends_with(')'))
        Refuse(text, "the closing parenthesis is missing", "write it like 'lab(0.6, 0.1, -0.2)'");
    const std::string_view name = Trimmed(value.substr(0, open));
    const Space* space = FindSpace(name);
    if (space == nullptr)
        Refuse(text, "no colour space '" + std::string(name) + "'", "there are " + AllNames());
    const auto numbers = ParseNumbers(text, value.substr(open + 1, value.size() - open - 2));
    if (numbers.size() != static_cast<std::size_t>(space->Size()))
        Refuse(text, "found " + std::to_string(numbers.size()) + " numbers",
               std::string(space->name) + " takes " + std::to_string(space->Size()) + " (" +
                   std::string(space->letters) + ")");
    Triple in(numbers[0], 0.0f, 0.0f);
    if (space->Size() == 3)
        in = {numbers[0], numbers[1], numbers[2]};
    return space->to(white, in);
}

std::array<unsigned char, 3> SRGBBytes(const Triple& linear)
{
    const Triple srgb = CColor::Clamp(FindSpace("srgb")->from(CColor::eD65, linear), 0.0f, 1.0f);
    const auto byte = [](float c) { return static_cast<unsigned char>(c * 255.0f + 0.5f); };
    return {byte(srgb.x), byte(srgb.y), byte(srgb.z)};
}

bool InSRGB(const Triple& linear)
{
    constexpr float kHalfLevel = 0.5f / 255.0f;
    const Triple srgb = FindSpace("srgb")->from(CColor::eD65, linear);
    const auto held = [](float c) { return c >= -kHalfLevel && c <= 1.0f + kHalfLevel; };
    return held(srgb.x) && held(srgb.y) && held(srgb.z);
}

std::string HexOf(const unsigned char* rgb)
{
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", rgb[0], rgb[1], rgb[2]);
    return text;
}

std::string DescribeColor(const Triple& linear)
{
    std::string text = HexOf(SRGBBytes(linear).data());
    text += InSRGB(linear) ? "\n\n" : "  (the colour lies outside sRGB: clipped)\n\n";
    for (const Space& space : Spaces())
        if (!space.HasWhite())
            text += Row(space.name, space.letters, Values(space, CColor::eD65, linear));
    text += "\n" + Row("", "", std::string(26, ' ') + "D50" + std::string(31, ' ') + "D65");
    for (const Space& space : Spaces())
        if (space.HasWhite())
            text += Row(space.name, space.letters,
                        Values(space, CColor::eD50, linear) + "    " + Values(space, CColor::eD65, linear));
    return text;
}

ordered_json ColorAsJson(const Triple& linear)
{
    ordered_json document;
    document["hex"] = HexOf(SRGBBytes(linear).data());
    document["inSRGB"] = InSRGB(linear);
    document["spaces"] = ordered_json::object();
    for (const Space& space : Spaces()) {
        const std::string name(space.name);
        if (!space.HasWhite()) {
            document["spaces"][name] = JsonValues(space, CColor::eD65, linear);
            continue;
        }
        document["D50"][name] = JsonValues(space, CColor::eD50, linear);
        document["D65"][name] = JsonValues(space, CColor::eD65, linear);
    }
    return document;
}

}   // namespace QZ::Tool
