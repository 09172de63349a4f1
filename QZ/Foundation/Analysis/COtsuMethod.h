// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "QZ/Export.h"

namespace QZ::Foundation {

/// Otsu's threshold: the split of a histogram whose two classes lie farthest apart.
///
/// It maximises the between-class variance wB wF (muB - muF)^2, w being a class's weight and mu its mean bin.
/// N. Otsu, "A Threshold Selection Method from Gray-Level Histograms", IEEE Trans. SMC 9(1), 1979, pp. 62-66.
///
/// Four forms exist and no others: T and U as below. Nothing is thrown; any thread may call.
///
/// \tparam T  type of every sum, mean and variance: float or double (near-ties may fall differently).
/// \tparam U  type of a bin: int (counts) or float (weights).
/// \code
///     const std::vector<int> bins = {0, 7, 2, 0, 1, 6};
///     const int threshold = COtsuMethod<double, int>::Solution(16, bins);   // 2: bins 0-2 against 3-5
/// \endcode
template <class T, class U>
class QZ_API COtsuMethod {
public:
    COtsuMethod();
    ~COtsuMethod();

    /// \param total      weight of all bins together; taken at its word, the bins are not summed again.
    /// \param histogram  n bins, bin i weighing level i; n may be 0.
    /// \return  the last bin of the lower class, in [0, n - 1]: the lowest among equals, and 0 when n is 0
    ///          or no split has a variance above zero. A NaN variance never wins.
    [[nodiscard]] static int Solution(int total, const std::vector<U>& histogram) noexcept;
};

extern template class COtsuMethod<float, float>;
extern template class COtsuMethod<float, int>;
extern template class COtsuMethod<double, float>;
extern template class COtsuMethod<double, int>;

}   // namespace QZ::Foundation
