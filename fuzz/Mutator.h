// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <random>
#include <vector>

namespace QZ::Fuzz {

using Bytes = std::vector<unsigned char>;

/// Damages files in the ways that files are damaged, and in some that only an attacker thinks of. The same
/// seed gives the same files on every machine.
class Mutator {
public:
    explicit Mutator(std::uint32_t seed) : m_random(seed) {}

    /// A damaged copy of one of the files, never larger than 1 MiB.
    [[nodiscard]] Bytes Next(const std::vector<Bytes>& files);

private:
    std::size_t Below(std::size_t bound);
    void MutateOnce(Bytes& file, const std::vector<Bytes>& files);
    void ReplaceNumber(Bytes& file);
    void ReplaceRange(Bytes& file, const Bytes& from);

    std::mt19937 m_random;
};

/// Makes the checksums of a PNG right again, so that a damage reaches the code behind them. Leaves other
/// files alone.
void RepairPNGChecksums(Bytes& file);

}   // namespace QZ::Fuzz
