// SPDX-License-Identifier: MIT

/// \file
/// Colours and 8-bit pixels between memory and lanes.

#if defined(QZ_FOUNDATION_COLOR_PIXELS) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_COLOR_PIXELS
#undef QZ_FOUNDATION_COLOR_PIXELS
#else
#define QZ_FOUNDATION_COLOR_PIXELS
#endif

#include "QZ/Foundation/Color/ByteCurve.h"
#include "QZ/Foundation/Color/ByteTables.h"
#include "QZ/Foundation/Color/Lane.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// As many colours as a vector holds, from three floats each.
HWY_INLINE Vec3<Lane> LoadColors(const float* from)
{
    Vec3<Lane> v;
    hn::LoadInterleaved3(Lane::Tag(), from, v.x.vector, v.y.vector, v.z.vector);
    return v;
}
HWY_INLINE void StoreColors(const Vec3<Lane>& v, float* to)
{
    hn::StoreInterleaved3(v.x.vector, v.y.vector, v.z.vector, Lane::Tag(), to);
}

using LaneBits = hn::Vec<hn::RebindToUnsigned<Lane::Tag>>;

/// The entries of a table of 256 values at the low eight bits of each index.
HWY_INLINE Lane LookUpByte(const float* table, LaneBits index)
{
#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX3
    // Permutations of 32 entries at a time, chosen among by the upper three bits: quicker than a gather.
    const auto part = [&](int i) HWY_ATTR {
        return _mm512_permutex2var_ps(_mm512_loadu_ps(table + 32 * i), index.raw,
                                      _mm512_loadu_ps(table + 32 * i + 16));
    };
    const auto has = [&](int bit)
                         HWY_ATTR { return _mm512_test_epi32_mask(index.raw, _mm512_set1_epi32(bit)); };
    const auto odd = has(32);
    const auto pair = [&](int i) HWY_ATTR { return _mm512_mask_blend_ps(odd, part(2 * i), part(2 * i + 1)); };
    const auto lower = _mm512_mask_blend_ps(has(64), pair(0), pair(1));
    const auto upper = _mm512_mask_blend_ps(has(64), pair(2), pair(3));
    return Lane::Vector{_mm512_mask_blend_ps(has(128), lower, upper)};
#else
    const hn::RebindToUnsigned<Lane::Tag> u;
    const hn::RebindToSigned<Lane::Tag> s;
    return hn::GatherIndex(Lane::Tag(), table, hn::BitCast(s, hn::And(index, hn::Set(u, 0xFFu))));
#endif
}

/// As many pixels as a vector holds, each byte looked up in a table of 256 values.
HWY_INLINE Vec3<Lane> LoadPixels(const float* ofByte, const unsigned char* rgba)
{
    const hn::RebindToUnsigned<Lane::Tag> u;
    const LaneBits pixel = hn::LoadU(u, reinterpret_cast<const std::uint32_t*>(rgba));
    return {LookUpByte(ofByte, pixel), LookUpByte(ofByte, hn::ShiftRight<8>(pixel)),
            LookUpByte(ofByte, hn::ShiftRight<16>(pixel))};
}

/// The byte that a curve makes of each float.
HWY_INLINE LaneBits BytesOf(const ByteCurve& curve, Lane x)
{
    const hn::RebindToUnsigned<Lane::Tag> u;
    const hn::RebindToSigned<Lane::Tag> s;
    const Lane lowest(curve.Lowest());
    const Lane inRange = Select(x > lowest, Select(x < ByteCurve::kMost, x, Lane(ByteCurve::kMost)), lowest);
    const LaneBits bits = hn::BitCast(u, inRange.vector);
    const LaneBits cell = hn::Sub(hn::ShiftRight<16>(bits), hn::Set(u, curve.FirstCell()));
    const LaneBits entry = hn::GatherIndex(u, curve.Cells(), hn::BitCast(s, cell));
    return hn::ShiftRight<16>(hn::Add(entry, hn::And(bits, hn::Set(u, 0xFFFFu))));
}

/// Three bytes and a fourth as pixels.
HWY_INLINE void StoreBytes(LaneBits red, LaneBits green, LaneBits blue, LaneBits alpha, unsigned char* rgba)
{
    const hn::RebindToUnsigned<Lane::Tag> u;
    const LaneBits low = hn::Or(red, hn::ShiftLeft<8>(green));
    const LaneBits high = hn::Or(hn::ShiftLeft<16>(blue), hn::ShiftLeft<24>(alpha));
    hn::StoreU(hn::Or(low, high), u, reinterpret_cast<std::uint32_t*>(rgba));
}

/// Pixels of the bytes that a curve makes of each component. The fourth byte is 255.
HWY_INLINE void StorePixels(const ByteCurve& curve, const Vec3<Lane>& v, unsigned char* rgba)
{
    const hn::RebindToUnsigned<Lane::Tag> u;
    StoreBytes(BytesOf(curve, v.x), BytesOf(curve, v.y), BytesOf(curve, v.z), hn::Set(u, 0xFFu), rgba);
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
