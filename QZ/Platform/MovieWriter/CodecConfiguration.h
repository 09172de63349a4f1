// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

namespace QZ::Platform::Movie {

/// The AVC decoder configuration record (ISO/IEC 14496-15, 5.3.3.1) of a parameter sequence with start codes;
/// empty when it holds no sequence or no picture parameter set.
[[nodiscard]] std::vector<unsigned char> AVCConfiguration(std::span<const unsigned char> parameterSets);

/// The HEVC decoder configuration record (ISO/IEC 14496-15, 8.3.3.1), of 8-bit 4:2:0 video; empty when a
/// video, sequence or picture parameter set is missing.
[[nodiscard]] std::vector<unsigned char> HEVCConfiguration(std::span<const unsigned char> parameterSets);

/// A stream with start codes (ITU-T H.264, Annex B; H.265, Annex B) as the file stores it: each unit behind
/// its size in four bytes.
[[nodiscard]] std::vector<unsigned char> SizedUnits(std::span<const unsigned char> stream);

}   // namespace QZ::Platform::Movie
