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

/// body(i, size) for as many elements as a vector holds at a time, from the i-th on; the first time for as
/// many as are asked for, if any, and the last time perhaps for fewer.
template <class Body>
HWY_INLINE void ForEachPart(std::size_t count, std::size_t first, const Body& body)
{
    const std::size_t n = Lane::Size();
    std::size_t size = std::min(first > 0 ? first : n, count);
    for (std::size_t i = 0; i < count; i += size, size = std::min(n, count - i))
        body(i, size);
}

/// The most values of a part: four for each float of a vector.
inline constexpr std::size_t kMostOfPart = 4 * (HWY_MAX_BYTES / sizeof(float));

/// A row of elements, valuesOfEach values each, to be read in whole vectors.
template <class T>
class RowIn {
public:
    HWY_INLINE RowIn(const T* row, std::size_t valuesOfEach) : m_row(row), m_valuesOfEach(valuesOfEach) {}

    /// As many elements as a vector holds; of them size from the row.
    HWY_INLINE const T* At(std::size_t i, std::size_t size)
    {
        const T* from = m_row + m_valuesOfEach * i;
        if (HWY_LIKELY(size == Lane::Size()))
            return from;
        std::memcpy(m_rest, from, size * m_valuesOfEach * sizeof(T));
        return m_rest;
    }

private:
    const T* m_row;
    std::size_t m_valuesOfEach;
    T m_rest[kMostOfPart] = {};
};

/// The same to be written.
template <class T>
class RowOut {
public:
    HWY_INLINE RowOut(T* row, std::size_t valuesOfEach) : m_row(row), m_valuesOfEach(valuesOfEach) {}

    /// write(to) writes as many elements as a vector holds; size of them reach the row.
    template <class Write>
    HWY_INLINE void Put(std::size_t i, std::size_t size, const Write& write)
    {
        T* to = m_row + m_valuesOfEach * i;
        if (HWY_LIKELY(size == Lane::Size()))
            return write(to);
        write(static_cast<T*>(m_rest));
        std::memcpy(to, m_rest, size * m_valuesOfEach * sizeof(T));
    }

private:
    T* m_row;
    std::size_t m_valuesOfEach;
    T m_rest[kMostOfPart];
};

/// Pixels looked up in a table.
///
/// A large row is written past the caches: it would drive all else out of them, and each line that is only
/// written need not be read first. Smaller ones are likely to be read again soon. (What works longer on a
/// colour than this gains nothing so: it does not wait for the memory.)
HWY_INLINE void LookUpPixels(const ByteTable& table, const unsigned char* rgba, std::size_t count,
                             Math::CVector3<float>* out)
{
    constexpr std::size_t kLarge = std::size_t(4) << 20;
    const bool isLarge = count * sizeof(*out) >= kLarge;
    RowIn<unsigned char> pixels(rgba, 4);
    RowOut<float> colors(Components(out), 3);
    const std::size_t first = isLarge ? ColorsBeforeAlignment(Components(out)) : 0;
    ForEachPart(count, first, [&](std::size_t i, std::size_t size) HWY_ATTR {
        const Vec3<Lane> color = LoadPixels(table, pixels.At(i, size));
        colors.Put(i, size, [&](float* to) HWY_ATTR {
            if (isLarge && size == Lane::Size())
                StreamColors(color, to);
            else
                StoreColors(color, to);
        });
    });
    if (isLarge)
        hwy::FlushStream();
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
