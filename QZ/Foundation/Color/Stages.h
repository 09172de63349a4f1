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
#include <bit>
#include <type_traits>

#include "QZ/Foundation/Color/QuickLane.h"
#include "QZ/Foundation/Color/Rows.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

#if QZ_HAS_PAIRS

/// A vector of a loop with results in doubt.
struct DoubtfulVector {
    std::size_t first;    ///< the place of its first float
    std::uint32_t bits;   ///< one for each float, set where its result is in doubt
};

/// A curve, which has no state, of a vector at values.
template <class Curve>
HWY_NOINLINE HWY_FLATTEN void MapOne(float* values)
{
    const Lane::Tag tag;
    hn::Store(Curve()(Lane(hn::Load(tag, values))).vector, tag, values);
}

/// Works the results in doubt anew, a vector of them at a time.
HWY_NOINLINE inline void Settle(const DoubtfulVector* doubtful, std::size_t count, const float* in,
                                float* out, void (*mapOne)(float*))
{
    constexpr std::size_t kMostInLane = HWY_MAX_BYTES / sizeof(float);
    HWY_ALIGN_MAX float values[kMostInLane];
    std::size_t places[kMostInLane];
    std::size_t n = 0;
    const auto work = [&]() HWY_ATTR {
        std::fill(values + n, values + kMostInLane, 1.0f);
        mapOne(values);
        for (std::size_t i = 0; i < n; ++i)
            out[places[i]] = values[i];
        n = 0;
    };
    for (std::size_t v = 0; v < count; ++v) {
        std::uint32_t bits = doubtful[v].bits;
        do {   // one bit, nearly always
            places[n] = doubtful[v].first + static_cast<std::size_t>(std::countr_zero(bits));
            values[n] = in[places[n]];
            bits &= bits - 1;
            if (++n == Lane::Size())
                work();
        } while (HWY_UNLIKELY(bits != 0));
    }
    if (n > 0)
        work();
}

/// curve of the floats of a vector, of the vector a step further, and so on before end; not in place.
/// One function for all conversions that have the curve.
///
/// Results in doubt are noted, and settled many at a time: a branch for each, however rare, would be
/// mispredicted, and cost more.
template <class In, class Curve>
HWY_NOINLINE HWY_FLATTEN void MapVectors(In* in, std::size_t end, std::size_t step, float* out,
                                         const Curve& curve)
{
    const Lane::Tag tag;
    constexpr std::size_t kMostDoubtful = 64;
    DoubtfulVector doubtful[kMostDoubtful];
    for (std::size_t i = 0; i < end;) {
        std::size_t count = 0;
        for (; i < end && count < kMostDoubtful; i += step) {
            const QuickLane result = curve(QuickLane(Lane(hn::LoadU(tag, in + i))));
            hn::StoreU(result.value.vector, tag, out + i);
            const std::uint32_t bits = BitsOf(result.doubts);
            doubtful[count] = {i, bits};
            count += bits != 0 ? 1 : 0;
        }
        Settle(doubtful, count, in, out, MapOne<Curve>);
    }
}

#else

template <class In, class Curve>
HWY_NOINLINE HWY_FLATTEN void MapVectors(In* in, std::size_t end, std::size_t step, float* out,
                                         const Curve& curve)
{
    const Lane::Tag tag;
    for (std::size_t i = 0; i < end; i += step)
        hn::StoreU(curve(Lane(hn::LoadU(tag, in + i))).vector, tag, out + i);
}

#endif

/// How many floats the vectors have that n floats begin or fill.
HWY_INLINE std::size_t Whole(std::size_t n)
{
    return (n + Lane::Size() - 1) / Lane::Size() * Lane::Size();
}

/// Colours between two stages: vectors of their first components, of their second, and of their third.
class Block {
public:
    /// Both rows of a block, and what of the pictures passes meanwhile, stay in 32 KiB.
    static constexpr std::size_t kColors = 320;

    /// The colours from the i-th on, which begins a vector.
    HWY_INLINE Vec3<Lane> Get(std::size_t i) const { return Get(i, m_colors); }
    HWY_INLINE void Set(std::size_t i, const Vec3<Lane>& color)
    {
        const std::size_t n = Lane::Size();
        float* v = m_colors + 3 * i;
        Store(color.x, v);
        Store(color.y, v + n);
        Store(color.z, v + 2 * n);
    }

    /// Finds curve(component) for every component of the first colours.
    template <class Curve>
    HWY_INLINE void Map(std::size_t size, const Curve& curve)
    {
        MapVectors(m_colors, 3 * Whole(size), Lane::Size(), m_mapped, curve);
    }
    HWY_INLINE Vec3<Lane> Mapped(std::size_t i) const { return Get(i, m_mapped); }

    /// Finds it for the first component alone.
    template <class Curve>
    HWY_INLINE void MapFirst(std::size_t size, const Curve& curve)
    {
        MapVectors(m_colors, 3 * Whole(size), 3 * Lane::Size(), m_mapped, curve);
    }
    HWY_INLINE Vec3<Lane> MappedFirst(std::size_t i) const
    {
        const Vec3<Lane> color = Get(i);
        return {Load(m_mapped + 3 * i), color.y, color.z};
    }

private:
    static HWY_INLINE Lane Load(const float* from) { return hn::Load(Lane::Tag(), from); }
    static HWY_INLINE void Store(Lane c, float* to) { hn::Store(c.vector, Lane::Tag(), to); }

    static HWY_INLINE Vec3<Lane> Get(std::size_t i, const float* from)
    {
        const std::size_t n = Lane::Size();
        const float* v = from + 3 * i;
        return {Load(v), Load(v + n), Load(v + 2 * n)};
    }

    HWY_ALIGN_MAX float m_colors[3 * kColors];
    HWY_ALIGN_MAX float m_mapped[3 * kColors];
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

/// The last formula of WorkStages().
template <auto stage, auto formula, auto... more, class Settings>
HWY_INLINE Vec3<Lane> LastFormula(Settings settings, const Block& block, std::size_t i)
{
    if constexpr (sizeof...(more) > 0)
        return LastFormula<more...>(settings, block, i);
    else
        return formula(settings, Stage<stage>::kIsOfFirst ? block.MappedFirst(i) : block.Mapped(i));
}

/// A stage, then a formula of every colour; further stages and formulas may follow. The last formula is left
/// to LastFormula().
template <auto stage, auto formula, auto... more, class Settings>
HWY_INLINE void WorkStages(Settings settings, Block& block, std::size_t size)
{
    Stage<stage>::WithCurve(settings, [&](const auto& curve) HWY_ATTR {
        if constexpr (Stage<stage>::kIsOfFirst)
            block.MapFirst(size, curve);
        else
            block.Map(size, curve);
    });
    if constexpr (sizeof...(more) > 0) {
        ForEachPart(size, 0, [&](std::size_t i, std::size_t) HWY_ATTR {
            block.Set(i, LastFormula<stage, formula>(settings, block, i));
        });
        WorkStages<more...>(settings, block, size);
    }
}
/// The colours of load(i, size) through a formula to store(i, size, colours), and through further stages
/// between them as WorkStages() takes them.
///
/// A block is stored while the next one is loaded: alone it would come faster than the memory takes it.
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
            const std::size_t size = std::min(Block::kColors, count - start);
            ForEachPart(size, 0, [&](std::size_t i, std::size_t part) HWY_ATTR {
                block.Set(i, formula(settings, load(start + i, part)));
            });
            WorkStages<stages...>(settings, block, size);
            ForEachPart(size, 0, [&](std::size_t i, std::size_t part) HWY_ATTR {
                store(start + i, part, LastFormula<stages...>(settings, block, i));
            });
        }
    }
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
