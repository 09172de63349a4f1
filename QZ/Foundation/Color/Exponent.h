// SPDX-License-Identifier: MIT
#pragma once

namespace QZ::Foundation {

/// The fixed exponents of the library's powers. Each is a float: 2.4 means the float nearest 2.4.
enum class Exponent {
    k2_4,          ///< sRGB decoding
    k0_41666666,   ///< sRGB encoding
    k2_2,          ///< gamma 2.2 decoding
    k0_45454544,   ///< gamma 2.2 encoding
    k0_33333334,   ///< CIE lightness
    k0_43,         ///< IPT cone compression
    k2_325581,     ///< the inverse of the IPT cone compression
    k2_2222223,    ///< Rec. 709 decoding
    k0_45,         ///< Rec. 709 encoding
    k1_961,        ///< pure-power Rec. 709 decoding
    k0_5099439,    ///< pure-power Rec. 709 encoding
    k3,            ///< the inverse of CIE lightness
};

/// The exponent itself.
constexpr float Value(Exponent exponent)
{
    switch (exponent) {
        case Exponent::k2_4:
            return 2.4f;
        case Exponent::k0_41666666:
            return 0.41666666f;
        case Exponent::k2_2:
            return 2.2f;
        case Exponent::k0_45454544:
            return 0.45454544f;
        case Exponent::k0_33333334:
            return 0.33333334f;
        case Exponent::k0_43:
            return 0.43f;
        case Exponent::k2_325581:
            return 2.325581f;
        case Exponent::k2_2222223:
            return 2.2222223f;
        case Exponent::k0_45:
            return 0.45f;
        case Exponent::k1_961:
            return 1.961f;
        case Exponent::k0_5099439:
            return 0.5099439f;
        case Exponent::k3:
            return 3.0f;
    }
    return 1.0f;
}

/// Whether the curves of a power are lines near 0. The others meet it in every black pixel.
constexpr bool HasLineNearZero(Exponent exponent)
{
    switch (exponent) {
        case Exponent::k2_4:
        case Exponent::k0_41666666:
        case Exponent::k0_33333334:
        case Exponent::k2_2222223:
        case Exponent::k0_45:
        case Exponent::k3:
            return true;
        default:
            return false;
    }
}

}   // namespace QZ::Foundation
