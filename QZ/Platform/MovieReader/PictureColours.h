// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "QZ/Platform/MovieWriter/Codec.h"

namespace QZ::Platform::Movie {

/// What the picture of a movie is tagged with.
struct ColourTags {
    AVPixelFormat format = AV_PIX_FMT_NONE;
    int height = 0;
    AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
    AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
    AVColorPrimaries primaries = AVCOL_PRI_UNSPECIFIED;
    AVColorTransferCharacteristic transfer = AVCOL_TRC_UNSPECIFIED;

    explicit ColourTags(const AVFrame& frame);
    explicit ColourTags(const AVCodecParameters& track);

    bool operator==(const ColourTags&) const = default;
};

/// How a picture's values become RGB.
struct PictureColours {
    AVPixelFormat format = AV_PIX_FMT_NONE;   ///< without a range of its own
    int matrix = SWS_CS_ITU709;
    bool isFullRange = false;
    AVColorPrimaries primaries = AVCOL_PRI_BT709;
    std::string description;   ///< as MovieDescription::colours
};

/// What tags mean, with what is assumed for those that are missing.
/// \return none with a reason for colours that cannot be shown: high dynamic range and unknown matrices.
[[nodiscard]] std::optional<PictureColours> ColoursOf(const ColourTags& tags, std::string& reason);

}   // namespace QZ::Platform::Movie
