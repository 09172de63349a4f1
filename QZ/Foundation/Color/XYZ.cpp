// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/Formulas/XYZ.h"
#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

const Math::CVector3<float>& CColor::XYZReference(EIlluminant illuminant)
{
    return Constants::XYZReference(illuminant);
}

const Math::CVector3<float>& CColor::InvXYZReference(EIlluminant illuminant)
{
    return Constants::InvXYZReference(illuminant);
}

const Math::CVector3<float>& CColor::RGBLuminanceVec3(bool luma, bool extendedRange, EIlluminant illuminant)
{
    if (luma)
        return Constants::sRGBLuminance;
    return extendedRange ? Constants::linearRGBLuminanceD50 : Constants::LinearRGBLuminance(illuminant);
}

const Math::CMatrix3<float>& CColor::LinearRGBToXYZMatrix(EIlluminant illuminant)
{
    return Constants::LinearRGBToXYZ(illuminant);
}

const Math::CMatrix3<float>& CColor::XYZToLinearRGBMatrix(EIlluminant illuminant)
{
    return Constants::XYZToLinearRGB(illuminant);
}

void CColor::LinearRGBToXYZ(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                            Math::CVector3<float>& xyz)
{
    xyz = formula::LinearRGBToXYZ(illuminant, formula::Vec3(rgb));
}

void CColor::XYZToLinearRGB(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& xyz,
                            Math::CVector3<float>& rgb)
{
    rgb = formula::XYZToLinearRGB(extendedRange, illuminant, formula::Vec3(xyz));
}

void CColor::SRGBToXYZ(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                       const Math::CVector3<float>& srgb, Math::CVector3<float>& xyz)
{
    xyz = formula::SRGBToXYZ(useGamma22, extendedRange, illuminant, formula::Vec3(srgb));
}

void CColor::XYZToSRGB(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                       const Math::CVector3<float>& xyz, Math::CVector3<float>& srgb)
{
    srgb = formula::XYZToSRGB(useGamma22, extendedRange, illuminant, formula::Vec3(xyz));
}

void CColor::YToXYZ(EIlluminant illuminant, float Y, Math::CVector3<float>& xyz)
{
    xyz = formula::YToXYZ(illuminant, Y);
}

void CColor::XYZtoXYZWithModifiedY(EIlluminant illuminant, const Math::CVector3<float>& xyz, float Y,
                                   Math::CVector3<float>& out)
{
    out = formula::XYZWithModifiedY(illuminant, formula::Vec3(xyz), Y);
}

void CColor::SRGBToLinearY(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                           const Math::CVector3<float>& srgb, float& Y)
{
    Y = formula::SRGBToLinearY(useGamma22, extendedRange, illuminant, formula::Vec3(srgb));
}

void CColor::LinearRGBToLinearY(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& rgb,
                                float& Y)
{
    Y = formula::LinearRGBToLinearY(extendedRange, illuminant, formula::Vec3(rgb));
}

void CColor::SRGBToNonlinearY(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                              const Math::CVector3<float>& srgb, float& Y)
{
    Y = formula::SRGBToNonlinearY(useGamma22, extendedRange, illuminant, formula::Vec3(srgb));
}

void CColor::LinearRGBToNonlinearY(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                                   const Math::CVector3<float>& rgb, float& Y)
{
    Y = formula::LinearRGBToNonlinearY(useGamma22, extendedRange, illuminant, formula::Vec3(rgb));
}

Math::CVector3<float> CColor::Clamp(const Math::CVector3<float>& v, float low, float high)
{
    return formula::Map(formula::Vec3(v), [&](float c) { return formula::Clamp(c, low, high); });
}

}   // namespace QZ::Foundation
