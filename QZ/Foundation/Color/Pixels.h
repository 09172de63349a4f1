// SPDX-License-Identifier: MIT

/// \file
/// Colours and 8-bit pixels between memory and lanes.

#if defined(QZ_FOUNDATION_COLOR_PIXELS) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_COLOR_PIXELS
#undef QZ_FOUNDATION_COLOR_PIXELS
#else
#define QZ_FOUNDATION_COLOR_PIXELS
#endif

#include <bit>
#include <cstddef>
#include <cstdint>

#include "QZ/Foundation/Color/ByteCurve.h"
#include "QZ/Foundation/Color/ByteTables.h"
#include "QZ/Foundation/Color/Lane.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

using LaneBits = hn::Vec<hn::RebindToUnsigned<Lane::Tag>>;

/// Four bytes a lane as the integers that they are on little-endian machines, whatever this one is; and back.
HWY_INLINE LaneBits LittleEndian(LaneBits bytes)
{
    if constexpr (std::endian::native == std::endian::little)
        return bytes;
    const hn::RebindToUnsigned<Lane::Tag> u;
    const LaneBits second = hn::Set(u, 0xFF00u);
    const LaneBits outer = hn::Or(hn::ShiftLeft<24>(bytes), hn::ShiftRight<24>(bytes));
    const LaneBits inner =
        hn::Or(hn::ShiftLeft<8>(hn::And(bytes, second)), hn::And(hn::ShiftRight<8>(bytes), second));
    return hn::Or(outer, inner);
}

#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX3

/// Two permutations, each of two vectors, that make one vector of three.
struct Permutation3 {
    alignas(64) std::int32_t first[16];    ///< of the first and the second
    alignas(64) std::int32_t second[16];   ///< of their permutation and the third

    HWY_INLINE __m512 operator()(__m512 a, __m512 b, __m512 c) const
    {
        const __m512 ab = _mm512_permutex2var_ps(a, _mm512_load_si512(first), b);
        return _mm512_permutex2var_ps(ab, _mm512_load_si512(second), c);
    }
};

/// Takes component c of 16 colours out of three vectors.
constexpr Permutation3 Component(int c)
{
    Permutation3 p{};
    for (int i = 0; i < 16; ++i) {
        const int place = 3 * i + c;
        p.first[i] = place < 32 ? place : 0;
        p.second[i] = place < 32 ? i : place - 16;
    }
    return p;
}

/// Makes vector v of 16 colours of their components.
constexpr Permutation3 Interleaved(int v)
{
    Permutation3 p{};
    for (int i = 0; i < 16; ++i) {
        const int place = 16 * v + i;
        p.first[i] = place / 3 + (place % 3 == 1 ? 16 : 0);
        p.second[i] = place % 3 == 2 ? 16 + place / 3 : i;
    }
    return p;
}

/// As many colours as a vector holds, from three floats each.
HWY_INLINE Vec3<Lane> LoadColors(const float* from)
{
    static constexpr Permutation3 kComponents[] = {Component(0), Component(1), Component(2)};
    const __m512 a = _mm512_loadu_ps(from);
    const __m512 b = _mm512_loadu_ps(from + 16);
    const __m512 c = _mm512_loadu_ps(from + 32);
    return {Lane::Vector{kComponents[0](a, b, c)}, Lane::Vector{kComponents[1](a, b, c)},
            Lane::Vector{kComponents[2](a, b, c)}};
}
HWY_INLINE void StoreColors(const Vec3<Lane>& v, float* to)
{
    static constexpr Permutation3 kVectors[] = {Interleaved(0), Interleaved(1), Interleaved(2)};
    for (int i = 0; i < 3; ++i)
        _mm512_storeu_ps(to + 16 * i, kVectors[i](v.x.vector.raw, v.y.vector.raw, v.z.vector.raw));
}

#else

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

#endif

/// How many colours of a row lie before one that begins a vector, and so do all whole vectors after it.
HWY_INLINE std::size_t ColorsBeforeAlignment(const float* colors)
{
    const std::size_t bytes = Lane::Size() * sizeof(float);
    std::size_t before = 0;
    while ((reinterpret_cast<std::uintptr_t>(colors) + 12 * before) % bytes != 0)
        ++before;
    return before;
}

/// StoreColors() past the caches, to where a vector may begin.
HWY_INLINE void StreamColors(const Vec3<Lane>& v, float* to)
{
    const Lane::Tag tag;
    HWY_ALIGN float colors[3 * (HWY_MAX_BYTES / sizeof(float))];
    StoreColors(v, colors);
    for (std::size_t i = 0; i < 3 * Lane::Size(); i += Lane::Size())
        hn::Stream(hn::Load(tag, colors + i), tag, to + i);
}

#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX3_DL

/// As many pixels as a vector holds, each byte looked up in a table: the four bytes of all entries by
/// permutations, each of a half of the table, then brought together.
HWY_INLINE Vec3<Lane> LoadPixels(const ByteTable& ofByte, const unsigned char* rgba)
{
    const __m512i pixel = _mm512_loadu_si512(rgba);
    const __mmask64 isUpper = _mm512_movepi8_mask(pixel);
    const auto plane = [&](int i) HWY_ATTR {
        const unsigned char* table = ofByte.planes[i];
        const __m512i lower =
            _mm512_permutex2var_epi8(_mm512_load_si512(table), pixel, _mm512_load_si512(table + 64));
        const __m512i upper =
            _mm512_permutex2var_epi8(_mm512_load_si512(table + 128), pixel, _mm512_load_si512(table + 192));
        return _mm512_mask_blend_epi8(isUpper, lower, upper);
    };
    const __m512i p0 = plane(0);
    const __m512i p1 = plane(1);
    const __m512i p2 = plane(2);
    const __m512i p3 = plane(3);
    // Halves of floats: those of R and B, and those of G and the fourth byte.
    constexpr __mmask64 kOddBytes = 0xaaaaaaaaaaaaaaaa;
    constexpr __mmask32 kOddHalves = 0xaaaaaaaa;
    const __m512i lowRB = _mm512_mask_blend_epi8(kOddBytes, p0, _mm512_slli_epi16(p1, 8));
    const __m512i highRB = _mm512_mask_blend_epi8(kOddBytes, p2, _mm512_slli_epi16(p3, 8));
    const __m512i lowG = _mm512_mask_blend_epi8(kOddBytes, _mm512_srli_epi16(p0, 8), p1);
    const __m512i highG = _mm512_mask_blend_epi8(kOddBytes, _mm512_srli_epi16(p2, 8), p3);
    const auto lane = [](__m512i bits) HWY_ATTR { return Lane::Vector{_mm512_castsi512_ps(bits)}; };
    return {lane(_mm512_mask_blend_epi16(kOddHalves, lowRB, _mm512_slli_epi32(highRB, 16))),
            lane(_mm512_mask_blend_epi16(kOddHalves, lowG, _mm512_slli_epi32(highG, 16))),
            lane(_mm512_mask_blend_epi16(kOddHalves, _mm512_srli_epi32(lowRB, 16), highRB))};
}

#else

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

HWY_INLINE Vec3<Lane> LoadPixels(const ByteTable& ofByte, const unsigned char* rgba)
{
    const hn::RebindToUnsigned<Lane::Tag> u;
    const float* table = ofByte.values;
    const LaneBits pixel = LittleEndian(hn::LoadU(u, reinterpret_cast<const std::uint32_t*>(rgba)));
    return {LookUpByte(table, pixel), LookUpByte(table, hn::ShiftRight<8>(pixel)),
            LookUpByte(table, hn::ShiftRight<16>(pixel))};
}

#endif

/// The byte that a curve makes of each float, by its thresholds.
HWY_INLINE LaneBits BytesByThresholds(const ByteCurve& curve, Lane x)
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

#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX3

/// What the curve's estimate says, and which of it is open.
struct EstimatedBytes {
    LaneBits bytes;
    __mmask16 isOpen;
};
HWY_INLINE EstimatedBytes Estimate(const ByteEstimate& estimate, Lane x)
{
    // Of two operands the maximum takes the second where either is NaN.
    const __m512 zero = _mm512_setzero_ps();
    const __m512 inRange = _mm512_min_ps(_mm512_max_ps(x.vector.raw, zero), _mm512_set1_ps(1.0f));
    const __m512i bits = _mm512_castps_si512(_mm512_add_ps(inRange, _mm512_set1_ps(ByteEstimate::kShift)));
    const __m512i cell = _mm512_srli_epi32(bits, 21);
    const __m512i place =
        _mm512_or_si512(_mm512_and_si512(bits, _mm512_set1_epi32(0x1fffff)), _mm512_set1_epi32(0x3f800000));
    const __m512 t = _mm512_sub_ps(_mm512_castsi512_ps(place), _mm512_set1_ps(1.125f));
    const auto coefficient = [&](int k) HWY_ATTR {
        const float* c = estimate.coefficients[k];
        return _mm512_permutex2var_ps(_mm512_load_ps(c), cell, _mm512_load_ps(c + 16));
    };
    const __m512 t2 = _mm512_mul_ps(t, t);
    const __m512 even =
        _mm512_fmadd_ps(_mm512_fmadd_ps(coefficient(4), t2, coefficient(2)), t2, coefficient(0));
    const __m512 odd = _mm512_fmadd_ps(coefficient(3), t2, coefficient(1));
    const __m512 value = _mm512_fmadd_ps(odd, t, even);
    const __m512i nearest = _mm512_cvtps_epi32(value);
    const __m512 off = _mm512_abs_ps(_mm512_sub_ps(value, _mm512_cvtepi32_ps(nearest)));
    const __m512 sure = _mm512_set1_ps(0.5f - ByteEstimate::kMargin);
    return {LaneBits{nearest}, _mm512_cmp_ps_mask(off, sure, _CMP_NLT_UQ)};
}

/// The byte that a curve makes of each float.
HWY_INLINE LaneBits BytesOf(const ByteCurve& curve, Lane x)
{
    const EstimatedBytes estimated = Estimate(curve.Estimate(), x);
    return HWY_LIKELY(estimated.isOpen == 0) ? estimated.bytes : BytesByThresholds(curve, x);
}
HWY_INLINE Vec3<LaneBits> BytesOf(const ByteCurve& curve, const Vec3<Lane>& v)
{
    const EstimatedBytes x = Estimate(curve.Estimate(), v.x);
    const EstimatedBytes y = Estimate(curve.Estimate(), v.y);
    const EstimatedBytes z = Estimate(curve.Estimate(), v.z);
    if (HWY_LIKELY((x.isOpen | y.isOpen | z.isOpen) == 0))
        return {x.bytes, y.bytes, z.bytes};
    return {BytesByThresholds(curve, v.x), BytesByThresholds(curve, v.y), BytesByThresholds(curve, v.z)};
}

#else

HWY_INLINE LaneBits BytesOf(const ByteCurve& curve, Lane x)
{
    return BytesByThresholds(curve, x);
}
HWY_INLINE Vec3<LaneBits> BytesOf(const ByteCurve& curve, const Vec3<Lane>& v)
{
    return {BytesOf(curve, v.x), BytesOf(curve, v.y), BytesOf(curve, v.z)};
}

#endif

/// Three bytes and a fourth as pixels.
HWY_INLINE void StoreBytes(LaneBits red, LaneBits green, LaneBits blue, LaneBits alpha, unsigned char* rgba)
{
    const hn::RebindToUnsigned<Lane::Tag> u;
    const LaneBits low = hn::Or(red, hn::ShiftLeft<8>(green));
    const LaneBits high = hn::Or(hn::ShiftLeft<16>(blue), hn::ShiftLeft<24>(alpha));
    hn::StoreU(LittleEndian(hn::Or(low, high)), u, reinterpret_cast<std::uint32_t*>(rgba));
}

/// Pixels of the bytes that a curve makes of each component. The fourth byte is 255.
HWY_INLINE void StorePixels(const ByteCurve& curve, const Vec3<Lane>& v, unsigned char* rgba)
{
    const hn::RebindToUnsigned<Lane::Tag> u;
    const Vec3<LaneBits> bytes = BytesOf(curve, v);
    StoreBytes(bytes.x, bytes.y, bytes.z, hn::Set(u, 0xFFu), rgba);
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
