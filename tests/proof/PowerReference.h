// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "QZ/Foundation/Color/DoubleDouble.h"
#include "QZ/Foundation/Color/Exponent.h"

namespace QZ::Proof {

/// How many floats are worked at once.
inline constexpr std::size_t kChunkSize = 2048;

/// Powers with one fixed exponent e, in pairs of doubles that err by less than 2^-95, from tables worked by
/// MPFR and shared with nothing in the library.
///
/// For x = m 2^k, with r near 1 / m to 29 bits and t = m r - 1, which is exact and below 2^-12,
/// x^e = (1 + t)^e r^-e 2^(k e); the binomial series of the first factor ends with t^7.
class PowerReference {
public:
    explicit PowerReference(Foundation::Exponent exponent);

    /// The nearest floats of the powers of kChunkSize floats; special values as std::pow gives them.
    /// \param isHard  set where the pair of doubles lies within 2^-52 of a midpoint between floats, relatively.
    void Chunk(const float* x, float* nearest, unsigned char* isHard) const;

    /// The power of a positive number from 2^-149 to 2^128, to 2^-95.
    [[nodiscard]] Foundation::DoubleDouble Power(Foundation::DoubleDouble x) const;

    /// The nearest float of any power, by MPFR; and its distance from the next midpoint, relatively.
    [[nodiscard]] float Nearest(float x, double& distance) const;

private:
    static constexpr std::size_t kIntervals = 4096;

    static constexpr int kLeastBinary = -149;

    float m_exponent;
    Foundation::DoubleDouble m_binomials[4];
    double m_highBinomials[4];
    std::vector<double> m_reciprocals;
    std::vector<Foundation::DoubleDouble> m_intervals;
    std::vector<Foundation::DoubleDouble> m_binaries;   ///< of exponents from kLeastBinary to 127
};

/// The power of a positive number with any exponent, to 2^-100.
Foundation::DoubleDouble PowerByMPFR(Foundation::DoubleDouble x, double exponent);

}   // namespace QZ::Proof
