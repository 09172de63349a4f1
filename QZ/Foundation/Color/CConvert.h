// SPDX-License-Identifier: MIT
#pragma once

#include "QZ/Export.h"

namespace QZ::Foundation {

/// Conversions between number formats.
class QZ_API CConvert {
public:
    /// Single precision to IEEE 754 binary16, rounded to nearest, ties to even.
    ///
    /// From 65520 on a value becomes infinity; below 2^-14 it becomes subnormal, at most 2^-25 a zero of its
    /// sign. NaN stays NaN, quiet, with its sign and the upper bits of its payload. The result does not
    /// depend on the rounding mode or on the machine.
    ///
    /// \param source       count floats.
    /// \param destination  count halves. It may be the source's own memory, from its start.
    /// \return  false, with nothing written, if a pointer is null and count is not 0.
    static bool FloatToHalfFloat(const float* source, _Float16* destination, unsigned long count);

    /// In place: the halves lie one after the other from the start of the buffer; what follows them is left
    /// as it is.
    static bool FloatToHalfFloat(float* buffer, unsigned long count);
};

}   // namespace QZ::Foundation
