// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieReader/PrimariesConversion.h"

#include <algorithm>
#include <cmath>

namespace QZ::Platform::Movie {

namespace {

using Matrix3 = Math::CMatrix3<double>;
using Vector3 = Math::CVector3<double>;

struct Chromaticities {
    AVColorPrimaries name;
    double redX, redY, greenX, greenY, blueX, blueY;
};

// The white of all of them is D65.
constexpr double kWhiteX = 0.3127, kWhiteY = 0.3290;

constexpr Chromaticities kBT709 = {AVCOL_PRI_BT709, 0.640, 0.330, 0.300,
                                   0.600,           0.150, 0.060};   // ITU-R BT.709-6
constexpr Chromaticities kOthers[] = {
    {AVCOL_PRI_SMPTE170M, 0.630, 0.340, 0.310, 0.595, 0.155, 0.070},   // ITU-R BT.601-7, 525 lines
    {AVCOL_PRI_SMPTE240M, 0.630, 0.340, 0.310, 0.595, 0.155, 0.070},   // SMPTE 240M-1999
    {AVCOL_PRI_BT470BG, 0.640, 0.330, 0.290, 0.600, 0.150, 0.060},     // ITU-R BT.601-7, 625 lines
    {AVCOL_PRI_BT2020, 0.708, 0.292, 0.170, 0.797, 0.131, 0.046},      // ITU-R BT.2020-2
    {AVCOL_PRI_SMPTE432, 0.680, 0.320, 0.265, 0.690, 0.150, 0.060},    // SMPTE EG 432-1:2010 (Display P3)
};

// Fine enough that a step is a fifth of an encoded level where the curve is steepest.
constexpr int kSteps = 1 << 14;

const Chromaticities* Find(AVColorPrimaries primaries)
{
    const auto* found = std::find_if(std::begin(kOthers), std::end(kOthers),
                                     [&](const Chromaticities& c) { return c.name == primaries; });
    return found == std::end(kOthers) ? nullptr : found;
}

Matrix3 Inverse(const Matrix3& m)
{
    const auto cofactor = [&](int row, int column) {
        const int r1 = (row + 1) % 3, r2 = (row + 2) % 3, c1 = (column + 1) % 3, c2 = (column + 2) % 3;
        return m(r1, c1) * m(r2, c2) - m(r1, c2) * m(r2, c1);
    };
    const double determinant = m(0, 0) * cofactor(0, 0) + m(0, 1) * cofactor(0, 1) + m(0, 2) * cofactor(0, 2);
    Matrix3 inverse;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            inverse(row, column) = cofactor(column, row) / determinant;
    return inverse;
}

// The column of each primary is scaled so that equal parts of all three make the white (SMPTE RP 177-1993).
Matrix3 ToXYZ(const Chromaticities& c)
{
    const Matrix3 columns(c.redX, c.greenX, c.blueX, c.redY, c.greenY, c.blueY, 1 - c.redX - c.redY,
                          1 - c.greenX - c.greenY, 1 - c.blueX - c.blueY);
    const Vector3 white(kWhiteX / kWhiteY, 1.0, (1 - kWhiteX - kWhiteY) / kWhiteY);
    Matrix3 scale;
    scale.Scale(Inverse(columns) * white);
    return columns * scale;
}

// IEC 61966-2-1:1999, clause 5
double ToLinear(double encoded)
{
    return encoded <= 0.04045 ? encoded / 12.92 : std::pow((encoded + 0.055) / 1.055, 2.4);
}

double ToEncoded(double linear)
{
    return linear <= 0.0031308 ? linear * 12.92 : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
}

}   // namespace

bool PrimariesConversion::IsNeeded(AVColorPrimaries primaries)
{
    return Find(primaries) != nullptr;
}

PrimariesConversion::PrimariesConversion(AVColorPrimaries primaries)
    : m_matrix(Inverse(ToXYZ(kBT709)) * ToXYZ(*Find(primaries))), m_encoded(kSteps + 1)
{
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            m_floatMatrix(row, column) = static_cast<float>(m_matrix(row, column));
    for (std::size_t level = 0; level < m_linear.size(); ++level)
        m_linear[level] = static_cast<float>(ToLinear(static_cast<double>(level) / 255));
    for (std::size_t step = 0; step < m_encoded.size(); ++step)
        m_encoded[step] =
            static_cast<unsigned char>(255 * ToEncoded(static_cast<double>(step) / kSteps) + 0.5);
}

unsigned char PrimariesConversion::Encoded(float linear) const
{
    return m_encoded[static_cast<std::size_t>(std::clamp(linear, 0.0f, 1.0f) * kSteps + 0.5f)];
}

void PrimariesConversion::Convert(unsigned char* bgra, int count) const
{
    for (const unsigned char* end = bgra + 4 * static_cast<std::ptrdiff_t>(count); bgra != end; bgra += 4) {
        const Math::CVector3<float> source(m_linear[bgra[2]], m_linear[bgra[1]], m_linear[bgra[0]]);
        const Math::CVector3<float> linear = m_floatMatrix * source;
        bgra[0] = Encoded(linear.z);
        bgra[1] = Encoded(linear.y);
        bgra[2] = Encoded(linear.x);
    }
}

}   // namespace QZ::Platform::Movie
