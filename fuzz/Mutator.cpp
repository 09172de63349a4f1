// SPDX-License-Identifier: MIT
#include "fuzz/Mutator.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace QZ::Fuzz {

namespace {

constexpr std::size_t kLargest = 1 << 20;

// Numbers at which lengths, counts and offsets go wrong.
constexpr std::array<std::uint32_t, 16> kNumbers = {
    0,     1,     2,     127,        128,        255,        256,        32767,
    32768, 65535, 65536, 0x00FFFFFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};

std::uint32_t BigEndian(const unsigned char* p)
{
    return std::uint32_t{p[0]} << 24 | std::uint32_t{p[1]} << 16 | std::uint32_t{p[2]} << 8 | p[3];
}

// ISO/IEC 15948:2004, annex D.
std::uint32_t Checksum(const unsigned char* bytes, std::size_t count)
{
    std::uint32_t crc = 0xFFFFFFFF;
    for (std::size_t i = 0; i < count; ++i) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) != 0 ? 0xEDB88320 ^ (crc >> 1) : crc >> 1;
    }
    return ~crc;
}

std::ptrdiff_t Offset(std::size_t place)
{
    return static_cast<std::ptrdiff_t>(place);
}

}   // namespace

// Not a distribution of the library: those differ from one to the next.
std::size_t Mutator::Below(std::size_t bound)
{
    return bound == 0 ? 0 : m_random() % bound;
}

void Mutator::ReplaceNumber(Bytes& file)
{
    const std::uint32_t number = kNumbers[Below(kNumbers.size())];
    const std::size_t bytes = std::size_t{1} << Below(3);
    const bool bigEndian = Below(2) == 0;
    // Half of the time near the start, where the headers lie.
    const std::size_t place =
        Below(2) == 0 ? Below(std::min<std::size_t>(file.size(), 64)) : Below(file.size());
    for (std::size_t i = 0; i < bytes && place + i < file.size(); ++i)
        file[place + i] = static_cast<unsigned char>(number >> 8 * (bigEndian ? bytes - 1 - i : i));
}

void Mutator::ReplaceRange(Bytes& file, const Bytes& from)
{
    const std::size_t start = Below(from.size());
    const std::size_t length = std::min(from.size() - start, Below(64) + 1);
    const std::size_t place = Below(file.size());
    std::copy_n(from.begin() + Offset(start), std::min(length, file.size() - place),
                file.begin() + Offset(place));
}

void Mutator::MutateOnce(Bytes& file, const std::vector<Bytes>& files)
{
    const std::size_t place = Below(file.size());
    const std::size_t length = std::min(file.size() - place, Below(32) + 1);
    const auto at = file.begin() + Offset(place);
    switch (Below(9)) {
        case 0:
            *at = static_cast<unsigned char>(*at ^ 1u << Below(8));
            break;
        case 1:
            *at = static_cast<unsigned char>(Below(256));
            break;
        case 2:
        case 3:
            ReplaceNumber(file);
            break;
        case 4:
            file.resize(place);
            break;
        case 5:
            file.erase(at, at + Offset(length));
            break;
        case 6: {
            const Bytes copy(at, at + Offset(length));
            file.insert(file.begin() + Offset(Below(file.size())), copy.begin(), copy.end());
            break;
        }
        case 7:
            std::fill_n(at, length, static_cast<unsigned char>(Below(2) == 0 ? 0 : 255));
            break;
        default:
            ReplaceRange(file, files[Below(files.size())]);
    }
}

Bytes Mutator::Next(const std::vector<Bytes>& files)
{
    Bytes file = files[Below(files.size())];
    const std::size_t times = std::size_t{1} << Below(5);
    for (std::size_t i = 0; i < times && !file.empty(); ++i)
        MutateOnce(file, files);
    if (Below(2) == 0)
        RepairPNGChecksums(file);
    file.resize(std::min(file.size(), kLargest));
    return file;
}

void RepairPNGChecksums(Bytes& file)
{
    constexpr std::string_view kSignature = "\x89PNG\r\n\x1a\n";
    constexpr std::size_t kAround = 12;   // length, name and checksum of a chunk
    if (file.size() < kSignature.size() || file[0] != 0x89 || file[1] != 'P')
        return;
    for (std::size_t place = kSignature.size(); place + kAround <= file.size();) {
        const std::size_t length = BigEndian(file.data() + place);
        if (length > file.size() - place - kAround)
            return;
        const std::uint32_t checksum = Checksum(file.data() + place + 4, length + 4);
        for (std::size_t i = 0; i < 4; ++i)
            file[place + 8 + length + i] = static_cast<unsigned char>(checksum >> (24 - 8 * i));
        place += kAround + length;
    }
}

}   // namespace QZ::Fuzz
