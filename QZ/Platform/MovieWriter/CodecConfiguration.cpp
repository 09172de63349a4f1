// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/CodecConfiguration.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "QZ/Platform/MovieWriter/Box.h"

namespace QZ::Platform::Movie {

namespace {
using Unit = std::span<const unsigned char>;

/// Position of the next start code 00 00 01 at or behind `from`, or the stream's size.
std::size_t NextStartCode(Unit stream, std::size_t from)
{
    constexpr std::array<unsigned char, 3> code = {0, 0, 1};
    const auto found =
        std::search(stream.begin() + static_cast<std::ptrdiff_t>(std::min(from, stream.size())), stream.end(),
                    code.begin(), code.end());
    return static_cast<std::size_t>(found - stream.begin());
}

std::vector<Unit> Units(Unit stream)
{
    std::vector<Unit> units;
    for (std::size_t code = NextStartCode(stream, 0); code < stream.size();) {
        const std::size_t begin = code + 3;
        code = NextStartCode(stream, begin);
        std::size_t end = code;
        // Zeros in front of a start code belong to it; a unit itself never ends in one.
        while (end > begin && stream[end - 1] == 0)
            --end;
        if (end > begin)
            units.push_back(stream.subspan(begin, end - begin));
    }
    return units;
}

/// The unit without the bytes that keep start codes out of it (ITU-T H.265, 7.3.1.1).
std::vector<unsigned char> Payload(Unit unit)
{
    std::vector<unsigned char> payload;
    int zeros = 0;
    for (const unsigned char byte : unit) {
        if (zeros >= 2 && byte == 3) {
            zeros = 0;
            continue;
        }
        zeros = byte == 0 ? zeros + 1 : 0;
        payload.push_back(byte);
    }
    return payload;
}

std::vector<Unit> OfType(const std::vector<Unit>& units, int type, int (*typeOf)(Unit))
{
    std::vector<Unit> matching;
    std::copy_if(units.begin(), units.end(), std::back_inserter(matching),
                 [&](Unit unit) { return typeOf(unit) == type; });
    return matching;
}

int AVCType(Unit unit)
{
    return unit[0] & 0x1F;
}
int HEVCType(Unit unit)
{
    return (unit[0] >> 1) & 0x3F;
}

void SizedUnit(ByteWriter& out, Unit unit)
{
    out.U16(static_cast<std::uint32_t>(unit.size()));
    out.Append(unit);
}

// ITU-T H.265, 7.4.2.2: unit types of the three parameter sets
constexpr int kVideoParameters = 32, kSequenceParameters = 33, kPictureParameters = 34;

void HEVCUnitArray(ByteWriter& out, int type, const std::vector<Unit>& units)
{
    out.U8(0x80 | static_cast<std::uint32_t>(type));   // complete: none in the stream itself
    out.U16(static_cast<std::uint32_t>(units.size()));
    for (const Unit unit : units)
        SizedUnit(out, unit);
}
}   // namespace

std::vector<unsigned char> AVCConfiguration(Unit parameterSets)
{
    const std::vector<Unit> units = Units(parameterSets);
    const std::vector<Unit> sequences = OfType(units, 7, AVCType);
    const std::vector<Unit> pictures = OfType(units, 8, AVCType);
    if (sequences.empty() || pictures.empty() || sequences[0].size() < 4)
        return {};
    ByteWriter out;
    out.U8(1);                                // version
    out.Append(sequences[0].subspan(1, 3));   // profile, its constraints, level
    out.U8(0xFC | 3);                         // sizes of four bytes
    out.U8(0xE0 | static_cast<std::uint32_t>(sequences.size()));
    for (const Unit unit : sequences)
        SizedUnit(out, unit);
    out.U8(static_cast<std::uint32_t>(pictures.size()));
    for (const Unit unit : pictures)
        SizedUnit(out, unit);
    const unsigned char profile = sequences[0][1];
    if (profile != 66 && profile != 77 && profile != 88) {
        out.U8(0xFC | 1);   // 4:2:0
        out.U8(0xF8);       // 8 bits a sample
        out.U8(0xF8);
        out.U8(0);   // no further sequence parameters
    }
    return out.Bytes();
}

std::vector<unsigned char> HEVCConfiguration(Unit parameterSets)
{
    const std::vector<Unit> units = Units(parameterSets);
    const std::array<int, 3> types = {kVideoParameters, kSequenceParameters, kPictureParameters};
    std::array<std::vector<Unit>, 3> sets;
    for (std::size_t i = 0; i < types.size(); ++i) {
        sets[i] = OfType(units, types[i], HEVCType);
        if (sets[i].empty())
            return {};
    }
    // ITU-T H.265, 7.3.2.2: behind the unit's two-byte head, a byte and then profile, tier and level in
    // twelve
    const std::vector<unsigned char> sequence = Payload(sets[1][0]);
    if (sequence.size() < 15)
        return {};
    const std::uint32_t layers = ((sequence[2] >> 1) & 7u) + 1;
    const std::uint32_t nested = sequence[2] & 1u;
    ByteWriter out;
    out.U8(1);   // version
    out.Append(Unit(sequence).subspan(3, 12));
    out.U16(0xF000);    // least spatial segmentation unknown
    out.U8(0xFC);       // parallelism unknown
    out.U8(0xFC | 1);   // 4:2:0
    out.U8(0xF8);       // 8 bits a sample
    out.U8(0xF8);
    out.U16(0);                                  // average frame rate unknown
    out.U8((layers << 3) | (nested << 2) | 3);   // sizes of four bytes
    out.U8(static_cast<std::uint32_t>(types.size()));
    for (std::size_t i = 0; i < types.size(); ++i)
        HEVCUnitArray(out, types[i], sets[i]);
    return out.Bytes();
}

std::vector<unsigned char> SizedUnits(Unit stream)
{
    ByteWriter out;
    for (const Unit unit : Units(stream)) {
        out.U32(static_cast<std::uint32_t>(unit.size()));
        out.Append(unit);
    }
    return out.Bytes();
}

}   // namespace QZ::Platform::Movie
