// SPDX-License-Identifier: MIT

/// \file
/// Loops over rows of colours and pixels, a vector at a time.

#if defined(QZ_FOUNDATION_COLOR_ROWS) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_COLOR_ROWS
#undef QZ_FOUNDATION_COLOR_ROWS
#else
#define QZ_FOUNDATION_COLOR_ROWS
#endif

#include <hwy/cache_control.h>
#include <algorithm>
#include <cstring>

#include "QZ/Foundation/Color/Pixels.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// Colours as floats, three each. An empty row may have no address.
HWY_INLINE const float* Components(const Math::CVector3<float>* colors)
{
    return reinterpret_cast<const float*>(colors);
}
HWY_INLINE float* Components(Math::CVector3<float>* colors)
{
    return reinterpret_cast<float*>(colors);
}

/// body(from, to, isWhole) for as many elements as a vector holds at a time, the first time perhaps for
/// fewer. Where it is fewer, from and to are buffers of a whole vector.
template <class In, class Out, class Body>
HWY_INLINE void ForEachVector(const In* in, std::size_t inSize, std::size_t count, Out* out,
                              std::size_t outSize, std::size_t first, const Body& body)
{
    constexpr std::size_t kMostLanes = HWY_MAX_BYTES / sizeof(float);
    In inRest[4 * kMostLanes] = {};
    Out outRest[4 * kMostLanes];
    const std::size_t n = Lane::Size();
    std::size_t size = first > 0 ? std::min(first, count) : std::min(n, count);
    for (std::size_t i = 0; i < count; i += size, size = std::min(n, count - i)) {
        const In* from = in + inSize * i;
        Out* to = out + outSize * i;
        const bool isWhole = size == n;
        if (HWY_UNLIKELY(!isWhole)) {
            std::memcpy(inRest, from, size * inSize * sizeof(In));
            from = inRest;
            to = outRest;
        }
        body(from, to, isWhole);
        if (HWY_UNLIKELY(!isWhole))
            std::memcpy(out + outSize * i, outRest, size * outSize * sizeof(Out));
    }
}

/// The colour that body(from) makes of each element.
///
/// A large row is written past the caches: it would drive all else out of them, and each line that is only
/// written need not be read first. Smaller ones are likely to be read again soon.
template <class In, class Body>
HWY_INLINE void ColorsOfEach(const In* in, std::size_t inSize, std::size_t count, Math::CVector3<float>* out,
                             const Body& body)
{
    constexpr std::size_t kLarge = std::size_t(4) << 20;
    const bool isStreamed = count * sizeof(*out) >= kLarge;
    const std::size_t first = isStreamed ? ColorsBeforeAlignment(Components(out)) : 0;
    ForEachVector(in, inSize, count, Components(out), 3, first,
                  [&](const In* from, float* to, bool isWhole) HWY_ATTR {
                      const Vec3<Lane> color = body(from);
                      if (isStreamed && isWhole)
                          StreamColors(color, to);
                      else
                          StoreColors(color, to);
                  });
    if (isStreamed)
        hwy::FlushStream();
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
