// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "QZ/Platform/MovieWriter/Codec.h"

namespace QZ::Platform::Movie {

/// Turns BGRA pictures (full-range RGB; alpha is ignored) into what an encoder takes: BT.709 with limited
/// range, chroma sited as H.264 has it (left, half way between two rows).
///
/// A source of another size than the output is scaled by bicubic interpolation to fill the output, and what
/// exceeds it is cropped on both sides alike. Encoders want an even width and height: a picture whose size is
/// odd gets its last column or row once more, and the file says to crop it.
class PictureConverter {
public:
    /// Sizes are positive. False when the library refuses them.
    bool Open(int sourceWidth, int sourceHeight, int width, int height, AVPixelFormat format);

    [[nodiscard]] int CodedWidth() const { return m_codedWidth; }
    [[nodiscard]] int CodedHeight() const { return m_codedHeight; }

    /// The converted picture, which this object may use again once nobody else refers to it; null out of
    /// memory.
    [[nodiscard]] AVFrame* Convert(const unsigned char* bgra, int bytesPerRow);

private:
    bool IsPadded() const { return m_codedWidth != m_width || m_codedHeight != m_height; }
    [[nodiscard]] Owned<AVFrame> NewBGRA(int width, int height) const;
    void CopyNarrow(const unsigned char*& bgra, int& bytesPerRow);
    void Pad(const unsigned char* bgra, int bytesPerRow);
    [[nodiscard]] AVFrame* FreePicture();

    int m_width = 0, m_height = 0;
    int m_codedWidth = 0, m_codedHeight = 0;
    int m_cropX = 0, m_cropY = 0, m_cropWidth = 0,
        m_cropHeight = 0;   ///< of the source, what fills the output
    AVPixelFormat m_format = AV_PIX_FMT_NONE;
    Owned<SwsContext> m_convert;   ///< to the encoder's format, scaling as well when nothing is padded
    Owned<SwsContext> m_scale;     ///< to BGRA of the displayed size, when that is odd and not the source's
    Owned<AVFrame> m_padded;       ///< BGRA of the coded size
    Owned<AVFrame> m_narrow;       ///< a copy of a source that is too narrow for the library
    std::vector<Owned<AVFrame>> m_pictures;
};

}   // namespace QZ::Platform::Movie
