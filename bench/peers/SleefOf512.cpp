// SPDX-License-Identifier: MIT
// Alone in its file, which is built for processors that have these vectors.
#include <immintrin.h>
#include <sleef.h>

#include <cstddef>

namespace QZ::Bench {

void SleefRowOf512(const float* in, float* out, std::size_t n)
{
    for (std::size_t i = 0; i < n; i += 16)
        _mm512_storeu_ps(out + i, Sleef_powf16_u10avx512f(_mm512_loadu_ps(in + i), _mm512_set1_ps(2.2f)));
}

}   // namespace QZ::Bench
