// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieReader/PictureColours.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace QZ::Platform::Movie {

namespace {

// From so many rows on an untagged movie is taken for high definition.
constexpr int kHighDefinition = 720;

std::string WhyNotShown(AVColorTransferCharacteristic transfer)
{
    switch (transfer) {
        case AVCOL_TRC_SMPTE2084:
            return "high dynamic range (PQ, SMPTE ST 2084) is not read";
        case AVCOL_TRC_ARIB_STD_B67:
            return "high dynamic range (HLG, ARIB STD-B67) is not read";
        case AVCOL_TRC_LINEAR:
            return "pictures of linear light are not read";
        case AVCOL_TRC_LOG:
        case AVCOL_TRC_LOG_SQRT:
            return "pictures of logarithmic light are not read";
        default:
            return {};
    }
}

bool IsRGB(AVPixelFormat format)
{
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    return description && (description->flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL)) != 0;
}

bool IsGrey(AVPixelFormat format)
{
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    return description && !IsRGB(format) && description->nb_components < 3;
}

/// Formats that say full range by themselves, as those that leave it to the tags.
AVPixelFormat WithoutRange(AVPixelFormat format)
{
    switch (format) {
        case AV_PIX_FMT_YUVJ420P:
            return AV_PIX_FMT_YUV420P;
        case AV_PIX_FMT_YUVJ422P:
            return AV_PIX_FMT_YUV422P;
        case AV_PIX_FMT_YUVJ444P:
            return AV_PIX_FMT_YUV444P;
        case AV_PIX_FMT_YUVJ440P:
            return AV_PIX_FMT_YUV440P;
        case AV_PIX_FMT_YUVJ411P:
            return AV_PIX_FMT_YUV411P;
        default:
            return format;
    }
}

struct NamedMatrix {
    int coefficients;
    const char* name;
};

std::optional<NamedMatrix> MatrixOf(AVColorSpace matrix, int height)
{
    switch (matrix) {
        case AVCOL_SPC_UNSPECIFIED:
            return MatrixOf(height < kHighDefinition ? AVCOL_SPC_SMPTE170M : AVCOL_SPC_BT709, height);
        case AVCOL_SPC_BT709:
            return NamedMatrix{SWS_CS_ITU709, "BT.709"};
        case AVCOL_SPC_BT470BG:
        case AVCOL_SPC_SMPTE170M:
            return NamedMatrix{SWS_CS_ITU601, "BT.601"};
        case AVCOL_SPC_SMPTE240M:
            return NamedMatrix{SWS_CS_SMPTE240M, "SMPTE 240M"};
        case AVCOL_SPC_FCC:
            return NamedMatrix{SWS_CS_FCC, "FCC"};
        case AVCOL_SPC_BT2020_NCL:
            return NamedMatrix{SWS_CS_BT2020, "BT.2020"};
        default:
            return std::nullopt;
    }
}

}   // namespace

ColourTags::ColourTags(const AVFrame& frame)
    : format(static_cast<AVPixelFormat>(frame.format)),
      height(frame.height),
      matrix(frame.colorspace),
      range(frame.color_range),
      primaries(frame.color_primaries),
      transfer(frame.color_trc)
{}

ColourTags::ColourTags(const AVCodecParameters& track)
    : format(static_cast<AVPixelFormat>(track.format)),
      height(track.height),
      matrix(track.color_space),
      range(track.color_range),
      primaries(track.color_primaries),
      transfer(track.color_trc)
{}

std::optional<PictureColours> ColoursOf(const ColourTags& tags, std::string& reason)
{
    reason = WhyNotShown(tags.transfer);
    if (!reason.empty())
        return std::nullopt;
    PictureColours colours;
    colours.format = WithoutRange(tags.format);
    colours.primaries = tags.primaries;
    if (IsRGB(tags.format)) {
        colours.isFullRange = true;
        colours.description = "RGB";
        return colours;
    }
    const bool isJPEG = colours.format != tags.format;
    const bool isGrey = IsGrey(tags.format);
    const std::optional<NamedMatrix> matrix = MatrixOf(isGrey ? AVCOL_SPC_BT709 : tags.matrix, tags.height);
    if (!matrix) {
        const char* name = av_color_space_name(tags.matrix);
        reason = std::string("pictures of the colour matrix ") + (name ? name : "unknown") + " are not read";
        return std::nullopt;
    }
    colours.matrix = matrix->coefficients;
    colours.isFullRange = isJPEG || tags.range == AVCOL_RANGE_JPEG;
    const bool isAssumed = (tags.matrix == AVCOL_SPC_UNSPECIFIED && !isGrey) ||
                           (tags.range == AVCOL_RANGE_UNSPECIFIED && !isJPEG);
    colours.description = std::string(isGrey ? "grey" : matrix->name) +
                          (colours.isFullRange ? ", full range" : ", limited range") +
                          (isAssumed ? ", assumed" : "");
    return colours;
}

}   // namespace QZ::Platform::Movie
