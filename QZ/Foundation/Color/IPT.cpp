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
    ipt = formula::XYZToIPT(illuminant, xyz);
}

void CColor::IPTToXYZ(EIlluminant illuminant, const Math::CVector3<float>& ipt, Math::CVector3<float>& xyz)
{
    xyz = formula::IPTToXYZ(illuminant, ipt);
}

void CColor::LinearRGBToIPT(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                            Math::CVector3<float>& ipt)
{
    ipt = formula::LinearRGBToIPT(illuminant, rgb);
}

void CColor::IPTToLinearRGB(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& ipt,
                            Math::CVector3<float>& rgb)
{
    rgb = formula::IPTToLinearRGB(extendedRange, illuminant, ipt);
}

void CColor::SRGBToIPT(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                       const Math::CVector3<float>& srgb, Math::CVector3<float>& ipt)
{
    ipt = formula::SRGBToIPT(useGamma22, extendedRange, illuminant, srgb);
}

void CColor::IPTToSRGB(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                       const Math::CVector3<float>& ipt, Math::CVector3<float>& srgb)
{
    srgb = formula::IPTToSRGB(useGamma22, extendedRange, illuminant, ipt);
}

void CColor::LinearYToIXX(float Y, float& I)
{
    I = formula::Pow<Exponent::k0_43>(Y);
}

float CColor::IPTSaturation(const Math::CVector3<float>& ipt)
{
    return formula::IPTSaturation(ipt);
}

void CColor::IPTToICH(const Math::CVector3<float>& ipt, Math::CVector3<float>& ich)
{
    ich = formula::IPTToICH(ipt);
}

void CColor::ICHToIPT(const Math::CVector3<float>& ich, Math::CVector3<float>& ipt)
{
    ipt = formula::ICHToIPT(ich);
}

void CColor::IPTToXXH(const Math::CVector3<float>& ipt, float& H)
{
    H = formula::IPTHue(ipt);
}

void CColor::LinearRGBToICH(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                            Math::CVector3<float>& ich)
{
    ich = formula::LinearRGBToICH(illuminant, rgb);
}

void CColor::ICHToLinearRGB(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& ich,
                            Math::CVector3<float>& rgb)
{
    rgb = formula::ICHToLinearRGB(extendedRange, illuminant, ich);
}

float CColor::ICHSaturation(const Math::CVector3<float>& ich)
{
    return formula::Saturation(ich.x, ich.y);
}

void CColor::SRGBToLMS(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                       const Math::CVector3<float>& srgb, Math::CVector3<float>& lms)
{
    lms = formula::SRGBToLMS(useGamma22, extendedRange, illuminant, srgb);
}

}   // namespace QZ::Foundation
