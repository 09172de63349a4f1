// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Analysis/CWhiteBalance.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Analysis/PixelKernels.h"
#include "QZ/Foundation/Color/Constants.h"

namespace QZ::Foundation {

using Vector = Math::CVector3<float>;
using Matrix = Math::CMatrix3<float>;

namespace {

/// The greater of each channel; NaN in `value` never counts.
Vector Maximum(const Vector& maximum, const Vector& value)
{
    return {value.x > maximum.x ? value.x : maximum.x, value.y > maximum.y ? value.y : maximum.y,
            value.z > maximum.z ? value.z : maximum.z};
}

/// 1 / c where c is above 0, else 0.
Vector GuardedReciprocal(const Vector& v)
{
    const auto reciprocal = [](float c) { return c > 0.0f ? 1.0f / c : 0.0f; };
    return {reciprocal(v.x), reciprocal(v.y), reciprocal(v.z)};
}

/// Local surfaces in, the light out.
class TileStatistics {
public:
    void Add(const Vector& maximum, const Vector& sum)
    {
        m_normalised += sum * GuardedReciprocal(maximum);
        m_total += sum;
    }
    [[nodiscard]] Vector Light() const { return m_total * GuardedReciprocal(m_normalised); }

private:
    Vector m_normalised;
    Vector m_total;
};

/// A rectangle of pixels, the end not included.
struct Rectangle {
    std::ptrdiff_t left, top, right, bottom;
};

void AddTile(const Vector* linear, std::ptrdiff_t width, const Rectangle& tile, TileStatistics& statistics)
{
    Vector maximum;
    Vector sum;
    for (std::ptrdiff_t y = tile.top; y < tile.bottom; ++y) {
        for (std::ptrdiff_t x = tile.left; x < tile.right; ++x) {
            const Vector& pixel = linear[y * width + x];
            maximum = Maximum(maximum, pixel);
            sum += pixel;
        }
    }
    statistics.Add(maximum, sum);
}

}   // namespace

void CWhiteBalance::UCharToCVector3fBuffer(bool nonlinear, int width, int height, const unsigned char* rgba,
                                           std::vector<Vector>& out)
{
    out.resize(static_cast<std::size_t>(WrappingMultiply(width, height)));
    LinearRow(LinearOfByte(nonlinear), rgba, out.size(), out.data());
}

void CWhiteBalance::GrayWorld(CColor::EIlluminant illuminant, bool /*nonlinear*/, bool displayP3, int width,
                              int height, const std::vector<Vector>& linear, Matrix& matrix)
{
    const int count = WrappingMultiply(width, height);
    Math::CVector3<double> mean(0.0, 0.0, 0.0);
    for (std::ptrdiff_t k = 0; k < count; ++k) {
        const Vector& pixel = linear[static_cast<std::size_t>(k)];
        mean += Math::CVector3<double>(pixel.x, pixel.y, pixel.z);
    }
    mean /= static_cast<double>(count);
    const Vector light(static_cast<float>(mean.x), static_cast<float>(mean.y), static_cast<float>(mean.z));
    ChromaticAdaptationMatrix(light, illuminant, displayP3, matrix);
}

void CWhiteBalance::MaxGray(CColor::EIlluminant illuminant, bool /*nonlinear*/, bool displayP3, int width,
                            int height, const std::vector<Vector>& linear, Matrix& matrix)
{
    const int count = WrappingMultiply(width, height);
    Vector light;
    for (std::ptrdiff_t k = 0; k < count; ++k)
        light = Maximum(light, linear[static_cast<std::size_t>(k)]);
    ChromaticAdaptationMatrix(light, illuminant, displayP3, matrix);
}

int CWhiteBalance::LSRSTileDimension(bool largeTiles, int width, int height)
{
    const float pixels = static_cast<float>(WrappingMultiply(width, height));
    return TruncateToRange(std::floor(std::sqrt(pixels / (largeTiles ? 2.75f : 22.5f)) + 0.5f), 0, 65536);
}

void CWhiteBalance::LSRS(CColor::EIlluminant illuminant, bool /*nonlinear*/, bool displayP3, bool largeTiles,
                         int width, int height, const std::vector<Vector>& linear, Matrix& matrix)
{
    const std::ptrdiff_t side = LSRSTileDimension(largeTiles, width, height);
    TileStatistics statistics;
    if (side > 0) {
        for (std::ptrdiff_t bottom = height; bottom > 0; bottom -= side) {
            const std::ptrdiff_t top = std::max<std::ptrdiff_t>(bottom - side, 0);
            for (std::ptrdiff_t left = 0; left < width; left += side) {
                const std::ptrdiff_t right = std::min<std::ptrdiff_t>(left + side, width);
                AddTile(linear.data(), width, {left, top, right, bottom}, statistics);
            }
        }
    }
    ChromaticAdaptationMatrix(statistics.Light(), illuminant, displayP3, matrix);
}

void CWhiteBalance::LSRS(CColor::EIlluminant illuminant, bool /*nonlinear*/, bool displayP3,
                         const std::vector<Vector>& maxima, const std::vector<Vector>& sums, Matrix& matrix)
{
    TileStatistics statistics;
    for (std::size_t i = 0; i < maxima.size(); ++i)
        statistics.Add(maxima[i], sums[i]);
    ChromaticAdaptationMatrix(statistics.Light(), illuminant, displayP3, matrix);
}

void CWhiteBalance::SourceIlluminant(const Vector& light, CColor::EIlluminant illuminant, bool displayP3,
                                     Vector& white)
{
    Vector xyz;
    if (displayP3)
        CColor::LinearDisplayP3ToXYZ(illuminant, light, xyz);
    else
        CColor::LinearRGBToXYZ(illuminant, light, xyz);
    CColor::XYZtoXYZWithModifiedY(illuminant, xyz, 1.0f, white);
}

void CWhiteBalance::ChromaticAdaptationMatrix(const Vector& light, CColor::EIlluminant illuminant,
                                              bool displayP3, Matrix& matrix)
{
    Vector white;
    SourceIlluminant(light, illuminant, displayP3, white);
    matrix = CColor::ChromaticAdaptationMatrix(white, CColor::XYZReference(illuminant));
}

void CWhiteBalance::Balance(CColor::EIlluminant illuminant, bool nonlinear, bool displayP3,
                            const Vector& white, int width, int height, const std::vector<Vector>& linear,
                            unsigned char* rgba)
{
    const Matrix adaptation = CColor::ChromaticAdaptationMatrix(white, CColor::XYZReference(illuminant));
    const BalanceArguments arguments{
        Constants::LinearRGBToXYZ(illuminant), adaptation,
        displayP3 ? Constants::XYZToLinearDisplayP3(illuminant) : Constants::XYZToLinearRGB(illuminant),
        nonlinear ? TruncatedSRGBByte() : TruncatedUnitByte(), !displayP3};
    const int count = WrappingMultiply(width, height);
    if (count > 0)
        BalanceRow(arguments, linear.data(), static_cast<std::size_t>(count), rgba);
}

}   // namespace QZ::Foundation
