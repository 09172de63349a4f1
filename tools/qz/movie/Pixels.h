// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace QZ::Tool {

/// Copies a row of pixels between RGBA, as pictures are here, and BGRA, as the library's movies have them.
inline void SwapRedAndBlue(const unsigned char* from, int width, unsigned char* to)
{
    for (const unsigned char* end = from + 4 * static_cast<std::ptrdiff_t>(width); from != end;
         from += 4, to += 4) {
        to[0] = from[2];
        to[1] = from[1];
        to[2] = from[0];
        to[3] = from[3];
    }
}

}   // namespace QZ::Tool
