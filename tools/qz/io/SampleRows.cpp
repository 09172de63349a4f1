// SPDX-License-Identifier: MIT
#include "tools/qz/io/SampleRows.h"

#include <algorithm>
#include <cstring>

namespace QZ::Tool {

namespace {

template <class Sample>
Sample Load(const unsigned char* samples, std::size_t index)
{
    Sample value;
    std::memcpy(&value, samples + index * sizeof(Sample), sizeof value);
    return value;
}

template <class Sample>
void DivideAlphaOutOf(const RasterHeader& header, const unsigned char* samples, unsigned char* out)
{
    constexpr std::uint32_t kMost = static_cast<Sample>(~Sample{0});
    const auto colors = static_cast<std::size_t>(header.ColorSamples());
    for (std::size_t i = 0; i < header.width * (colors + 1); i += colors + 1) {
        const std::uint32_t alpha = Load<Sample>(samples, i + colors);
        for (std::size_t c = 0; c <= colors; ++c) {
            std::uint32_t value = Load<Sample>(samples, i + c);
            if (c < colors)
                value = alpha == 0 ? 0 : std::min(kMost, (value * kMost + alpha / 2) / alpha);
            const auto sample = static_cast<Sample>(value);
            std::memcpy(out + (i + c) * sizeof sample, &sample, sizeof sample);
        }
    }
}

template <Model model, bool alpha>
void Expand(const RasterHeader& header, const unsigned char* in, unsigned char* out)
{
    constexpr std::size_t kColors = model == Model::Grey ? 1 : model == Model::RGB ? 3 : 4;
    const unsigned flip = header.inverted ? 0 : 255;   // inks to light
    for (std::uint64_t x = 0; x < header.width; ++x, in += kColors + (alpha ? 1 : 0), out += 4) {
        if constexpr (model == Model::CMYK) {
            const unsigned light = in[3] ^ flip;
            for (std::size_t c = 0; c < 3; ++c)
                out[c] = static_cast<unsigned char>(((in[c] ^ flip) * light + 127) / 255);
        } else {
            out[0] = in[0];
            out[1] = in[model == Model::Grey ? 0 : 1];
            out[2] = in[model == Model::Grey ? 0 : 2];
        }
        out[3] = alpha ? in[kColors] : 255;
    }
}

}   // namespace

void NarrowRow(const RasterHeader& header, const unsigned char* samples, std::vector<unsigned char>& out)
{
    out.resize(static_cast<std::size_t>(header.width) * static_cast<std::size_t>(header.Samples()));
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = Narrow(Load<std::uint16_t>(samples, i));
}

void DivideAlphaOut(const RasterHeader& header, const unsigned char* samples, std::vector<unsigned char>& out)
{
    out.resize(static_cast<std::size_t>(header.width) * header.BytesPerPixel());
    if (header.bytesPerSample == 2)
        DivideAlphaOutOf<std::uint16_t>(header, samples, out.data());
    else
        DivideAlphaOutOf<std::uint8_t>(header, samples, out.data());
}

void ExpandRow(const RasterHeader& header, const unsigned char* samples, unsigned char* out)
{
    switch (header.model) {
        case Model::Grey:
            return header.alpha ? Expand<Model::Grey, true>(header, samples, out)
                                : Expand<Model::Grey, false>(header, samples, out);
        case Model::RGB:
            return header.alpha ? Expand<Model::RGB, true>(header, samples, out)
                                : Expand<Model::RGB, false>(header, samples, out);
        case Model::CMYK:
            return header.alpha ? Expand<Model::CMYK, true>(header, samples, out)
                                : Expand<Model::CMYK, false>(header, samples, out);
    }
}

}   // namespace QZ::Tool
