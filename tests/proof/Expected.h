// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tests/proof/PowerReference.h"

namespace QZ::Proof {

/// What a trial has seen of a function.
struct Tally {
    std::uint64_t floats = 0;
    std::uint64_t hard = 0;   ///< worked by MPFR
    std::uint64_t wrong = 0;
    double closest;   ///< the least relative distance of a power from the middle between two floats
    float closestX = 0.0f;

    Tally();
    void Add(const Tally& other);
};

/// A stage of a function: rest(c, argument(c)^exponent), in single precision but for the power.
struct Stage {
    Foundation::Exponent exponent;
    float (*argument)(float c);
    float (*rest)(float c, float power);
};

/// A function on trial, written a second time: its stages, each with a correctly rounded power of the
/// reference.
struct Subject {
    std::string name;
    std::vector<Stage> stages;
};

/// The powers, then the curves.
const std::vector<Subject>& Subjects();

/// Works out what a subject should give.
class Expected {
public:
    explicit Expected(const Subject& subject);

    /// \param x    kChunkSize floats
    /// \param out  as many
    void Fill(const float* x, float* out, Tally& tally) const;

private:
    void FillPowers(Foundation::Exponent exponent, const float* x, float* out, Tally& tally) const;

    const Subject& m_subject;
    std::map<Foundation::Exponent, PowerReference> m_references;
};

}   // namespace QZ::Proof
