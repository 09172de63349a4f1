// SPDX-License-Identifier: MIT
#pragma once

#include "QZ/Math/Detail/DoubleDouble.h"

namespace QZ::Foundation {

using Math::Detail::DoubleDouble;
using Math::Detail::FastTwoSum;
using Math::Detail::RoundToOdd;
using Math::Detail::TwoProduct;
using Math::Detail::TwoSum;

}   // namespace QZ::Foundation
