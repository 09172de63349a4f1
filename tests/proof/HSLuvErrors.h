// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace QZ::Proof {

/// Writes the table of errors of HSLuv and HPLuv in double precision, over every stride-th colour of 8 bits.
void ReportHSLuv(std::size_t stride);

}   // namespace QZ::Proof
