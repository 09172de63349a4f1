// SPDX-License-Identifier: MIT
#include "tools/qz/io/Profile.h"

#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>

#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Tool {

using Foundation::CColor;
using Math::CMatrix3;
using Math::CVector3;

namespace {

using Bytes = std::vector<unsigned char>;

void PutNumber(Bytes& out, std::uint32_t value, int bytes)
{
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        out.push_back(static_cast<unsigned char>(value >> shift & 0xFF));
}

void PutText(Bytes& out, std::string_view text)
{
    out.insert(out.end(), text.begin(), text.end());
}

// s15Fixed16Number (4.6).
void PutFixed(Bytes& out, double value)
{
    PutNumber(out, static_cast<std::uint32_t>(static_cast<std::int32_t>(std::lround(value * 65536.0))), 4);
}

Bytes Element(std::string_view signature)
{
    Bytes element;
    PutText(element, signature);
    PutNumber(element, 0, 4);
    return element;
}

// XYZType (10.31).
Bytes XYZ(double x, double y, double z)
{
    Bytes element = Element("XYZ ");
    for (const double value : {x, y, z})
        PutFixed(element, value);
    return element;
}

Bytes Column(const CMatrix3<float>& matrix, int column)
{
    return XYZ(matrix(0, column), matrix(1, column), matrix(2, column));
}

// multiLocalizedUnicodeType (10.15) of one ASCII text in American English.
Bytes Text(std::string_view text)
{
    constexpr std::uint32_t kRecordSize = 12;
    constexpr std::uint32_t kTextOffset = 28;
    Bytes element = Element("mluc");
    PutNumber(element, 1, 4);
    PutNumber(element, kRecordSize, 4);
    PutText(element, "enUS");
    PutNumber(element, static_cast<std::uint32_t>(2 * text.size()), 4);
    PutNumber(element, kTextOffset, 4);
    for (const char c : text)
        PutNumber(element, static_cast<unsigned char>(c), 2);
    return element;
}

// parametricCurveType (10.18), function 3: the curve of IEC 61966-2-1.
Bytes Curve()
{
    Bytes element = Element("para");
    PutNumber(element, 3, 2);
    PutNumber(element, 0, 2);
    for (const double value : {2.4, 1.0 / 1.055, 0.055 / 1.055, 1.0 / 12.92, 0.04045})
        PutFixed(element, value);
    return element;
}

// s15Fixed16ArrayType (10.22): the adaptation from D65 to the D50 of the profile connection space.
Bytes Adaptation()
{
    const CMatrix3<float> matrix = CColor::ChromaticAdaptationMatrix(CColor::XYZReference(CColor::eD65),
                                                                     CColor::XYZReference(CColor::eD50));
    Bytes element = Element("sf32");
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            PutFixed(element, matrix(row, column));
    return element;
}

using Tags = std::vector<std::pair<std::string_view, Bytes>>;

Tags TagsOf(ColorSpace colorSpace)
{
    const bool p3 = colorSpace == ColorSpace::DisplayP3;
    const CMatrix3<float>& primaries =
        p3 ? CColor::LinearDisplayP3ToXYZMatrix(CColor::eD50) : CColor::LinearRGBToXYZMatrix(CColor::eD50);
    return {{"desc", Text(p3 ? "Display P3" : "sRGB")},
            {"cprt", Text("No copyright, use freely")},
            {"wtpt", XYZ(0.9642, 1.0, 0.8249)},
            {"chad", Adaptation()},
            {"rXYZ", Column(primaries, 0)},
            {"gXYZ", Column(primaries, 1)},
            {"bXYZ", Column(primaries, 2)},
            {"rTRC", Curve()},
            {"gTRC", {}},   // an empty element stands for the one before it
            {"bTRC", {}}};
}

// The profile header (7.2), 128 bytes.
Bytes Header(std::uint32_t size)
{
    Bytes header;
    PutNumber(header, size, 4);
    PutNumber(header, 0, 4);             // no preferred module
    PutNumber(header, 0x0440'0000, 4);   // version 4.4
    PutText(header, "mntrRGB XYZ ");
    for (const std::uint32_t part : {2024u, 1u, 1u, 0u, 0u, 0u})   // a date that never changes
        PutNumber(header, part, 2);
    PutText(header, "acsp");
    header.resize(68, 0);   // no platform, device or flags; perceptual intent
    for (const double value : {0.9642, 1.0, 0.8249})
        PutFixed(header, value);
    header.resize(128, 0);
    return header;
}

}   // namespace

std::vector<unsigned char> MakeProfile(ColorSpace colorSpace)
{
    const Tags tags = TagsOf(colorSpace);
    const auto start = static_cast<std::uint32_t>(128 + 4 + 12 * tags.size());
    Bytes table;
    Bytes elements;
    PutNumber(table, static_cast<std::uint32_t>(tags.size()), 4);
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
    for (const auto& [signature, element] : tags) {
        if (!element.empty()) {
            elements.resize((elements.size() + 3) / 4 * 4, 0);
            offset = start + static_cast<std::uint32_t>(elements.size());
            length = static_cast<std::uint32_t>(element.size());
            elements.insert(elements.end(), element.begin(), element.end());
        }
        PutText(table, signature);
        PutNumber(table, offset, 4);
        PutNumber(table, length, 4);
    }
    elements.resize((elements.size() + 3) / 4 * 4, 0);
    Bytes profile = Header(start + static_cast<std::uint32_t>(elements.size()));
    profile.insert(profile.end(), table.begin(), table.end());
    profile.insert(profile.end(), elements.begin(), elements.end());
    return profile;
}

}   // namespace QZ::Tool
