// SPDX-License-Identifier: MIT
#pragma once

#include <lcms2.h>

#include <memory>

#include "tools/qz/Image.h"
#include "tools/qz/io/Raster.h"

namespace QZ::Tool {

/// From the colours of an ICC profile to 8-bit sRGB.
class ColorTransform {
public:
    /// The transform for rows of a picture with a profile.
    /// \param source  gets the profile's name, or a remark when the profile is damaged or of another kind
    /// than the
    ///                picture: it is then passed over.
    /// \return  null when there is no profile, or none that changes a colour by more than one level: the
    /// values of
    ///          a picture that says sRGB stay as they are.
    static std::unique_ptr<ColorTransform> FromProfile(const RasterHeader& header, Source& source);

    /// One row as RGBA.
    void Row(const unsigned char* samples, int width, unsigned char* rgba) const;

private:
    struct Closer {
        void operator()(void* transform) const { cmsDeleteTransform(transform); }
    };

    explicit ColorTransform(const RasterHeader& header) : m_layout(header) { m_layout.profile.clear(); }
    [[nodiscard]] bool ChangesNothing() const;

    RasterHeader m_layout;
    std::unique_ptr<void, Closer> m_transform;
};

}   // namespace QZ::Tool
