// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/Formulas/DisplayP3.h"
#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

const Math::CMatrix3<float>& CColor::LinearDisplayP3ToXYZMatrix(EIlluminant illuminant)
{
    return Constants::LinearDisplayP3ToXYZ(illuminant);
}

const Math::CMatrix3<float>& CColor::XYZToLinearDisplayP3Matrix(EIlluminant illuminant)
{
    return Constants::XYZToLinearDisplayP3(illuminant);
}

Math::CMatrix3<float> CColor::LinearDisplayP3ToXYZToLMSMatrix(EIlluminant illuminant)
{
    return XYZToLMSMatrix(illuminant) * LinearDisplayP3ToXYZMatrix(illuminant);
}

Math::CMatrix3<float> CColor::LMSToXYZToLinearDisplayP3Matrix(EIlluminant illuminant)
{
    return XYZToLinearDisplayP3Matrix(illuminant) * LMSToXYZMatrix(illuminant);
}

const Math::CVector3<float>& CColor::LinearDisplayP3LuminanceVec3(EIlluminant illuminant)
{
    return Constants::DisplayP3Luminance(illuminant);
}

void CColor::LinearDisplayP3ToXYZ(EIlluminant illuminant, const Math::CVector3<float>& p3lin,
                                  Math::CVector3<float>& xyz)
{
    xyz = formula::LinearDisplayP3ToXYZ(illuminant, formula::Vec3(p3lin));
}

void CColor::XYZToLinearDisplayP3(EIlluminant illuminant, const Math::CVector3<float>& xyz,
                                  Math::CVector3<float>& p3lin)
{
    p3lin = formula::XYZToLinearDisplayP3(illuminant, formula::Vec3(xyz));
}

void CColor::DisplayP3ToXYZ(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& p3,
                            Math::CVector3<float>& xyz)
{
    xyz = formula::DisplayP3ToXYZ(useGamma22, illuminant, formula::Vec3(p3));
}

void CColor::XYZToDisplayP3(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& xyz,
                            Math::CVector3<float>& p3)
{
    p3 = formula::XYZToDisplayP3(useGamma22, illuminant, formula::Vec3(xyz));
}

void CColor::LinearDisplayP3ToDisplayP3(bool useGamma22, const Math::CVector3<float>& p3lin,
                                        Math::CVector3<float>& p3)
{
    p3 = formula::LinearDisplayP3ToDisplayP3(useGamma22, formula::Vec3(p3lin));
}

void CColor::DisplayP3ToSRGB(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                             const Math::CVector3<float>& p3, Math::CVector3<float>& srgb)
{
    srgb = formula::DisplayP3ToSRGB(useGamma22, extendedRange, illuminant, formula::Vec3(p3));
}

void CColor::SRGBToDisplayP3(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                             const Math::CVector3<float>& srgb, Math::CVector3<float>& p3)
{
    p3 = formula::SRGBToDisplayP3(useGamma22, extendedRange, illuminant, formula::Vec3(srgb));
}

void CColor::DisplayP3ToLab(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& p3,
                            Math::CVector3<float>& lab)
{
    lab = formula::DisplayP3ToLab(useGamma22, illuminant, formula::Vec3(p3));
}

void CColor::LabToDisplayP3(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& lab,
                            Math::CVector3<float>& p3)
{
    p3 = formula::LabToDisplayP3(useGamma22, illuminant, formula::Vec3(lab));
}

void CColor::DisplayP3ToIPT(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& p3,
                            Math::CVector3<float>& ipt)
{
    ipt = formula::DisplayP3ToIPT(useGamma22, illuminant, formula::Vec3(p3));
}

void CColor::IPTToDisplayP3(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& ipt,
                            Math::CVector3<float>& p3)
{
    p3 = formula::IPTToDisplayP3(useGamma22, illuminant, formula::Vec3(ipt));
}

void CColor::LinearDisplayP3ToIPT(EIlluminant illuminant, const Math::CVector3<float>& p3lin,
                                  Math::CVector3<float>& ipt)
{
    ipt = formula::LinearDisplayP3ToIPT(illuminant, formula::Vec3(p3lin));
}

void CColor::IPTToLinearDisplayP3(EIlluminant illuminant, const Math::CVector3<float>& ipt,
                                  Math::CVector3<float>& p3lin)
{
    p3lin = formula::IPTToLinearDisplayP3(illuminant, formula::Vec3(ipt));
}

void CColor::DisplayP3ToLinearY(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& p3,
                                float& Y)
{
    Y = formula::DisplayP3ToLinearY(useGamma22, illuminant, formula::Vec3(p3));
}

void CColor::LinearDisplayP3ToLinearY(EIlluminant illuminant, const Math::CVector3<float>& p3lin, float& Y)
{
    Y = formula::LinearDisplayP3ToLinearY(illuminant, formula::Vec3(p3lin));
}

void CColor::DisplayP3ToDisplayP3Y(bool useGamma22, bool /*ignored*/, EIlluminant illuminant,
                                   const Math::CVector3<float>& p3, float& y)
{
    y = formula::DisplayP3ToDisplayP3Y(useGamma22, illuminant, formula::Vec3(p3));
}

}   // namespace QZ::Foundation
