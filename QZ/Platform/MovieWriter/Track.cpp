// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/Track.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace QZ::Platform::Movie {

namespace {
__extension__ typedef __int128 Wide;

constexpr std::int64_t kLatest = std::numeric_limits<std::int64_t>::max();

// Times beyond this stay unrefined: the sums and differences of two of them must fit as well.
constexpr std::int64_t kLargestTime = kLatest / 4;
}   // namespace

std::int64_t Scale(std::int64_t value, std::int64_t numerator, std::int64_t denominator)
{
    const Wide product = static_cast<Wide>(value) * numerator;
    const Wide half = denominator / 2;
    const Wide rounded = (product + (product < 0 ? -half : half)) / denominator;
    return static_cast<std::int64_t>(
        std::clamp<Wide>(rounded, std::numeric_limits<std::int64_t>::min(), kLatest));
}

std::optional<std::int32_t> CommonTimescale(std::int32_t a, std::int32_t b)
{
    const std::int64_t multiple = std::lcm<std::int64_t, std::int64_t>(a, b);
    if (multiple <= 0 || multiple > std::numeric_limits<std::int32_t>::max())
        return std::nullopt;
    return static_cast<std::int32_t>(multiple);
}

bool Track::Refine(std::int32_t multiple)
{
    const std::int64_t factor = multiple / timescale;
    const auto fits = [factor](std::int64_t time) {
        return time <= kLargestTime / factor && time >= -(kLargestTime / factor);
    };
    if (!fits(contentStart) || !fits(contentEnd) || !fits(lastDuration) || !fits(MediaStart()))
        return false;
    for (Sample& sample : samples) {
        sample.decodeTime *= factor;
        sample.presentationTime *= factor;
    }
    contentStart *= factor;
    contentEnd *= factor;
    lastDuration *= factor;
    timescale = multiple;
    return true;
}

std::int32_t Movie::Timescale() const
{
    std::int32_t common = sessionStart.timescale;
    std::int32_t finest = sessionStart.timescale;
    bool fits = true;
    for (const Track& track : tracks) {
        if (track.timescale <= 0)
            continue;
        finest = std::max(finest, track.timescale);
        const std::optional<std::int32_t> next = CommonTimescale(common, track.timescale);
        fits = fits && next.has_value();
        common = next.value_or(common);
    }
    return fits ? common : finest;
}

}   // namespace QZ::Platform::Movie
