// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/Formulas/IPT.h"
#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

const Math::CMatrix3<float>& CColor::XYZToLMSMatrix(EIlluminant illuminant)
{
    return Constants::XYZToLMS(illuminant);
}

const Math::CMatrix3<float>& CColor::LMSToXYZMatrix(EIlluminant illuminant)
{
    return Constants::LMSToXYZ(illuminant);
}

const Math::CMatrix3<float>& CColor::LMSToIPTMatrix()
{
    return Constants::lmsToIPT;
}

const Math::CMatrix3<float>& CColor::IPTToLMSMatrix()
{
    return Constants::iptToLMS;
}

Math::CMatrix3<float> CColor::LinearRGBToXYZToLMSMatrix(EIlluminant illuminant)
{
    return Constants::LinearRGBToLMS(illuminant);
}

Math::CMatrix3<float> CColor::LMSToXYZToLinearRGBMatrix(EIlluminant illuminant)
{
    return Constants::LMSToLinearRGB(illuminant);
}

void CColor::XYZToIPT(EIlluminant illuminant, const Math::CVector3<float>& xyz, Math::CVector3<float>& ipt)
{
    ipt = formula::XYZToIPT(illuminant, formula::Vec3(xyz));
}

void CColor::IPTToXYZ(EIlluminant illuminant, const Math::CVector3<float>& ipt, Math::CVector3<float>& xyz)
{
    xyz = formula::IPTToXYZ(illuminant, formula::Vec3(ipt));
}

void CColor::LinearRGBToIPT(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                            Math::CVector3<float>& ipt)
{
    ipt = formula::LinearRGBToIPT(illuminant, formula::Vec3(rgb));
}

void CColor::IPTToLinearRGB(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& ipt,
                            Math::CVector3<float>& rgb)
{
    rgb = formula::IPTToLinearRGB(extendedRange, illuminant, formula::Vec3(ipt));
}

void CColor::SRGBToIPT(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                       const Math::CVector3<float>& srgb, Math::CVector3<float>& ipt)
{
    ipt = formula::SRGBToIPT(useGamma22, extendedRange, illuminant, formula::Vec3(srgb));
}

void CColor::IPTToSRGB(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                       const Math::CVector3<float>& ipt, Math::CVector3<float>& srgb)
{
    srgb = formula::IPTToSRGB(useGamma22, extendedRange, illuminant, formula::Vec3(ipt));
}

void CColor::LinearYToIXX(float Y, float& I)
{
    I = formula::Pow<Exponent::k0_43>(Y);
}

float CColor::IPTSaturation(const Math::CVector3<float>& ipt)
{
    return formula::IPTSaturation(formula::Vec3(ipt));
}

void CColor::IPTToICH(const Math::CVector3<float>& ipt, Math::CVector3<float>& ich)
{
    ich = formula::IPTToICH(formula::Vec3(ipt));
}

void CColor::ICHToIPT(const Math::CVector3<float>& ich, Math::CVector3<float>& ipt)
{
    ipt = formula::ICHToIPT(formula::Vec3(ich));
}

void CColor::IPTToXXH(const Math::CVector3<float>& ipt, float& H)
{
    H = formula::IPTHue(formula::Vec3(ipt));
}

void CColor::LinearRGBToICH(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                            Math::CVector3<float>& ich)
{
    ich = formula::LinearRGBToICH(illuminant, formula::Vec3(rgb));
}

void CColor::ICHToLinearRGB(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& ich,
                            Math::CVector3<float>& rgb)
{
    rgb = formula::ICHToLinearRGB(extendedRange, illuminant, formula::Vec3(ich));
}

float CColor::ICHSaturation(const Math::CVector3<float>& ich)
{
    return formula::Saturation(ich.x, ich.y);
}

void CColor::SRGBToLMS(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                       const Math::CVector3<float>& srgb, Math::CVector3<float>& lms)
{
    lms = formula::SRGBToLMS(useGamma22, extendedRange, illuminant, formula::Vec3(srgb));
}

}   // namespace QZ::Foundation
