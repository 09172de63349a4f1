// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/Formulas/Lab.h"
#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

void CColor::XYZtoLab(EIlluminant illuminant, const Math::CVector3<float>& xyz, Math::CVector3<float>& lab)
{
    lab = formula::XYZToLab(illuminant, formula::Vec3(xyz));
}

void CColor::LabToXYZ(EIlluminant illuminant, const Math::CVector3<float>& lab, Math::CVector3<float>& xyz)
{
    xyz = formula::LabToXYZ(illuminant, formula::Vec3(lab));
}

void CColor::LinearRGBToLab(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                            Math::CVector3<float>& lab)
{
    lab = formula::LinearRGBToLab(illuminant, formula::Vec3(rgb));
}

void CColor::LabToLinearRGB(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& lab,
                            Math::CVector3<float>& rgb)
{
    rgb = formula::LabToLinearRGB(extendedRange, illuminant, formula::Vec3(lab));
}

void CColor::SRGBToLab(bool extendedRange, bool useGamma22, EIlluminant illuminant,
                       const Math::CVector3<float>& srgb, Math::CVector3<float>& lab)
{
    lab = formula::SRGBToLab(useGamma22, extendedRange, illuminant, formula::Vec3(srgb));
}

void CColor::LabToSRGB(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                       const Math::CVector3<float>& lab, Math::CVector3<float>& srgb)
{
    srgb = formula::LabToSRGB(useGamma22, extendedRange, illuminant, formula::Vec3(lab));
}

void CColor::ExtendedRangeSRGBToLab(bool useGamma22, EIlluminant illuminant,
                                    const Math::CVector3<float>& srgb, Math::CVector3<float>& lab)
{
    lab = formula::ExtendedRangeSRGBToLab(useGamma22, illuminant, formula::Vec3(srgb));
}

void CColor::LabToExtendedRangeSRGB(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& lab,
                                    Math::CVector3<float>& srgb)
{
    srgb = formula::LabToExtendedRangeSRGB(useGamma22, illuminant, formula::Vec3(lab));
}

void CColor::LabToLCh(const Math::CVector3<float>& lab, Math::CVector3<float>& lch)
{
    lch = formula::ToPolar(formula::Vec3(lab));
}

float CColor::LChSaturation(const Math::CVector3<float>& lch)
{
    return formula::Saturation(lch.x, lch.y);
}

float CColor::DeltaESquaredLinearRGBLinearRGB(EIlluminant illuminant, const Math::CVector3<float>& rgb1,
                                              const Math::CVector3<float>& rgb2)
{
    return DeltaESquaredLinearRGBLab(illuminant, rgb1,
                                     formula::LinearRGBToLab(illuminant, formula::Vec3(rgb2)));
}

float CColor::DeltaESquaredLinearRGBLab(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                                        const Math::CVector3<float>& lab)
{
    return (formula::LinearRGBToLab(illuminant, formula::Vec3(rgb)) - lab).MagnitudeSquared();
}

}   // namespace QZ::Foundation
