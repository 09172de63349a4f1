// SPDX-License-Identifier: MIT

/// \file
/// Conversions worked in stages, a block of colours at a time.
///
/// A conversion with a power in each component is one long chain: a processor sees no further ahead than one
/// vector of it, and waits for most of its results. In short loops over a block that stays in the nearest
/// cache, several vectors are under way at once.

#if defined(QZ_FOUNDATION_COLOR_STAGES) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_COLOR_STAGES
#undef QZ_FOUNDATION_COLOR_STAGES
#else
#define QZ_FOUNDATION_COLOR_STAGES
#endif

#include <algorithm>
#include <type_traits>

#include "QZ/Foundation/Color/QuickLane.h"
#include "QZ/Foundation/Color/Rows.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

#if QZ_HAS_PAIRS
/// Returns before which vector it stopped.
template <class Curve>
HWY_INLINE std::size_t MapWhileSure(const float* in, std::size_t i, std::size_t end, std::size_t step,
                                    float* out, const Curve& curve)
{
    const Lane::Tag tag;
    for (; i < end; i += step) {
        const QuickLane result = curve(QuickLane(Lane(hn::LoadU(tag, in + i))));
        if (HWY_UNLIKELY(!NoneSet(result.doubts)))
            break;
        hn::StoreU(result.value.vector, tag, out + i);
    }
    return i;
}
#endif

/// curve of the floats of a vector, of the vector a step further, and so on before end; in place or not.
/// One function for all conversions that have the curve.
template <class In, class Curve>
HWY_NOINLINE HWY_FLATTEN void MapVectors(In* in, std::size_t end, std::size_t step, float* out,
                                         const Curve& curve)
{
    const Lane::Tag tag;
    for (std::size_t i = 0; i < end; i += step) {
#if QZ_HAS_PAIRS
        i = MapWhileSure(in, i, end, step, out, curve);
        if (i >= end)
            return;
#endif
        hn::StoreU(curve(Lane(hn::LoadU(tag, in + i))).vector, tag, out + i);
    }
}

/// How many floats the vectors have that n floats begin or fill.
HWY_INLINE std::size_t Whole(std::size_t n)
{
    return (n + Lane::Size() - 1) / Lane::Size() * Lane::Size();
}

/// Colours between two stages: vectors of their first components, of their second, and of their third.
class Block {
public:
    static constexpr std::size_t kColors = 512;

    /// The colours from the i-th on, which begins a vector.
    HWY_INLINE Vec3<Lane> Get(std::size_t i) const
    {
        const std::size_t n = Lane::Size();
        const float* v = m_lanes + 3 * i;
        return {Load(v), Load(v + n), Load(v + 2 * n)};
    }
    HWY_INLINE void Set(std::size_t i, const Vec3<Lane>& color)
    {
        const std::size_t n = Lane::Size();
        float* v = m_lanes + 3 * i;
        Store(color.x, v);
        Store(color.y, v + n);
        Store(color.z, v + 2 * n);
    }

    /// Every component of the first colours becomes curve(component).
    template <class Curve>
    HWY_INLINE void Map(std::size_t size, const Curve& curve)
    {
        MapVectors(m_lanes, 3 * Whole(size), Lane::Size(), m_lanes, curve);
    }
    /// The first component alone does.
    template <class Curve>
    HWY_INLINE void MapFirst(std::size_t size, const Curve& curve)
    {
        MapVectors(m_lanes, 3 * Whole(size), 3 * Lane::Size(), m_lanes, curve);
    }

private:
    static HWY_INLINE Lane Load(const float* from) { return hn::Load(Lane::Tag(), from); }
    static HWY_INLINE void Store(Lane c, float* to) { hn::Store(c.vector, Lane::Tag(), to); }

    HWY_ALIGN_MAX float m_lanes[3 * kColors];
};

/// A stage: a curve of the first component, the others staying as they are.
template <auto curve>
struct FirstComponent {};

/// A stage: curve(useGamma22, extendedRange, component). Each pair of flags has a loop of its own.
template <auto curve>
struct ByFlags {};
template <auto curve, bool useGamma22, bool extendedRange>
struct WithFlags {
    template <class F>
    HWY_INLINE F operator()(const F& c) const
    {
        return curve(useGamma22, extendedRange, c);
    }
};

/// What a stage works by; any other is the curve itself.
template <auto stage>
struct Stage {
    static constexpr bool kIsOfFirst = false;

    /// use(curve) for the curve of one component.
    template <class Settings, class Use>
    static HWY_INLINE void WithCurve(const Settings&, const Use& use)
    {
        use(stage);
    }
};
template <auto curve, FirstComponent<curve> stage>
struct Stage<stage> : Stage<curve> {
    static constexpr bool kIsOfFirst = true;
};
template <auto curve, ByFlags<curve> stage>
struct Stage<stage> {
    static constexpr bool kIsOfFirst = false;

    template <class Settings, class Use>
    static HWY_INLINE void WithCurve(const Settings& settings, const Use& use)
    {
        if (settings.useGamma22)
            settings.extendedRange ? use(WithFlags<curve, true, true>())
                                   : use(WithFlags<curve, true, false>());
        else
            settings.extendedRange ? use(WithFlags<curve, false, true>())
                                   : use(WithFlags<curve, false, false>());
    }
};

/// A stage, then a formula of every colour; further stages and formulas may follow. The results go to
/// store(i, size, colours).
template <auto stage, auto formula, auto... more, class Settings, class Store>
HWY_INLINE void WorkStages(Settings settings, Block& block, std::size_t size, const Store& store)
{
    Stage<stage>::WithCurve(settings, [&](const auto& curve) HWY_ATTR {
        if constexpr (Stage<stage>::kIsOfFirst)
            block.MapFirst(size, curve);
        else
            block.Map(size, curve);
    });
    ForEachPart(size, 0, [&](std::size_t i, std::size_t part) HWY_ATTR {
        const Vec3<Lane> color = formula(settings, block.Get(i));
        if constexpr (sizeof...(more) == 0)
            store(i, part, color);
        else
            block.Set(i, color);
    });
    if constexpr (sizeof...(more) > 0)
        WorkStages<more...>(settings, block, size, store);
}

/// The colours of load(i, size) through a formula, and through further stages as WorkStages() takes them.
template <auto formula, auto... stages, class Settings, class Load, class Store>
HWY_INLINE void Convert(Settings settings, std::size_t count, const Load& load, const Store& store)
{
    if constexpr (sizeof...(stages) == 0) {
        ForEachPart(count, 0, [&](std::size_t i, std::size_t size) HWY_ATTR {
            store(i, size, formula(settings, load(i, size)));
        });
    } else {
        Block block;
        for (std::size_t start = 0; start < count; start += Block::kColors) {
            const std::size_t blockSize = std::min(Block::kColors, count - start);
            ForEachPart(blockSize, 0, [&](std::size_t i, std::size_t size) HWY_ATTR {
                block.Set(i, formula(settings, load(start + i, size)));
            });
            WorkStages<stages...>(settings, block, blockSize,
                                  [&](std::size_t i, std::size_t size, const Vec3<Lane>& color)
                                      HWY_ATTR { store(start + i, size, color); });
        }
    }
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
