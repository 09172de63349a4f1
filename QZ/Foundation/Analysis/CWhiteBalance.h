// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "QZ/Export.h"
#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Math/CMatrix3.h"
#include "QZ/Math/CVector3.h"

namespace QZ::Foundation {

/// Estimates the colour of the light in a picture, and corrects the picture for it.
///
/// Three estimators, each from linear RGB: the mean is grey (G. Buchsbaum, J. Franklin Inst. 310, 1980), the
/// brightest response of each channel is white (E. H. Land, Sci. Am. 237, 1977), and the mean over the mean
/// of local surfaces, each divided by its brightest response (S. Gao et al., "Efficient Color Constancy with
/// Local Surface Reflectance Statistics", ECCV 2014; LSRS).
///
/// **Pictures.** 8-bit RGBA, four bytes a pixel, rows without gaps; the fourth byte is ignored on input and
/// 255 on output. A linear picture is width * height colours of linear RGB, row by row, nominally from 0 to
/// 1. A picture of no pixels, or of a negative size, is none; width * height is a 32-bit integer.
///
/// **Flags.** `nonlinear`: the 8-bit values are gamma-encoded; the estimators take it and ignore it.
/// `displayP3`: the linear values have the primaries of Display P3 instead of sRGB. The illuminant is the one
/// that the picture is balanced to.
///
/// Nothing is reported, and but for the vector of UCharToCVector3fBuffer() nothing allocates. All functions
/// may be called from any thread.
/// \code
///     std::vector<QZ::Math::CVector3<float>> linear;
///     CWhiteBalance::UCharToCVector3fBuffer(true, width, height, rgba, linear);
///     QZ::Math::CVector3<float> white;   // here from a patch that should be white
///     CWhiteBalance::SourceIlluminant(patch, CColor::eD65, false, white);
///     CWhiteBalance::Balance(CColor::eD65, true, false, white, width, height, linear, rgba);
/// \endcode
class QZ_API CWhiteBalance {
public:
    /// 8-bit RGBA to linear RGB, decoded by the piecewise sRGB curve if `nonlinear`.
    /// \param out  resized to width * height.
    static void UCharToCVector3fBuffer(bool nonlinear, int width, int height, const unsigned char* rgba,
                                       std::vector<Math::CVector3<float>>& out);

    /// \name Estimators
    /// Each gives the matrix that takes XYZ under the estimated light to XYZ under the illuminant, by
    /// ChromaticAdaptationMatrix().
    /// \{

    /// The mean of the picture. No pixels give a matrix of NaN.
    static void GrayWorld(CColor::EIlluminant illuminant, bool nonlinear, bool displayP3, int width,
                          int height, const std::vector<Math::CVector3<float>>& linear,
                          Math::CMatrix3<float>& matrix);
    /// The greatest value of each channel; 0 for one that has none above 0. NaN never counts.
    static void MaxGray(CColor::EIlluminant illuminant, bool nonlinear, bool displayP3, int width, int height,
                        const std::vector<Math::CVector3<float>>& linear, Math::CMatrix3<float>& matrix);
    /// The sum of all pixels over the sum of all tiles, each tile divided by its maximum, channel by channel.
    ///
    /// The tiles are squares of LSRSTileDimension() laid from the bottom left; those at the top and at the
    /// right may be smaller. Where a maximum or a sum is not above 0 the channel counts for nothing. A
    /// picture too small for a tile gives a zero estimate.
    static void LSRS(CColor::EIlluminant illuminant, bool nonlinear, bool displayP3, bool largeTiles,
                     int width, int height, const std::vector<Math::CVector3<float>>& linear,
                     Math::CMatrix3<float>& matrix);
    /// The same from the statistics of tiles that the caller has gathered.
    /// \param sums  at least as many as there are maxima.
    static void LSRS(CColor::EIlluminant illuminant, bool nonlinear, bool displayP3,
                     const std::vector<Math::CVector3<float>>& maxima,
                     const std::vector<Math::CVector3<float>>& sums, Math::CMatrix3<float>& matrix);
    /// \}

    /// The side of a tile, for about 2.75 large or 22.5 small tiles a picture.
    [[nodiscard]] static int LSRSTileDimension(bool largeTiles, int width, int height);

    /// XYZ, with Y = 1, of a light that is given as linear RGB. A light of no luminance gives the white of
    /// the illuminant, and so the identity for a correction.
    static void SourceIlluminant(const Math::CVector3<float>& light, CColor::EIlluminant illuminant,
                                 bool displayP3, Math::CVector3<float>& white);
    /// The matrix from XYZ under a light that is given as linear RGB to XYZ under the illuminant (Bradford).
    static void ChromaticAdaptationMatrix(const Math::CVector3<float>& light, CColor::EIlluminant illuminant,
                                          bool displayP3, Math::CMatrix3<float>& matrix);

    /// Corrects a picture for a light.
    ///
    /// The input is read with sRGB primaries whatever `displayP3` says; only the output has those of Display
    /// P3. Hosts rely on it: they decode their pictures to linear sRGB and choose the output alone.
    ///
    /// \param white   XYZ of the light, from SourceIlluminant().
    /// \param linear  linear RGB with sRGB primaries.
    /// \param rgba    4 * width * height bytes, gamma-encoded if `nonlinear`. A value times 255 is clamped
    ///                and loses its fraction: 254.9 gives 254, NaN gives 0, and so the brightest of encoded
    ///                sRGB is 254, single precision encoding 1 just below 1.
    static void Balance(CColor::EIlluminant illuminant, bool nonlinear, bool displayP3,
                        const Math::CVector3<float>& white, int width, int height,
                        const std::vector<Math::CVector3<float>>& linear, unsigned char* rgba);
};

}   // namespace QZ::Foundation
