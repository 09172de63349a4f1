// SPDX-License-Identifier: MIT
#include "tools/qz/operations/GreyPlane.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "tools/qz/Failure.h"

namespace QZ::Tool {

using Foundation::CColor;
using Foundation::CGrayscaleWeightedHistogram;
using Math::CVector3;

namespace {

std::array<float, 256> LinearOfByte()
{
    std::array<float, 256> linear{};
    for (int i = 0; i < 256; ++i)
        CColor::NonlinearToLinearToneCurve(false, static_cast<float>(i) * 0.003921569f,
                                           linear[static_cast<std::size_t>(i)]);
    return linear;
}

float Grey(const CVector3<float>& linear, const GreyChoice& choice)
{
    float grey = 0.0f;
    if (choice.from == GreyFrom::eLXX)
        CColor::LinearRGBToLXX(linear, grey);
    else
        CColor::LinearRGBToNonlinearY(false, false, choice.illuminant, linear, grey);
    return grey;
}

}   // namespace

std::vector<unsigned char> GreyPlane(const Image& image, const GreyChoice& choice)
{
    std::vector<unsigned char> plane(image.Count());
    const unsigned char* p = image.pixels.data();
    if (choice.from == GreyFrom::eFourthChannel) {
        for (std::size_t i = 0; i < plane.size(); ++i)
            plane[i] = p[4 * i + 3];
        return plane;
    }
    const std::array<float, 256> linear = LinearOfByte();
    for (std::size_t i = 0; i < plane.size(); ++i, p += 4) {
        const CVector3<float> rgb(linear[p[0]], linear[p[1]], linear[p[2]]);
        plane[i] = static_cast<unsigned char>(Grey(rgb, choice) * 255.0f + 0.5f);   // the grey is in 0 to 1
    }
    return plane;
}

CGrayscaleWeightedHistogram GreyHistogram(const std::vector<unsigned char>& plane, const Image& image,
                                          const GreyChoice& choice)
{
    CGrayscaleWeightedHistogram histogram;
    histogram.ComputeFromComponent(image.width, image.height, 1, 0, plane.data(), kMaskStride, kMaskOffset,
                                   choice.Mask(image));
    if (!(histogram.total > 0.0))
        throw Failure(Status::Malformed, "", "the picture is transparent throughout: nothing in it counts",
                      "leave --mask-alpha out");
    return histogram;
}

int OccupiedLevels(const CGrayscaleWeightedHistogram& histogram)
{
    return static_cast<int>(std::count_if(histogram.bins.begin(), histogram.bins.end(),
                                          [](double weight) { return weight > 0.0; }));
}

void PaintGrey(const std::vector<unsigned char>& plane, const std::vector<unsigned char>& table,
               const GreyChoice& choice, Image& image)
{
    unsigned char* p = image.pixels.data();
    for (std::size_t i = 0; i < plane.size(); ++i, p += 4) {
        p[0] = p[1] = p[2] = table[plane[i]];
        if (choice.from == GreyFrom::eFourthChannel)
            p[3] = 255;
    }
}

}   // namespace QZ::Tool
