// SPDX-License-Identifier: MIT

/// \file
/// Colours and 8-bit pixels between memory and lanes.

#if defined(QZ_FOUNDATION_COLOR_PIXELS) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_COLOR_PIXELS
#undef QZ_FOUNDATION_COLOR_PIXELS
#else
#define QZ_FOUNDATION_COLOR_PIXELS
#endif

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

/// As many pixels as a vector holds, each byte looked up in a table of 256 values.
HWY_INLINE Vec3<Lane> LoadPixels(const float* ofByte, const unsigned char* rgba)
{
    const hn::RebindToUnsigned<Lane::Tag> u;
    const hn::RebindToSigned<Lane::Tag> s;
    const auto pixel = hn::LoadU(u, reinterpret_cast<const std::uint32_t*>(rgba));
    const auto byte = hn::Set(u, 0xFFu);
    const auto look = [&](auto index) -> Lane {
        return hn::GatherIndex(Lane::Tag(), ofByte, hn::BitCast(s, index));
    };
    return {look(hn::And(pixel, byte)), look(hn::And(hn::ShiftRight<8>(pixel), byte)),
            look(hn::And(hn::ShiftRight<16>(pixel), byte))};
}

/// Encoded values as bytes: clamped to 0 to 1, NaN to 0, times 255 and rounded, halves up. The fourth byte is
/// 255.
HWY_INLINE void StorePixels(const Vec3<Lane>& v, unsigned char* rgba)
{
    const hn::RebindToUnsigned<Lane::Tag> u;
    const hn::RebindToSigned<Lane::Tag> s;
    const auto byte = [&](Lane c) {
        return hn::BitCast(u, hn::ConvertTo(s, (ClampToUnit(c) * 255.0f + 0.5f).vector));
    };
    const auto green = hn::ShiftLeft<8>(byte(v.y));
    const auto blue = hn::ShiftLeft<16>(byte(v.z));
    const auto pixel = hn::Or(hn::Or(byte(v.x), green), hn::Or(blue, hn::Set(u, 0xFF000000u)));
    hn::StoreU(pixel, u, reinterpret_cast<std::uint32_t*>(rgba));
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
