// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "QZ/Export.h"
#include "QZ/Platform/Time.h"

namespace QZ::Platform {

/// The code of four characters, such as "BGRA", as a number: the first one in the highest byte.
[[nodiscard]] constexpr std::uint32_t FourCharacterCode(const char (&text)[5]) noexcept
{
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

/// 32 bits a pixel, bytes in the order B, G, R, A.
inline constexpr std::uint32_t kPixelFormatBGRA = FourCharacterCode("BGRA");

/// What a pool makes its buffers by.
struct PixelBufferAttributes {
    int width = 0;
    int height = 0;
    int bytesPerRowAlignment = 4;   ///< the bytes of a row are a multiple of it
    std::uint32_t pixelFormat = kPixelFormatBGRA;

    bool operator==(const PixelBufferAttributes&) const = default;
};

/// An ICC profile's bytes, shared by all the frames that carry it.
using ICCProfile = std::shared_ptr<const std::vector<unsigned char>>;

/// A picture in memory, BGRA. Whoever holds a reference may use it; one at a time may write.
///
/// The members are virtual so that a host can wrap memory of its own.
class QZ_API PixelBuffer {
public:
    virtual ~PixelBuffer();
    PixelBuffer(const PixelBuffer&) = delete;
    PixelBuffer& operator=(const PixelBuffer&) = delete;

    [[nodiscard]] virtual int Width() const = 0;
    [[nodiscard]] virtual int Height() const = 0;
    [[nodiscard]] virtual std::uint64_t BytesPerRow() const = 0;

    /// Between Lock and Unlock the base address is valid. Locks nest.
    virtual void Lock() = 0;
    virtual void Unlock() = 0;
    /// The first byte of the top row; null when the memory cannot be reached.
    [[nodiscard]] virtual unsigned char* BaseAddress() = 0;

    /// The profile that the pixels' colours are in; null for none. A buffer that comes back from a pool has
    /// none.
    virtual void SetICCProfile(ICCProfile profile) = 0;
    [[nodiscard]] virtual ICCProfile Profile() const = 0;

    /// A buffer of its own memory, zeroed; null when a size is not positive, the pixel format is not BGRA, or
    /// memory is short.
    [[nodiscard]] static std::shared_ptr<PixelBuffer> Create(const PixelBufferAttributes& attributes);

protected:
    PixelBuffer() = default;
};

/// Makes buffers of one kind, and makes them again from those that nobody uses any more.
class QZ_API PixelBufferPool {
public:
    virtual ~PixelBufferPool();
    PixelBufferPool(const PixelBufferPool&) = delete;
    PixelBufferPool& operator=(const PixelBufferPool&) = delete;

    /// A buffer whose pixels hold anything; null when there is none to be had. From any thread.
    [[nodiscard]] virtual std::shared_ptr<PixelBuffer> MakePixelBuffer() = 0;

    /// A pool that keeps the memory of released buffers for the next ones. Buffers may outlive it.
    /// \param mostBuffers  buffers in use at a time beyond which it gives null; 0 for no limit.
    [[nodiscard]] static std::shared_ptr<PixelBufferPool> Create(const PixelBufferAttributes& attributes,
                                                                 std::size_t mostBuffers = 0);

protected:
    PixelBufferPool() = default;
};

/// What a track or a sample is made of.
enum class MediaType { Video, Audio, Metadata };

/// One kind of value in timed metadata.
struct MetadataKey {
    std::uint32_t localID = 0;           ///< stands for the key in the samples, from 1
    std::string keyNamespace = "mdta";   ///< four characters
    std::string key;                     ///< such as "org.example.brightness"
    std::uint32_t dataType = 1;          ///< QuickTime File Format, "Well-Known Types": 1 is UTF-8 text

    bool operator==(const MetadataKey&) const = default;
};

/// How the bytes of sample buffers are to be read. The samples of a track share one.
struct FormatDescription {
    MediaType mediaType = MediaType::Audio;
    std::uint32_t subType = 0;   ///< four-character code: "lpcm", "aac ", "mebx", ...

    /// \name Audio
    double sampleRate = 0;
    int channels = 0;
    int bitsPerChannel = 0;     ///< lpcm: 8, 16, 24, 32 or, floating point, 32 or 64
    int framesPerPacket = 1;    ///< 1 for lpcm, 1024 for AAC
    bool isFloat = false;       ///< lpcm
    bool isBigEndian = false;   ///< lpcm
    bool isSigned = true;       ///< lpcm integers
    /// Decoder configuration; for AAC its AudioSpecificConfig (ISO/IEC 14496-3, 1.6.2.1).
    std::vector<unsigned char> configuration;

    /// \name Timed metadata ("mebx")
    std::vector<MetadataKey> metadataKeys;

    bool operator==(const FormatDescription&) const = default;

    /// Bytes of one frame of uncompressed sound (a value for every channel, interleaved); 0 for other media.
    [[nodiscard]] QZ_API std::size_t BytesPerFrame() const noexcept;

    /// Uncompressed sound: interleaved signed 16-bit little-endian values.
    [[nodiscard]] QZ_API static std::shared_ptr<const FormatDescription> LinearPCM16(double sampleRate,
                                                                                     int channels);
};

/// A key with its value, both UTF-8: what a movie is tagged with, or says at a moment of it.
struct MetadataItem {
    std::string key;
    std::string value;

    bool operator==(const MetadataItem&) const = default;
};

/// Compressed or uncompressed sound, or timed metadata, with its time. Not changed once handed over.
struct SampleBuffer {
    std::shared_ptr<const FormatDescription> format;
    Time presentationTime = TimeZero;   ///< of its first sample, behind any leading frames
    Time duration = TimeZero;           ///< of the whole; uncompressed sound may leave it 0: its bytes tell
    std::vector<unsigned char> bytes;
    /// Bytes of each packet of compressed sound, which follow each other in `bytes` and last equally long;
    /// empty when the bytes are one sample, or uncompressed.
    std::vector<std::uint32_t> sampleSizes;
    /// Compressed sound: frames that a decoder makes of the first bytes and nobody hears (its priming). Only
    /// the first buffer of a track has them.
    std::int64_t leadingFrames = 0;

    /// Timed metadata as text: a sample that says these items from `time` on.
    ///
    /// The format lists the keys in their order, with identifiers from 1. The bytes hold for each item its
    /// size in 4 bytes, its identifier in 4, and the value (big-endian; QuickTime File Format, "Timed
    /// Metadata Media"). The samples of a track must list the same keys in the same order.
    [[nodiscard]] QZ_API static std::shared_ptr<SampleBuffer> MakeMetadata(
        const std::vector<MetadataItem>& items, Time time, Time duration);
};

}   // namespace QZ::Platform
