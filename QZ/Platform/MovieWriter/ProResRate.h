// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace QZ::Platform::Movie {

/// The quantisers with which ProRes pictures are encoded, finest first. Each picture takes one for all its
/// slices: the encoder's own search, slice by slice, takes several times as long as all the rest of its work,
/// and more bits for less.
inline constexpr int kProResQuantisers[] = {2, 3, 4, 6, 8, 12, 16, 24, 32, 48, 64};

/// The size in bytes that a picture of ProRes 422 is not to exceed for long: that of the codec's published
/// target rates, 147 Mbit/s for 1920 x 1080 at 29.97 frames a second and for 1280 x 720 at 59.94, 42 Mbit/s
/// for 720 x 486 at 29.97; by macroblocks.
[[nodiscard]] std::size_t ProResTargetSize(int width, int height);

/// The index of the quantiser for the picture after one of `size` bytes: a coarser one where that exceeded
/// the target, and a finer one where the picture would have fitted with that as well.
[[nodiscard]] std::size_t NextProResQuantiser(std::size_t index, std::size_t size, std::size_t target);

}   // namespace QZ::Platform::Movie
