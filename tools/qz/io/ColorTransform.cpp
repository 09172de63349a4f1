// SPDX-License-Identifier: MIT
#include "tools/qz/io/ColorTransform.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "tools/qz/io/SampleRows.h"

namespace QZ::Tool {

namespace {

struct ProfileCloser {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, ProfileCloser>;

cmsColorSpaceSignature Signature(Model model)
{
    switch (model) {
        case Model::Grey:
            return cmsSigGrayData;
        case Model::RGB:
            return cmsSigRgbData;
        case Model::CMYK:
            break;
    }
    return cmsSigCmykData;
}

cmsUInt32Number InputFormat(const RasterHeader& header)
{
    const int space = header.model == Model::Grey ? PT_GRAY : header.model == Model::RGB ? PT_RGB : PT_CMYK;
    const auto bits = [](int value) { return static_cast<cmsUInt32Number>(value); };
    return COLORSPACE_SH(bits(space)) | CHANNELS_SH(bits(header.ColorSamples())) |
           BYTES_SH(bits(header.bytesPerSample)) | EXTRA_SH(bits(header.alpha ? 1 : 0)) |
           FLAVOR_SH(bits(header.inverted ? 1 : 0));
}

std::string Description(cmsHPROFILE profile)
{
    std::array<char, 128> text{};
    cmsGetProfileInfoASCII(profile, cmsInfoDescription, "en", "US", text.data(), text.size());
    return text.data()[0] != '\0' ? OneLine(text.data()) : "unnamed";
}

}   // namespace

std::unique_ptr<ColorTransform> ColorTransform::FromProfile(const RasterHeader& header, Source& source)
{
    if (header.profile.empty())
        return nullptr;
    const Profile profile(
        cmsOpenProfileFromMem(header.profile.data(), static_cast<cmsUInt32Number>(header.profile.size())));
    if (profile == nullptr || cmsGetColorSpace(profile.get()) != Signature(header.model)) {
        source.remarks.emplace_back(
            profile == nullptr
                ? "its colour profile is damaged and was passed over"
                : "its colour profile is of another kind than the picture and was passed over");
        return nullptr;
    }
    const Profile sRGB(cmsCreate_sRGBProfile());
    std::unique_ptr<ColorTransform> transform(new ColorTransform(header));
    transform->m_transform.reset(cmsCreateTransform(profile.get(), InputFormat(header), sRGB.get(),
                                                    TYPE_RGBA_8, INTENT_PERCEPTUAL, 0));
    if (transform->m_transform == nullptr) {
        source.remarks.emplace_back("its colour profile cannot be converted from and was passed over");
        return nullptr;
    }
    source.profile = Description(profile.get());
    return transform->ChangesNothing() ? nullptr : std::move(transform);
}

void ColorTransform::Row(const unsigned char* samples, int width, unsigned char* rgba) const
{
    cmsDoTransform(m_transform.get(), samples, rgba, static_cast<cmsUInt32Number>(width));
    const std::size_t pixel = m_layout.BytesPerPixel();
    const auto sample = static_cast<std::size_t>(m_layout.bytesPerSample);
    for (std::size_t x = 0; x < static_cast<std::size_t>(width); ++x) {
        unsigned char alpha = 255;
        if (m_layout.alpha && sample == 1) {
            alpha = samples[(x + 1) * pixel - 1];
        } else if (m_layout.alpha) {
            std::uint16_t wide = 0;
            std::memcpy(&wide, samples + (x + 1) * pixel - sample, sizeof wide);
            alpha = Narrow(wide);
        }
        rgba[4 * x + 3] = alpha;
    }
}

// Tries a grid of colours with and without the transform.
bool ColorTransform::ChangesNothing() const
{
    constexpr int kSteps = 16;   // levels a sample: 0, 17, ... 255
    constexpr int kColors = kSteps * kSteps * kSteps;
    RasterHeader layout = m_layout;
    layout.width = kColors;
    std::vector<unsigned char> samples;
    for (int color = 0; color < kColors; ++color)
        for (int i = 0, rest = color; i < layout.Samples(); ++i, rest /= kSteps)
            samples.insert(samples.end(), static_cast<std::size_t>(layout.bytesPerSample),
                           static_cast<unsigned char>(rest % kSteps * 17));
    std::vector<unsigned char> converted(4 * kColors);
    std::vector<unsigned char> plain(4 * kColors);
    Row(samples.data(), kColors, converted.data());
    if (layout.bytesPerSample == 2) {
        std::vector<unsigned char> narrow;
        NarrowRow(layout, samples.data(), narrow);
        ExpandRow(layout, narrow.data(), plain.data());
    } else {
        ExpandRow(layout, samples.data(), plain.data());
    }
    for (std::size_t i = 0; i < plain.size(); ++i)
        if (std::abs(plain[i] - converted[i]) > 1)
            return false;
    return true;
}

}   // namespace QZ::Tool
