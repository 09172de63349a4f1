// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "QZ/Export.h"

namespace QZ::Foundation {

/// Saves pixels as PNG files, and compares two pictures of the application's.
///
/// Buffers are packed rows, 4 values a pixel in the order R, G, B, A (alpha not premultiplied) or 1 value a
/// pixel
/// ("R plane"). Half floats run from 0 to 1: each becomes floor(255 h + 0.5) as a byte, clamped to 0 and 255;
/// NaN becomes 0. The caller's buffers are never changed.
///
/// Colours are tagged with the sRGB profile, or with that of Display P3 where `displayP3` says so; grey is
/// untagged. Files appear whole or not at all. Failures are silent, and leave nothing behind: a path that
/// cannot be written, no photo album, a size below 1, or more than 2^31 - 1 bytes of pixels.
/// \code
///     const unsigned char red[] = {255, 0, 0, 128};
///     CFile::SaveRGBAToFile("red.png", 1, 1, false, false, false, red);   // one half-transparent pixel
/// \endcode
class QZ_API CFile {
public:
    /// Saves into the photo album (see Platform::PhotoAlbum).
    /// \param opaque     saves every alpha as 255.
    /// \param swapRB     exchanges the first byte of every pixel with the third: for BGRA.
    /// \param displayP3  the colours are Display P3.
    /// \param rgba       width x height pixels.
    static void SaveRGBAToAlbum(int width, int height, bool opaque, bool swapRB, bool displayP3,
                                const unsigned char* rgba);
    static void SaveRGBAToAlbum(int width, int height, bool opaque, bool swapRB, bool displayP3,
                                const _Float16* rgba);

    /// Saves a mask into the photo album: opaque black where R is 0 and opaque white where it is anything
    /// else.
    /// \param rgba  width x height pixels, of which only R is read.
    static void SaveRAsRRR255ToAlbum(int width, int height, bool displayP3, const unsigned char* rgba);

    /// As SaveRGBAToAlbum, to a file. \param path  UTF-8
    static void SaveRGBAToFile(const std::string& path, int width, int height, bool opaque, bool swapRB,
                               bool displayP3, const unsigned char* rgba);
    static void SaveRGBAToFile(const std::string& path, int width, int height, bool opaque, bool swapRB,
                               bool displayP3, const _Float16* rgba);

    /// Saves a plane as a grey picture. The flag makes no difference. \param plane  width x height values
    static void SaveRToFile(const std::string& path, int width, int height, bool, const unsigned char* plane);
    /// Saves the first width x height of 4 x width x height values as a grey picture: the top quarter of an
    /// RGBA buffer value by value, not a channel of its pixels. Callers rely on it. The flag makes no
    /// difference.
    static void SaveRToFile(const std::string& path, int width, int height, bool, const _Float16* values);

    /// Saves a plane as an opaque grey picture of colours (r, r, r, 255), the values as they are.
    /// \param plane  width x height values.
    static void SaveRAsRRR255ToFile(const std::string& path, int width, int height, bool displayP3,
                                    const unsigned char* plane);

    /// Saves the R of RGBA pixels as a grey picture. The flag makes no difference.
    static void SaveRGBAAsRToFile(const std::string& path, int width, int height, bool,
                                  const unsigned char* rgba);

    /// Counts the pixels in which two named pictures (see Platform::ImageAssets) differ in any byte.
    ///
    /// The size is a's. Pixels are compared byte by byte with as many bytes as a's have, at the place that
    /// b's own layout gives them, without conversion; bytes that b does not have differ.
    /// \return  the count; where one of the pictures is missing, all pixels of the other, and 0 where both are.
    [[nodiscard]] static unsigned int Compare(const std::string& a, const std::string& b);
};

}   // namespace QZ::Foundation
