// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "QZ/Platform/MediaBuffers.h"
#include "QZ/Platform/MovieWriter/Box.h"

namespace QZ::Platform::Movie {

using Bytes = std::vector<unsigned char>;

/// A video track's sample description.
struct VideoEntry {
    std::string_view format;   ///< avc1, hvc1, apcn
    int codedWidth = 0, codedHeight = 0;
    int width = 0, height = 0;        ///< as displayed: at most a row and a column less than the coded size
    std::string_view configuration;   ///< type of the decoder configuration box, or empty
    Bytes configurationRecord;
    std::span<const unsigned char> iccProfile;   ///< empty for none
};
[[nodiscard]] Bytes WriteVideoEntry(const VideoEntry& entry);

/// MPEG-4 audio. \param configuration  its AudioSpecificConfig (ISO/IEC 14496-3, 1.6.2.1)
[[nodiscard]] Bytes WriteAACEntry(double sampleRate, int channels,
                                  std::span<const unsigned char> configuration, int bitRate);

/// Uncompressed sound, interleaved.
struct PCMEntry {
    double sampleRate = 0;
    int channels = 0;
    int bitsPerChannel = 0;
    bool isFloat = false;
    bool isBigEndian = false;
    bool isSigned = true;
    int bytesPerFrame = 0;   ///< of all channels
};
[[nodiscard]] Bytes WritePCMEntry(const PCMEntry& entry);

/// Timed metadata: the keys that its samples name by their local identifiers.
[[nodiscard]] Bytes WriteMetadataEntry(std::span<const MetadataKey> keys);

}   // namespace QZ::Platform::Movie
