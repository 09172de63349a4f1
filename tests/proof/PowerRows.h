// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "QZ/Foundation/Color/Exponent.h"

namespace QZ::Foundation {

/// out[i] = the library's power of x[i], one float at a time.
void PowersOfSingles(Exponent exponent, const float* x, std::size_t n, float* out);

/// The same by whole vectors of one instruction set; n is a multiple of 16.
struct PowersOfLanes {
    std::int64_t target;   ///< as Highway counts them
    void (*row)(Exponent exponent, const float* x, std::size_t n, float* out);
};

/// One for each instruction set, of this machine or not.
std::vector<PowersOfLanes>& AllPowersOfLanes();

}   // namespace QZ::Foundation
