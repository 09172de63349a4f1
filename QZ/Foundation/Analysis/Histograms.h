// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "QZ/Export.h"
#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Math/CVector2.h"

/// \file
/// Distributions of grey and hue in 8-bit pictures.
///
/// **Pictures.** RGBA is four bytes a pixel, rows without gaps, width * height * 4 bytes in all. One channel
/// of an interleaved buffer is given by `stride`, the bytes of a pixel, and `offset`, 0 to stride - 1, the
/// channel within it. A picture has at most 2^31 - 1 pixels; one without pixels may be a null pointer.
///
/// **Masks.** `alpha` is null or a buffer whose byte at alphaOffset + k * alphaStride belongs to pixel k. The
/// byte / 255 is the pixel's weight; a pixel of weight 0 counts for nothing.
///
/// **Accumulation.** `Compute` sizes the bins and adds to what they hold: a second call on an object of the
/// same size adds a second picture. Only what is said to be reset or assigned starts anew.
///
/// Nothing is thrown but by a failing allocation. One object is for one thread at a time.

namespace QZ::Foundation {

/// How often each value of a byte occurs.
/// \code
///     CGrayscaleHistogram histogram;
///     histogram.Compute(width, height, 4, 1, rgba);   // the green channel
/// \endcode
class QZ_API CGrayscaleHistogram {
public:
    std::vector<int> bins;   ///< 256 counts after Compute(); they wrap around at 32 bits.
    int count = 0;           ///< Pixels of the last picture, width * height; it wraps around at 32 bits.

    /// Adds one byte channel of a picture; `count` is assigned.
    /// \param data  the bytes at offset, offset + stride, ... below width * height * stride are read.
    void Compute(int width, int height, int stride, int offset, const unsigned char* data);
};

/// The distribution of grey levels, with fractional weights from a mask.
class QZ_API CGrayscaleWeightedHistogram {
public:
    /// The grey level of a pixel, 0 to 255.
    enum EGrayscaleFrom : int {
        eFourthChannel = 0,   ///< The fourth byte as it stands.
        eLXX = 1,             ///< CIE lightness, CColor::SRGBToLXX(), times 255 and rounded.
        eNonlinearY = 2,      ///< Luminance encoded by the sRGB curve, times 255 and rounded.
    };

    std::vector<double> bins;   ///< 256 weights, or none before the first Compute().
    double total = 0.0;         ///< The weight that the last picture added.

    /// No bins.
    CGrayscaleWeightedHistogram() = default;
    /// From 256 values, their sum being the total. Any other number of values leaves the histogram without
    /// bins.
    CGrayscaleWeightedHistogram(const std::vector<int>& values);
    /// From 256 values, their sum, in double precision, being the total. Any other number of values leaves
    /// the histogram without bins.
    CGrayscaleWeightedHistogram(const std::vector<float>& values);

    /// Adds a picture's grey levels; `total` is assigned.
    /// \param from        another value than the three named adds nothing, and the total is 0.
    /// \param isSRGB      false if the bytes are linear RGB.
    /// \param illuminant  for the luminance weights of eNonlinearY.
    /// \param alpha       without a mask every pixel weighs 1 and the total is width * height.
    void Compute(EGrayscaleFrom from, bool isSRGB, CColor::EIlluminant illuminant, int width, int height,
                 const unsigned char* rgba, int alphaStride, int alphaOffset, const unsigned char* alpha);

    /// Adds one byte channel of a picture; `total` is assigned.
    /// \param data   the byte at offset + k * stride is the grey level of pixel k.
    /// \param alpha  without a mask every pixel weighs 1 and the total is width * height.
    void ComputeFromComponent(int width, int height, int stride, int offset, const unsigned char* data,
                              int alphaStride, int alphaOffset, const unsigned char* alpha);

    /// The sum of the last n histograms of a growing series, the newest added first.
    /// \param n  more than there are takes all of them, less than 1 none.
    /// \return   256 bins, all 0 if nothing is summed. A histogram without bins adds its total alone.
    [[nodiscard]] static CGrayscaleWeightedHistogram Sum(
        int n, const std::vector<CGrayscaleWeightedHistogram>& histograms);
};

/// A histogram smoothed by a Gaussian kernel, whose width follows from the data.
///
/// The bandwidth is 1.06 sigma n^(-1/5), sigma being the standard deviation of the n values: B. W. Silverman,
/// "Density Estimation for Statistics and Data Analysis", 1986, eq. 3.28. The ends repeat the outermost bin.
class QZ_API CGrayscaleKDEHistogram {
public:
    std::vector<int> bins;   ///< 256 smoothed counts, rounded; assigned by Compute().
    double total = 0.0;      ///< Their sum; assigned by Compute().

    /// Smooths the histogram of one byte channel. A picture of one grey level stays as it is.
    ///
    /// The first moment is summed in 32 bits and wraps around: above 2^31 / 255, about 8 million pixels, the
    /// bandwidth may be that of other data. Callers rely on the same result for the same picture.
    ///
    /// \param ignored  never read.
    /// \param data     as in CGrayscaleHistogram::Compute().
    void Compute(int width, int height, double ignored, int stride, int offset, const unsigned char* data);
};

/// The distribution of hue in the P/T plane of IPT.
///
/// The hue angle is atan2(P, T). Bin b is centred on -pi + b * 2 pi / (numBins - 1), so that the first and
/// the last bin are of half width and meet at the seam, +-pi. A grey falls into the middle.
class QZ_API CPTHistogram {
public:
    std::vector<int> counts;                    ///< Pixels in each bin; they wrap around at 32 bits.
    std::vector<Math::CVector2<double>> sums;   ///< Sum of the (P, T) of the pixels in each bin.
    int pixelCount = 0;                         ///< Pixels of the last picture, as given.

    /// Adds a picture whose bytes are linear RGB; `pixelCount` is assigned.
    /// \param numBins    below 1 leaves no bins.
    /// \param numPixels  below 1 adds nothing.
    void Compute(int numBins, CColor::EIlluminant illuminant, int numPixels, const unsigned char* rgba);
};

/// The distribution of hue, in which saturated colours of medium lightness weigh most.
///
/// With lightness L and chroma c, the saturation is s = c / sqrt(L^2 + c^2), or 0 for black. A pixel weighs
/// the product of a logistic step in s, 0 for s = 0, a half at 0.5 and 1 for s = 1, and a logistic window in
/// L, 1 at L = 0.5 and 0 for L = 0 and L = 1. The bins are those of CPTHistogram.
class QZ_API CHueWeightedHistogram {
public:
    /// Where lightness, chroma and hue are measured. The chromatic pair is the colour's second and third
    /// component in each; the angle starts from the first of the pair in Lab and Luv, from the second in IPT.
    enum EHueColorSpace : int {
        eLab = 0,   ///< The hue is atan2(b, a).
        eLuv = 1,   ///< The hue is atan2(v, u).
        eIPT = 2,   ///< The hue is atan2(P, T).
    };

    std::vector<double> weights;                ///< Sum of the weights in each bin.
    std::vector<Math::CVector2<double>> sums;   ///< Sum of weight times chromatic pair in each bin.
    std::vector<double> greySums;               ///< Sum of weight times linear luminance in each bin.
    double total = 0.0;                         ///< Sum of `weights`; assigned by Compute().

    /// Adds a picture.
    /// \param numBins    below 1 leaves no bins.
    /// \param space      another value than the three named adds nothing.
    /// \param isSRGB     false if the bytes are linear RGB.
    /// \param numPixels  below 1 adds nothing.
    void Compute(int numBins, EHueColorSpace space, bool isSRGB, CColor::EIlluminant illuminant,
                 int numPixels, const unsigned char* rgba);
};

}   // namespace QZ::Foundation
