// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "QZ/Export.h"
#include "QZ/Platform/Geometry.h"
#include "QZ/Platform/MediaBuffers.h"
#include "QZ/Platform/Time.h"

/// \file
/// Reading a movie: its pictures as BGRA and its sound as it is, each when it is asked for.

namespace QZ::Platform {

/// Why a movie cannot be read, or not any further.
struct MovieReadError {
    enum class Kind {
        None,
        NoModule,     ///< the movie module or the libraries that it needs are missing
        Unreadable,   ///< the file cannot be opened, or is no file
        NotAMovie,    ///< no movie, or one without pictures
        Damaged,      ///< cut short, or a picture that cannot be decoded
        Unsupported   ///< a movie that this reader does not read: too large, high dynamic range, ...
    };

    Kind kind = Kind::None;
    std::string reason;   ///< one line for a person to read
};

/// What a movie says of itself.
struct MovieDescription {
    std::string codec;   ///< of the pictures: "h264", "hevc", "prores", ...
    int width = 0;       ///< of the pictures as they are stored, before the transform
    int height = 0;
    AffineTransform transform = {1, 0, 0, 1, 0, 0};   ///< how the pictures are turned and placed when shown
    double pixelAspectRatio = 1.0;                    ///< width of a pixel over its height
    double frameRate = 0.0;                           ///< mean, in pictures a second; 0 when it is not known
    Time duration = {};                               ///< not valid when it is not known
    /// How the colours are read: "BT.709, limited range"; with ", assumed" where the movie does not tell.
    std::string colours;
    std::string soundCodec;   ///< "aac", "pcm_s16le", ...; empty for a movie without sound
    bool hasSound = false;    ///< whether NextSound gives that sound: AAC and uncompressed do
};

/// A picture of a movie.
struct MoviePicture {
    std::shared_ptr<PixelBuffer> pixels;   ///< of the movie's width and height, encoded sRGB
    Time time = TimeZero;                  ///< when it is shown, exact, in the timescale of the track
};

/// Reads one movie, its first (or default) track of pictures and of sound. Nothing is read ahead but what the
/// decoder needs, and memory does not grow with the movie.
///
/// **Colours.** YCbCr becomes RGB by the matrix and range that the movie is tagged with: BT.601, BT.709,
/// SMPTE 240M, FCC or the non-constant-luminance BT.2020; an untagged one by BT.709 from 720 rows on and by
/// BT.601 below, with limited range. Primaries other than those of BT.709 (BT.601 of 525 and 625 lines,
/// BT.2020, Display P3) are converted in linear light and cut off at the gamut; untagged ones count as
/// BT.709. The values are then taken for encoded sRGB, whichever camera curve they are tagged with, as
/// players on a computer's screen do. High dynamic range (PQ, HLG) and linear or logarithmic light are
/// refused.
///
/// **Times** are those of presentation, after the movie's edits; what an edit hides is left out. They
/// increase: a picture that does not come later than the one before is passed over.
///
/// NextPicture and NextSound may be called from two threads at a time; either from one at a time.
/// \code
///     MovieReadError error;
///     const std::unique_ptr<MovieReader> movie = MovieReader::Open("in.mov", error);
///     while (std::optional<MoviePicture> picture = movie ? movie->NextPicture(error) : std::nullopt)
///         Show(*picture);
///     if (error.kind != MovieReadError::Kind::None)
///         Complain(error.reason);
/// \endcode
class QZ_API MovieReader {
public:
    virtual ~MovieReader();
    MovieReader(const MovieReader&) = delete;
    MovieReader& operator=(const MovieReader&) = delete;

    /// Pictures with more pixels than this are refused unless the caller allows them: 8K with room to spare.
    static constexpr std::int64_t kMostPixels = std::int64_t{1} << 26;

    /// Opens a movie by its content, whatever its name. Only this file is read, whatever it refers to.
    /// \param mostPixels  how many pixels a picture may have before it is refused.
    /// \return null with an error when it cannot be read.
    [[nodiscard]] static std::unique_ptr<MovieReader> Open(const std::string& path, MovieReadError& error,
                                                           std::int64_t mostPixels = kMostPixels);

    [[nodiscard]] virtual const MovieDescription& Description() const = 0;

    /// The next picture in the order of presentation.
    /// \param error  why there is no further one; none at the movie's end.
    /// \return none at the end and when the movie cannot be read any further.
    [[nodiscard]] virtual std::optional<MoviePicture> NextPicture(MovieReadError& error) = 0;

    /// The next stretch of sound, about a quarter of a second, in its own format and with its own bytes; its
    /// times count in its sample rate.
    /// \param error  as for NextPicture.
    /// \return null at the end, when it cannot be read any further, and for a movie whose hasSound is false.
    [[nodiscard]] virtual std::shared_ptr<SampleBuffer> NextSound(MovieReadError& error) = 0;

protected:
    MovieReader() = default;
};

}   // namespace QZ::Platform
