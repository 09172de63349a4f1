// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Analysis/PixelKernels.h"

#include <algorithm>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "QZ/Foundation/Analysis/PixelKernels.cpp"
#include <hwy/foreach_target.h>

#include "QZ/Foundation/Analysis/HueLanes.h"
#include "QZ/Foundation/Color/Formulas/IPT.h"
#include "QZ/Foundation/Color/Formulas/Lab.h"
#include "QZ/Foundation/Color/Formulas/Luv.h"
#include "QZ/Foundation/Color/Stages.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// body(i) for the first pixel i of each vector; n pixels end within the last one.
template <class Body>
HWY_INLINE void ForEachVector(std::size_t n, const Body& body)
{
    for (std::size_t i = 0; i < n; i += Lane::Size())
        body(i);
}

/// A row of pixels that may be read in whole vectors: the caller's memory, or a copy where that ends before.
class WholeRow {
public:
    HWY_INLINE WholeRow(const unsigned char* rgba, std::size_t n)
        : m_pixels(n % Lane::Size() == 0 ? rgba : m_copy.data())
    {
        if (m_pixels == rgba)
            return;
        const std::size_t whole = n / Lane::Size() * Lane::Size() + Lane::Size();
        std::memcpy(m_copy.data(), rgba, 4 * n);
        std::memset(m_copy.data() + 4 * n, 0, 4 * (whole - n));
    }
    HWY_INLINE const unsigned char* At(std::size_t i) const { return m_pixels + 4 * i; }

private:
    std::array<unsigned char, 4 * kRowOfPixels> m_copy;
    const unsigned char* m_pixels;
};

HWY_INLINE void Store(Lane x, float* out)
{
    hn::StoreU(x.vector, Lane::Tag(), out);
}

/// The colours of a row of linear RGB that begin at(i): (lightness, second, third).
template <HueSpace space, class ColorAt, class Use>
HWY_INLINE void ToSpace(CColor::EIlluminant illuminant, std::size_t n, const ColorAt& at, Block& block,
                        const Use& use)
{
    const auto set = [&](const auto& formula) HWY_ATTR {
        ForEachVector(n, [&](std::size_t i) HWY_ATTR { block.Set(i, formula(at(i))); });
    };
    const auto change = [&](const auto& formula) HWY_ATTR {
        ForEachVector(n, [&](std::size_t i) HWY_ATTR {
            const Vec3<Lane> color = formula(space == HueSpace::Luv ? block.MappedFirst(i) : block.Mapped(i));
            block.Set(i, color);
            use(i, color);
        });
    };
    if constexpr (space == HueSpace::Lab) {
        set([&](const Vec3<Lane>& rgb) HWY_ATTR { return LinearRGBToRatio(illuminant, rgb); });
        block.Map(n, [](const auto& c) HWY_ATTR { return LightnessRoot(c); });
        change([](const Vec3<Lane>& f) HWY_ATTR { return RootsToLab(f); });
    } else if constexpr (space == HueSpace::Luv) {
        set([&](const Vec3<Lane>& rgb)
                HWY_ATTR { return XYZToUniform(illuminant, LinearRGBToXYZ(illuminant, rgb)); });
        block.MapFirst(n, [](const auto& c) HWY_ATTR { return LightnessRoot(c); });
        change([](const Vec3<Lane>& uniform) HWY_ATTR { return UniformToLuv(uniform); });
    } else {
        set([&](const Vec3<Lane>& rgb) HWY_ATTR { return Constants::LinearRGBToLMS(illuminant) * rgb; });
        block.Map(n, [](const auto& c) HWY_ATTR { return SignedPow<Exponent::k0_43>(c); });
        change([](const Vec3<Lane>& lms) HWY_ATTR { return Constants::lmsToIPT * lms; });
    }
}

/// The hue bins of n colours. The few that a rough angle leaves open are found after the others.
template <HueSpace space>
HWY_INLINE void FindBins(const HueBins& binOf, const Block& colors, std::size_t n, std::int32_t* bins)
{
    const hn::RebindToSigned<Lane::Tag> s;
    std::array<std::size_t, kRowOfPixels> open;   // vectors with any
    std::size_t openCount = 0;
    ForEachVector(n, [&](std::size_t i) HWY_ATTR {
        const auto [y, x] = HueAxesOf<space>(colors.Get(i));
        const RoughBins rough = RoughBinsOf(binOf, y, x);
        hn::StoreU(rough.bins, s, bins + i);
        open[openCount] = i;
        openCount += NoneTrue(rough.isOpen) ? 0 : 1;
    });
    for (std::size_t v = 0; v < openCount; ++v) {
        const auto [y, x] = HueAxesOf<space>(colors.Get(open[v]));
        hn::StoreU(BinsOfAny(binOf, y, x), s, bins + open[v]);
    }
}

/// Adds each pixel's sample to its bin, in the order of the pixels.
HWY_INLINE void AddSamples(const std::int32_t* bins, const float* samples, std::size_t n, HueSums* sums)
{
    const hn::CappedTag<double, 4> d;
    const hn::Rebind<float, decltype(d)> f;
    constexpr std::size_t kStep = hn::MaxLanes(d);
    for (std::size_t i = 0; i < n; ++i) {
        double* sum = sums[static_cast<std::size_t>(bins[i])].of;
        for (std::size_t k = 0; k < 4; k += kStep)
            hn::StoreU(hn::Add(hn::LoadU(d, sum + k), hn::PromoteTo(d, hn::LoadU(f, samples + 4 * i + k))), d,
                       sum + k);
    }
}

template <HueSpace space>
HWY_FLATTEN void WeighHuesIn(const HueArguments& arguments, const unsigned char* rgba, std::size_t n,
                             HueSums* sums)
{
    const Lane::Tag tag;
    const WholeRow pixels(rgba, n);
    static_assert(kRowOfPixels <= Block::kColors);
    Block colors;
    HWY_ALIGN_MAX float greys[kRowOfPixels];
    const auto rgbAt = [&](std::size_t i) HWY_ATTR {
        const Vec3<Lane> rgb = LoadPixels(arguments.linear, pixels.At(i));
        Store(LinearRGBToLinearY(false, arguments.illuminant, rgb), greys + i);
        return rgb;
    };
    // Those of a vector of pixels side by side.
    HWY_ALIGN_MAX float exponents[2 * kRowOfPixels];
    ToSpace<space>(arguments.illuminant, n, rgbAt, colors,
                   [&](std::size_t i, const Vec3<Lane>& color) HWY_ATTR {
                       const Lane saturation = Saturation(color.x, Hypotenuse(color.y, color.z));
                       Store(SaturationExponent(saturation), exponents + 2 * i);
                       Store(LightnessExponent(color.x), exponents + 2 * i + Lane::Size());
                   });
    HWY_ALIGN_MAX float exponentials[2 * kRowOfPixels];
    MapVectors(exponents, 2 * Whole(n), Lane::Size(), exponentials,
               [](const auto& x) HWY_ATTR { return Exp(x); });

    HWY_ALIGN_MAX float samples[4 * kRowOfPixels];
    ForEachVector(n, [&](std::size_t i) HWY_ATTR {
        const Lane first = hn::Load(tag, exponentials + 2 * i);
        const Lane second = hn::Load(tag, exponentials + 2 * i + Lane::Size());
        const Lane weight = SaturationWeight(first) * LightnessWeight(second);
        const Vec3<Lane> color = colors.Get(i);
        const Lane grey = weight * Lane(hn::Load(tag, greys + i));
        hn::StoreInterleaved4(weight.vector, (weight * color.y).vector, (weight * color.z).vector,
                              grey.vector, tag, samples + 4 * i);
    });
    std::array<std::int32_t, kRowOfPixels> bins;
    FindBins<space>(arguments.binOf, colors, n, bins.data());
    AddSamples(bins.data(), samples, n, sums);
}

void WeighHuesRow(const HueArguments& arguments, const unsigned char* rgba, std::size_t n, HueSums* sums)
{
    switch (arguments.space) {
        case HueSpace::Lab:
            return WeighHuesIn<HueSpace::Lab>(arguments, rgba, n, sums);
        case HueSpace::Luv:
            return WeighHuesIn<HueSpace::Luv>(arguments, rgba, n, sums);
        case HueSpace::IPT:
            return WeighHuesIn<HueSpace::IPT>(arguments, rgba, n, sums);
    }
}

HWY_FLATTEN void FindPTRow(const HueArguments& arguments, const unsigned char* rgba, std::size_t n,
                           PTRow& row)
{
    const hn::RebindToSigned<Lane::Tag> s;
    const WholeRow pixels(rgba, n);
    ForEachVector(n, [&](std::size_t i) HWY_ATTR {
        const Vec3<Lane> ipt =
            LinearRGBToIPT(arguments.illuminant, LoadPixels(arguments.linear, pixels.At(i)));
        hn::StoreU(HueBinsOfIPT(arguments.binOf, ipt), s, row.bin.data() + i);
        Store(ipt.y, row.P.data() + i);
        Store(ipt.z, row.T.data() + i);
    });
}

HWY_FLATTEN void GreyLevelRow(const GreyArguments& arguments, const unsigned char* rgba, std::size_t n,
                              unsigned char* levels)
{
    const hn::RebindToSigned<Lane::Tag> s;
    const hn::Rebind<unsigned char, Lane::Tag> bytes;
    const WholeRow pixels(rgba, n);
    std::array<unsigned char, kRowOfPixels> row;
    ForEachVector(n, [&](std::size_t i) HWY_ATTR {
        const Lane grey = Dot(LoadPixels(arguments.linear, pixels.At(i)), arguments.weights);
        hn::StoreU(hn::DemoteTo(bytes, hn::BitCast(s, BytesOf(arguments.levelOf, grey))), bytes,
                   row.data() + i);
    });
    std::memcpy(levels, row.data(), n);
}

HWY_FLATTEN void LinearColors(const ByteTable& linear, const unsigned char* rgba, std::size_t n,
                              Math::CVector3<float>* out)
{
    LookUpPixels(linear, rgba, n, out);
}

HWY_FLATTEN void RecolorPixels(const RecolorArguments& arguments, unsigned char* rgba, std::size_t n)
{
    const hn::RebindToUnsigned<Lane::Tag> u;
    const hn::RebindToSigned<Lane::Tag> s;
    const auto* colours = reinterpret_cast<const float*>(arguments.binColours);
    const auto toFloat = [&](LaneBits byte)
                             HWY_ATTR -> Lane { return hn::ConvertTo(Lane::Tag(), hn::BitCast(s, byte)); };
    const WholeRow pixels(rgba, n);
    std::array<unsigned char, 4 * kRowOfPixels> out;
    ForEachVector(n, [&](std::size_t i) HWY_ATTR {
        const Vec3<Lane> ipt =
            LinearRGBToIPT(arguments.illuminant, LoadPixels(arguments.linear, pixels.At(i)));
        const LaneInts twice = hn::ShiftLeft<1>(HueBinsOfIPT(arguments.binOf, ipt));
        const Lane P = hn::GatherIndex(Lane::Tag(), colours, twice);
        const Lane T = hn::GatherIndex(Lane::Tag(), colours + 1, twice);
        const Lane magnitude = Hypotenuse(ipt.y, ipt.z);
        const Vec3<Lane> rgb =
            IPTToLinearRGB(false, arguments.illuminant, Vec3<Lane>(ipt.x, P * magnitude, T * magnitude));

        const auto [red, green, blue] = BytesOf(arguments.encode, rgb);
        const Lane luma = 0.114f * toFloat(blue) + 0.587f * toFloat(green) + 0.299f * toFloat(red);
        const LaneBits alpha = hn::BitCast(u, hn::ConvertTo(s, (luma + 0.5f).vector));
        StoreBytes(red, green, blue, alpha, out.data() + 4 * i);
    });
    std::memcpy(rgba, out.data(), 4 * n);
}

HWY_FLATTEN void BalancePixels(const BalanceArguments& arguments, const Math::CVector3<float>* linear,
                               std::size_t n, unsigned char* rgba)
{
    RowIn<float> colors(Components(linear), 3);
    RowOut<unsigned char> pixels(rgba, 4);
    ForEachPart(n, 0, [&](std::size_t i, std::size_t size) HWY_ATTR {
        const Vec3<Lane> xyz = arguments.toXYZ * LoadColors(colors.At(i, size));
        const Vec3<Lane> rgb = arguments.toRGB * (arguments.adaptation * xyz);
        pixels.Put(i, size, [&](unsigned char* to) HWY_ATTR {
            StorePixels(arguments.encode, arguments.isClamped ? ClampToUnit(rgb) : rgb, to);
        });
    });
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QZ::Foundation {

HWY_EXPORT(LinearColors);
HWY_EXPORT(GreyLevelRow);
HWY_EXPORT(WeighHuesRow);
HWY_EXPORT(FindPTRow);
HWY_EXPORT(RecolorPixels);
HWY_EXPORT(BalancePixels);

void LinearRow(const ByteTable& linear, const unsigned char* rgba, std::size_t n, Math::CVector3<float>* out)
{
    HWY_DYNAMIC_DISPATCH(LinearColors)(linear, rgba, n, out);
}

void GreyRow(const GreyArguments& arguments, const unsigned char* rgba, std::size_t n, unsigned char* levels)
{
    HWY_DYNAMIC_DISPATCH(GreyLevelRow)(arguments, rgba, n, levels);
}

void WeighHues(const HueArguments& arguments, const unsigned char* rgba, std::size_t n, HueSums* sums)
{
    HWY_DYNAMIC_DISPATCH(WeighHuesRow)(arguments, rgba, n, sums);
}

void FindPT(const HueArguments& arguments, const unsigned char* rgba, std::size_t n, PTRow& row)
{
    HWY_DYNAMIC_DISPATCH(FindPTRow)(arguments, rgba, n, row);
}

void RecolorRow(const RecolorArguments& arguments, unsigned char* rgba, std::size_t n)
{
    HWY_DYNAMIC_DISPATCH(RecolorPixels)(arguments, rgba, n);
}

void BalanceRow(const BalanceArguments& arguments, const Math::CVector3<float>* linear, std::size_t n,
                unsigned char* rgba)
{
    HWY_DYNAMIC_DISPATCH(BalancePixels)(arguments, linear, n, rgba);
}

}   // namespace QZ::Foundation
#endif
