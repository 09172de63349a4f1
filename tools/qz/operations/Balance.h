// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "QZ/Foundation/Color/CColor.h"
#include "tools/qz/Image.h"

namespace QZ::Tool {

/// What `qz balance` is asked for.
struct BalanceOptions {
    enum class Method { GreyWorld, MaxGray, LSRS };

    Method method = Method::GreyWorld;
    bool largeTiles = false;   ///< Of LSRS.
    /// Encoded sRGB, 0 to 255, of something that should be grey: the light is not estimated then.
    std::optional<Math::CVector3<float>> light;
    Foundation::CColor::EIlluminant illuminant = Foundation::CColor::eD65;
    bool displayP3 = false;   ///< The result has the primaries of Display P3.
};

/// The light of a picture.
struct Light {
    Math::CVector3<double> white;   ///< XYZ, Y = 1.
    double x = 0.0;                 ///< Chromaticity.
    double y = 0.0;
    std::optional<double> kelvin;   ///< Correlated colour temperature; none for a light that has none.
};

/// A light from its XYZ.
[[nodiscard]] Light LightOf(const Math::CVector3<double>& xyz);

/// The correlated colour temperature by C. S. McCamy, "Correlated color temperature as an explicit function
/// of chromaticity coordinates", Color Research and Application 17, 1992, pp. 142-144.
/// \return  none outside 2000 to 12500 K, and none where the light lies further than 0.05 from the Planckian
///          locus in (u, v) of 1960, where CIE 15:2004, 9.5 gives the notion up.
[[nodiscard]] std::optional<double> CorrelatedColorTemperature(double x, double y);

/// Takes the light out of a picture; alpha stays. Throws Failure when the picture has no light to go by:
/// Status::Malformed, or Status::Usage when it was given.
Light BalanceWhite(const BalanceOptions& options, Image& image);

}   // namespace QZ::Tool
