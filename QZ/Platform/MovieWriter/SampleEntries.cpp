// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/SampleEntries.h"

#include <bit>
#include <cmath>

namespace QZ::Platform::Movie {

namespace {
// ISO/IEC 14496-12, 8.5.2: what every sample entry begins with
void EntryHeader(ByteWriter& out)
{
    out.Zeros(6);
    out.U16(1);   // the one data reference
}

// QuickTime File Format, "Color Parameter Atoms": BT.709 primaries and matrix, IEC 61966-2-1 (sRGB) transfer
void ColorParameters(ByteWriter& out)
{
    Box box(out, "colr");
    out.Text("nclc");
    out.U16(1);
    out.U16(13);
    out.U16(1);
}

// ISO/IEC 14496-12, 12.1.5: Colour Information Box with an unrestricted ICC profile
void ColorProfile(ByteWriter& out, std::span<const unsigned char> profile)
{
    if (profile.empty())
        return;
    Box box(out, "colr");
    out.Text("prof");
    out.Append(profile);
}

// ISO/IEC 14496-12, 12.1.4: Clean Aperture Box. The displayed picture is the top left of the coded one; its
// centre therefore lies half the padding to the left of and above the coded picture's.
void CleanAperture(ByteWriter& out, const VideoEntry& entry)
{
    if (entry.width == entry.codedWidth && entry.height == entry.codedHeight)
        return;
    Box box(out, "clap");
    for (const int whole : {entry.width, entry.height}) {
        out.I32(whole);
        out.U32(1);
    }
    for (const int twice : {entry.width - entry.codedWidth, entry.height - entry.codedHeight}) {
        out.I32(twice);
        out.U32(2);
    }
}

// ISO/IEC 14496-1, 7.2.6.1: the head of a descriptor, its size in the four-byte form
void Descriptor(ByteWriter& out, std::uint32_t tag, std::size_t size)
{
    out.U8(tag);
    for (const int shift : {21, 14, 7})
        out.U8(0x80 | ((static_cast<std::uint32_t>(size) >> shift) & 0x7F));
    out.U8(static_cast<std::uint32_t>(size) & 0x7F);
}

// ISO/IEC 14496-14, 6.7: ES Descriptor Box
void ElementaryStream(ByteWriter& out, std::span<const unsigned char> configuration, int bitRate)
{
    constexpr std::size_t kHead = 5;
    const std::size_t specific = configuration.size();
    const std::size_t decoder = 13 + kHead + specific;
    FullBox box(out, "esds", 0, 0);
    Descriptor(out, 3, 3 + kHead + decoder + kHead + 1);
    out.U16(0);
    out.U8(0);
    Descriptor(out, 4, decoder);
    out.U8(0x40);   // ISO/IEC 14496-3 audio
    out.U8(0x15);   // an audio stream
    out.U24(0);     // no fixed buffer size
    out.I32(bitRate);
    out.I32(bitRate);
    Descriptor(out, 5, specific);
    out.Append(configuration);
    Descriptor(out, 6, 1);
    out.U8(2);   // as stored in MP4 files
}

// QuickTime File Format, "siDecompressionParam Atom ('wave')"
void DecompressionParameters(ByteWriter& out, std::span<const unsigned char> configuration, int bitRate)
{
    Box wave(out, "wave");
    {
        Box format(out, "frma");
        out.Text("mp4a");
    }
    {
        Box empty(out, "mp4a");
        out.U32(0);
    }
    ElementaryStream(out, configuration, bitRate);
    out.U32(8);   // the terminator: a box of type 0
    out.U32(0);
}
// QuickTime File Format, "Metadata Key Atom": its type is the identifier that samples name the key by
void MetadataKeyBox(ByteWriter& out, const MetadataKey& key)
{
    Box box(out, FourBytes(key.localID));
    {
        Box declaration(out, "keyd");
        out.Text(key.keyNamespace);
        out.Text(key.key);
    }
    Box type(out, "dtyp");
    out.U32(0);   // well-known types
    out.U32(key.dataType);
}
}   // namespace

// QuickTime File Format, "Video Sample Description"; ISO/IEC 14496-12, 12.1.3
Bytes WriteVideoEntry(const VideoEntry& entry)
{
    ByteWriter out;
    {
        Box box(out, entry.format);
        EntryHeader(out);
        out.Zeros(8);   // version, revision, vendor
        out.U32(0);
        out.U32(0x200);   // quality: normal
        out.U16(static_cast<std::uint32_t>(entry.codedWidth));
        out.U16(static_cast<std::uint32_t>(entry.codedHeight));
        out.U32(72 << 16);   // pixels an inch
        out.U32(72 << 16);
        out.U32(0);
        out.U16(1);      // frames a sample
        out.Zeros(32);   // compressor's name
        out.U16(24);     // depth: colour without alpha
        out.U16(0xFFFF);
        if (!entry.configuration.empty()) {
            Box configuration(out, entry.configuration);
            out.Append(entry.configurationRecord);
        }
        ColorParameters(out);
        ColorProfile(out, entry.iccProfile);
        CleanAperture(out, entry);
    }
    return out.Bytes();
}

// QuickTime File Format, "Sound Sample Description (Version 1)"
Bytes WriteAACEntry(double sampleRate, int channels, std::span<const unsigned char> configuration,
                    int bitRate)
{
    ByteWriter out;
    {
        Box box(out, "mp4a");
        EntryHeader(out);
        out.U16(1);   // version
        out.Zeros(6);
        out.U16(static_cast<std::uint32_t>(channels));
        out.U16(16);
        out.U16(0xFFFE);   // variable compression: the decoder knows
        out.U16(0);
        // A rate that 16 bits cannot hold stands in the decoder's configuration alone.
        out.U32(sampleRate < 65536 ? static_cast<std::uint32_t>(sampleRate) << 16 : 0);
        out.U32(1024);   // samples a packet
        out.U32(0);
        out.U32(0);
        out.U32(2);
        DecompressionParameters(out, configuration, bitRate);
    }
    return out.Bytes();
}

// QuickTime File Format, "Sound Sample Description (Version 2)"
Bytes WritePCMEntry(const PCMEntry& entry)
{
    constexpr std::uint32_t kFloat = 1, kBigEndian = 2, kSigned = 4, kPacked = 8;
    ByteWriter out;
    {
        Box box(out, "lpcm");
        EntryHeader(out);
        out.U16(2);   // version
        out.Zeros(6);
        out.U16(3);   // fixed values that older readers expect
        out.U16(16);
        out.U16(0xFFFE);
        out.U16(0);
        out.U32(0x10000);
        out.U32(72);   // the fixed part's size
        out.U64(std::bit_cast<std::uint64_t>(entry.sampleRate));
        out.I32(entry.channels);
        out.U32(0x7F000000);
        out.I32(entry.bitsPerChannel);
        out.U32((entry.isFloat    ? kFloat
                 : entry.isSigned ? kSigned
                                  : 0) |
                (entry.isBigEndian ? kBigEndian : 0) |
                (entry.bytesPerFrame * 8 == entry.channels * entry.bitsPerChannel ? kPacked : 0));
        out.I32(entry.bytesPerFrame);
        out.U32(1);   // frames a packet
    }
    return out.Bytes();
}

// QuickTime File Format, "Timed Metadata Sample Descriptions"
Bytes WriteMetadataEntry(std::span<const MetadataKey> keys)
{
    ByteWriter out;
    {
        Box box(out, "mebx");
        EntryHeader(out);
        Box table(out, "keys");
        for (const MetadataKey& key : keys)
            MetadataKeyBox(out, key);
    }
    return out.Bytes();
}

}   // namespace QZ::Platform::Movie
