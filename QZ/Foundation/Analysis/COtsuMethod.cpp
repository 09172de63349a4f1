// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Analysis/COtsuMethod.h"

#include <cstddef>

namespace QZ::Foundation {

template <class T, class U>
COtsuMethod<T, U>::COtsuMethod() = default;

template <class T, class U>
COtsuMethod<T, U>::~COtsuMethod() = default;

// Every sum runs upwards: in single precision another order may move the threshold.
template <class T, class U>
int COtsuMethod<T, U>::Solution(int total, const std::vector<U>& histogram) noexcept
{
    const int n = static_cast<int>(histogram.size());
    const auto weightOf = [&](int bin) { return static_cast<T>(histogram[static_cast<std::size_t>(bin)]); };
    T moment = 0;
    for (int i = 1; i < n; ++i)
        moment += static_cast<T>(i) * weightOf(i);

    int best = 0;
    T bestVariance = 0;
    T wB = 0;   // the background, bins 0 to i
    T momentB = 0;
    for (int i = 0; i < n; ++i) {
        wB += weightOf(i);
        if (wB == T(0))
            continue;
        const T wF = static_cast<T>(total) - wB;
        if (wF == T(0))
            break;
        momentB += static_cast<T>(i) * weightOf(i);
        const T muB = momentB / wB;
        const T muF = (moment - momentB) / wF;
        const T variance = (wF * wB) * (muB - muF) * (muB - muF);
        if (variance > bestVariance) {
            best = i;
            bestVariance = variance;
        }
    }
    return best;
}

template class COtsuMethod<float, float>;
template class COtsuMethod<float, int>;
template class COtsuMethod<double, float>;
template class COtsuMethod<double, int>;

}   // namespace QZ::Foundation
