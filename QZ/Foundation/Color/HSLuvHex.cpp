// SPDX-License-Identifier: MIT
#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "QZ/Foundation/Color/HSLuv.h"

namespace {

/// The shortest decimal that reads back as the same number.
std::string ShortestDecimal(double value)
{
    char buffer[32];
    const auto end = std::to_chars(std::begin(buffer), std::end(buffer), value).ptr;
    return {std::begin(buffer), end};
}

/// The value of a hexadecimal digit, 0 to 15; -1 for any other character.
int DigitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

/// A hexadecimal number as HSLuv.h describes it; none when there is no digit.
std::optional<std::uint32_t> ScanHexInt(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    if (text.starts_with("0x") || text.starts_with("0X"))
        text.remove_prefix(2);
    if (text.empty() || DigitValue(text.front()) < 0)
        return std::nullopt;

    std::uint32_t value = 0;
    for (const char c : text) {
        const int digit = DigitValue(c);
        if (digit < 0)
            break;
        if (value > 0x0FFFFFFFu)
            return 0xFFFFFFFFu;
        value = value * 16u + static_cast<std::uint32_t>(digit);
    }
    return value;
}

}   // namespace

double checkBorders(double c)
{
    return c < 0.0 ? 0.0 : std::min(1.0, c);
}

double roundTo6decimals(double c)
{
    const double rounded = std::round(c * 1000000.0) / 1000000.0;
    if (rounded < 0.0 || rounded > 1.0)
        throw std::out_of_range("Illegal rgb value: " + ShortestDecimal(rounded));
    return rounded;
}

std::string rgbToHex(double r, double g, double b)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text = "#";
    for (const double channel : {roundTo6decimals(r), roundTo6decimals(g), roundTo6decimals(b)}) {
        const auto value = static_cast<std::size_t>(channel > 0.0 ? std::round(channel * 255.0) : 0.0);
        text += digits[value / 16];
        text += digits[value % 16];
    }
    return text;
}

bool hexToRgb(const std::string& text, double* r, double* g, double* b)
{
    if (text.size() < 7)
        return false;
    const std::size_t first = text.front() == '#' ? 1 : 0;
    const auto pair = [&](std::size_t i) { return ScanHexInt(std::string_view(text).substr(first + i, 2)); };
    const auto red = pair(0);
    const auto green = pair(2);
    const auto blue = pair(4);
    if (!red || !green || !blue)
        return false;
    *r = *red / 255.0;
    *g = *green / 255.0;
    *b = *blue / 255.0;
    return true;
}

bool hexToInt(const std::string& text, std::uint32_t* value)
{
    const auto scanned = ScanHexInt(text);
    if (scanned)
        *value = *scanned;
    return scanned.has_value();
}
