// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "QZ/Export.h"
#include "QZ/Math/CMatrix3.h"
#include "QZ/Math/CVector3.h"
#include "QZ/Math/CVector4.h"

namespace QZ::Foundation {

/// Colour spaces and colour adjustments, one colour at a time.
///
/// **Scales.** A colour is three floats in the order of its space's name. RGB, XYZ and luminance run from 0
/// to 1, white having Y = 1. Lab and Luv are the CIE values divided by 100: L runs from 0 to 1. Hue angles
/// are radians in (-pi, pi]; only the hue of HSV is a fraction of a turn.
///
/// **Names.** "SRGB" is encoded sRGB, "LinearRGB" linear light with the sRGB primaries; "DisplayP3" and
/// "LinearDisplayP3" likewise. "Y" is relative luminance.
///
/// **Flags.** `useGamma22` takes a pure power of 2.2 for the tone curve instead of the piecewise sRGB curve.
/// `extendedRange` allows values outside 0 to 1: the tone curves act on the magnitude and restore the sign,
/// and results are not clamped. Extended-range colours are referred to the D50 white. Ordinary 8-bit sRGB
/// takes false for both.
///
/// **Arguments.** Input and output must be distinct objects. Any value is accepted: what lies outside a
/// range, NaN and infinity included, passes through the arithmetic unless a clamp is mentioned; a clamp turns
/// NaN into its lower bound. Nothing throws, nothing allocates (but for Highlights), and every function may
/// be called from any thread.
///
/// **Arithmetic** is in single precision throughout. Matrices and white points are rounded constants of the
/// library, so that a conversion and its inverse agree to about 1e-5 and not to the last bit.
///
/// \code
///     CVector3<float> lab;
///     CColor::SRGBToLab(false, false, CColor::eD65, {1.0f, 0.0f, 0.0f}, lab);   // (0.532, 0.801, 0.672)
///     CVector3<float> p3;
///     CColor::LabToDisplayP3(false, CColor::eD65, lab, p3);   // (0.918, 0.200, 0.139)
/// \endcode
class QZ_API CColor {
public:
    /// The reference white. Zero is D50; every other value counts as D65.
    enum EIlluminant : int { eD50 = 0, eD65 = 1 };

    /// \name Reference whites, luminance weights and matrices (CIE 15:2004; IEC 61966-2-1:1999)
    /// The references returned stay valid for the life of the process.
    /// \{

    /// XYZ of the reference white, Y = 1.
    [[nodiscard]] static const Math::CVector3<float>& XYZReference(EIlluminant illuminant);
    /// One over each component of XYZReference().
    [[nodiscard]] static const Math::CVector3<float>& InvXYZReference(EIlluminant illuminant);
    /// Weights of R, G and B in the luminance.
    /// \param luma           true for the Rec. 601 weights of encoded RGB (0.299, 0.587, 0.114).
    /// \param extendedRange  true for the D50 weights whatever the illuminant.
    [[nodiscard]] static const Math::CVector3<float>& RGBLuminanceVec3(bool luma, bool extendedRange,
                                                                       EIlluminant illuminant);
    /// Linear sRGB to XYZ; its second row is the luminance vector of the illuminant.
    [[nodiscard]] static const Math::CMatrix3<float>& LinearRGBToXYZMatrix(EIlluminant illuminant);
    /// XYZ to linear sRGB.
    [[nodiscard]] static const Math::CMatrix3<float>& XYZToLinearRGBMatrix(EIlluminant illuminant);
    /// \}

    /// \name Tone curves
    /// \{

    /// Encoded RGB to linear light (IEC 61966-2-1:1999, 5.2), or c^2.2. Without `extendedRange` a negative
    /// value takes the curve's linear part, and is NaN with `useGamma22`; with it, a zero of either sign
    /// gives +0.
    static void NonlinearToLinearToneCurve(bool useGamma22, bool extendedRange,
                                           const Math::CVector3<float>& in, Math::CVector3<float>& out);
    /// The inverse of NonlinearToLinearToneCurve(), by c^0.41666666 or c^0.45454544.
    static void LinearToNonlinearToneCurve(bool useGamma22, bool extendedRange,
                                           const Math::CVector3<float>& in, Math::CVector3<float>& out);
    /// One component, without extended range.
    static void NonlinearToLinearToneCurve(bool useGamma22, float in, float& out);
    /// One component, without extended range.
    static void LinearToNonlinearToneCurve(bool useGamma22, float in, float& out);
    /// Rec. 709 code to linear light, the inverse of the camera curve (ITU-R BT.709-6, item 1.2). NaN stays
    /// NaN.
    static void NonlinearToLinear709ToneCurve(const Math::CVector3<float>& in, Math::CVector3<float>& out);
    /// Linear light to Rec. 709 code (ITU-R BT.709-6, item 1.2). NaN stays NaN.
    static void LinearToNonlinear709ToneCurve(const Math::CVector3<float>& in, Math::CVector3<float>& out);
    /// Rec. 709 code to linear light by the pure power 1.961, close to the piecewise curve and without its
    /// line. A negative value gives NaN.
    static void NonlinearToLinearApple709ToneCurve(const Math::CVector3<float>& in,
                                                   Math::CVector3<float>& out);
    /// The inverse power, 0.5099439. A negative value gives NaN.
    static void LinearToNonlinearApple709ToneCurve(const Math::CVector3<float>& in,
                                                   Math::CVector3<float>& out);
    /// Encoded sRGB to Rec. 709 code, through linear light.
    static void SRGBToRGB709(const Math::CVector3<float>& srgb, Math::CVector3<float>& out);
    /// \}

    /// \name RGB and XYZ
    /// \{

    /// Never clamped.
    static void LinearRGBToXYZ(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                               Math::CVector3<float>& xyz);
    /// Clamped to 0 to 1 unless `extendedRange`.
    static void XYZToLinearRGB(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& xyz,
                               Math::CVector3<float>& rgb);
    /// Never clamped.
    static void SRGBToXYZ(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                          const Math::CVector3<float>& srgb, Math::CVector3<float>& xyz);
    /// The linear values are clamped to 0 to 1 before they are encoded, unless `extendedRange`.
    static void XYZToSRGB(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                          const Math::CVector3<float>& xyz, Math::CVector3<float>& srgb);
    /// The grey of luminance Y: the reference white scaled by Y.
    static void YToXYZ(EIlluminant illuminant, float Y, Math::CVector3<float>& xyz);
    /// The colour of the same chromaticity and luminance Y. Y = 0 gives black; a colour whose own Y is 0 has
    /// no usable chromaticity and gives the grey of luminance Y.
    static void XYZtoXYZWithModifiedY(EIlluminant illuminant, const Math::CVector3<float>& xyz, float Y,
                                      Math::CVector3<float>& out);
    /// \}

    /// \name Luminance
    /// \{

    /// Relative luminance, clamped to 0 to 1 unless `extendedRange`, which also takes the D50 weights.
    static void SRGBToLinearY(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                              const Math::CVector3<float>& srgb, float& Y);
    /// Relative luminance, clamped to 0 to 1 unless `extendedRange`, which also takes the D50 weights.
    static void LinearRGBToLinearY(bool extendedRange, EIlluminant illuminant,
                                   const Math::CVector3<float>& rgb, float& Y);
    /// SRGBToLinearY(), then encoded without regard to sign: a negative extended-range luminance gives a
    /// negative value on the sRGB curve and NaN with `useGamma22`.
    static void SRGBToNonlinearY(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                                 const Math::CVector3<float>& srgb, float& Y);
    /// LinearRGBToLinearY(), then encoded as in SRGBToNonlinearY().
    static void LinearRGBToNonlinearY(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                                      const Math::CVector3<float>& rgb, float& Y);
    /// \}

    /// Each component c becomes max(low, min(high, c)); NaN becomes `low`.
    [[nodiscard]] static Math::CVector3<float> Clamp(const Math::CVector3<float>& v, float low, float high);

    /// \name YCbCr (ITU-R BT.601-7, full range, Cb and Cr about 0)
    /// No tone curve is applied. Both matrices are rounded to three decimals and are not exact inverses.
    /// \{
    static void SRGBToYCbCr(const Math::CVector3<float>& srgb, Math::CVector3<float>& ycbcr);
    static void YCbCrToSRGB(const Math::CVector3<float>& ycbcr, Math::CVector3<float>& srgb);
    /// \}

    /// \name CIE 1976 L*a*b* (CIE 15:2004, 8.2.1)
    /// On the hundredth scale: (0.5, 0.1, -0.2) is L* = 50, a* = 10, b* = -20.
    /// \{

    /// L is clamped to 0 to 1; a and b are not.
    static void XYZtoLab(EIlluminant illuminant, const Math::CVector3<float>& xyz,
                         Math::CVector3<float>& lab);
    /// Never clamped.
    static void LabToXYZ(EIlluminant illuminant, const Math::CVector3<float>& lab,
                         Math::CVector3<float>& xyz);
    static void LinearRGBToLab(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                               Math::CVector3<float>& lab);
    /// Clamped to 0 to 1 unless `extendedRange`.
    static void LabToLinearRGB(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& lab,
                               Math::CVector3<float>& rgb);
    /// Mind the order of the flags, the reverse of every other conversion's: callers rely on it.
    static void SRGBToLab(bool extendedRange, bool useGamma22, EIlluminant illuminant,
                          const Math::CVector3<float>& srgb, Math::CVector3<float>& lab);
    /// The linear values are clamped to 0 to 1 before they are encoded, with `extendedRange` too.
    static void LabToSRGB(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                          const Math::CVector3<float>& lab, Math::CVector3<float>& srgb);
    /// Extended-range sRGB, which is D50-referred, to Lab: the D50 matrix, then the Lab white of the
    /// illuminant. With eD65 the two refer to different whites, which callers rely on.
    static void ExtendedRangeSRGBToLab(bool useGamma22, EIlluminant illuminant,
                                       const Math::CVector3<float>& srgb, Math::CVector3<float>& lab);
    /// The inverse of ExtendedRangeSRGBToLab(). Never clamped.
    static void LabToExtendedRangeSRGB(bool useGamma22, EIlluminant illuminant,
                                       const Math::CVector3<float>& lab, Math::CVector3<float>& srgb);

    /// Lab to lightness, chroma and hue: (L, sqrt(a^2 + b^2), atan2(b, a)).
    static void LabToLCh(const Math::CVector3<float>& lab, Math::CVector3<float>& lch);
    /// C / sqrt(L^2 + C^2), from 0 to 1; 0 for black and for NaN.
    [[nodiscard]] static float LChSaturation(const Math::CVector3<float>& lch);

    /// The square of the CIE76 colour difference, on the hundredth scale: 1e-4 is one unit of Delta E
    /// squared.
    [[nodiscard]] static float DeltaESquaredLinearRGBLinearRGB(EIlluminant illuminant,
                                                               const Math::CVector3<float>& rgb1,
                                                               const Math::CVector3<float>& rgb2);
    /// The same between a linear RGB colour and a Lab colour.
    [[nodiscard]] static float DeltaESquaredLinearRGBLab(EIlluminant illuminant,
                                                         const Math::CVector3<float>& rgb,
                                                         const Math::CVector3<float>& lab);
    /// \}

    /// \name CIE 1976 L*u*v* (CIE 15:2004, 8.2.2), on the hundredth scale
    /// \{

    /// L is clamped to 0 to 1; u and v are not. Black gives (0, 0, 0).
    static void XYZtoLuv(EIlluminant illuminant, const Math::CVector3<float>& xyz,
                         Math::CVector3<float>& luv);
    /// Never clamped. L = 0 gives black whatever u and v; a colour with v' = 0 gives infinity or NaN.
    static void LuvToXYZ(EIlluminant illuminant, const Math::CVector3<float>& luv,
                         Math::CVector3<float>& xyz);
    static void LinearRGBToLuv(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                               Math::CVector3<float>& luv);
    /// Clamped to 0 to 1 unless `extendedRange`.
    static void LuvToLinearRGB(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& luv,
                               Math::CVector3<float>& rgb);
    static void SRGBToLuv(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                          const Math::CVector3<float>& srgb, Math::CVector3<float>& luv);
    /// The linear values are clamped to 0 to 1 before they are encoded, unless `extendedRange`.
    static void LuvToSRGB(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                          const Math::CVector3<float>& luv, Math::CVector3<float>& srgb);

    /// Luv to lightness, chroma and hue: (L, sqrt(u^2 + v^2), atan2(v, u)).
    static void LuvToLChuv(const Math::CVector3<float>& luv, Math::CVector3<float>& lch);
    /// C / sqrt(L^2 + C^2), from 0 to 1; 0 for black and for NaN.
    [[nodiscard]] static float LChuvSaturation(const Math::CVector3<float>& lch);
    /// Brings a colour into the gamut of sRGB by its chroma: above CLUVMaximumChromaMap::MaxChromaForLH(), u
    /// and v are scaled down to it. L and the hue stay, and a colour within the gamut keeps its bits.
    static void LimitLuvChroma(Math::CVector3<float>& luv);
    /// \}

    /// \name LXX: CIE lightness from luminance alone, L* / 100, with the D65 luminance weights
    /// Never below 0, not clamped above.
    /// \{
    static void LinearRGBToLXX(const Math::CVector3<float>& rgb, float& L);
    static void LinearYToLXX(float Y, float& L);
    static void LXXToLinearY(float L, float& Y);
    static void SRGBToLXX(bool useGamma22, bool extendedRange, const Math::CVector3<float>& srgb, float& L);
    /// From an encoded luminance y.
    static void SRGBYToLXX(bool useGamma22, float y, float& L);
    /// To an encoded luminance y.
    static void LXXToSRGBY(bool useGamma22, float L, float& y);
    /// \}

    /// \name Yxy: luminance and CIE 1931 chromaticity (CIE 15:2004, clause 7)
    /// \{

    /// The chromaticity is (0, 0) when X + Y + Z is not above 0.
    static void XYZToYxy(const Math::CVector3<float>& xyz, Math::CVector3<float>& Yxy);
    /// A chromaticity with y = 0 is taken as it is, with the factor 1: callers rely on finite results.
    static void YxyToXYZ(const Math::CVector3<float>& Yxy, Math::CVector3<float>& xyz);
    static void LinearRGBToYxy(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                               Math::CVector3<float>& Yxy);
    /// Clamped to 0 to 1 unless `extendedRange`.
    static void YxyToLinearRGB(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& Yxy,
                               Math::CVector3<float>& rgb);
    /// \}

    /// \name HSV (A. R. Smith, "Color Gamut Transform Pairs", SIGGRAPH 1978)
    /// All components from 0 to 1; the hue is a fraction of a turn, 0 for greys.
    /// \{
    static void RGBToHSV(const Math::CVector3<float>& rgb, Math::CVector3<float>& hsv);
    /// A hue of 1 is a hue of 0. A hue outside 0 to 1 is not wrapped: it takes the formula of the last sixth,
    /// (V, p, q). With a saturation of 0 the hue is not read.
    static void HSVToRGB(const Math::CVector3<float>& hsv, Math::CVector3<float>& rgb);
    /// \}

    /// \name YIQ (FCC 73.682, NTSC), without a tone curve
    /// \{
    static void RGBToYIQ(const Math::CVector3<float>& rgb, Math::CVector3<float>& yiq);
    static void YIQToRGB(const Math::CVector3<float>& yiq, Math::CVector3<float>& rgb);
    /// \}

    /// \name IPT and its polar form ICH
    /// F. Ebner and M. D. Fairchild, "Development and Testing of a Color Space (IPT) with Improved Hue
    /// Uniformity", Color Imaging Conference 1998. The hue H is atan2(P, T): measured from the T axis towards
    /// P.
    /// \{
    [[nodiscard]] static const Math::CMatrix3<float>& XYZToLMSMatrix(EIlluminant illuminant);
    [[nodiscard]] static const Math::CMatrix3<float>& LMSToXYZMatrix(EIlluminant illuminant);
    [[nodiscard]] static const Math::CMatrix3<float>& LMSToIPTMatrix();
    [[nodiscard]] static const Math::CMatrix3<float>& IPTToLMSMatrix();
    /// XYZToLMSMatrix() * LinearRGBToXYZMatrix().
    [[nodiscard]] static Math::CMatrix3<float> LinearRGBToXYZToLMSMatrix(EIlluminant illuminant);
    /// XYZToLinearRGBMatrix() * LMSToXYZMatrix().
    [[nodiscard]] static Math::CMatrix3<float> LMSToXYZToLinearRGBMatrix(EIlluminant illuminant);

    /// Never clamped; the cone responses' power of 0.43 keeps their sign.
    static void XYZToIPT(EIlluminant illuminant, const Math::CVector3<float>& xyz,
                         Math::CVector3<float>& ipt);
    /// Never clamped.
    static void IPTToXYZ(EIlluminant illuminant, const Math::CVector3<float>& ipt,
                         Math::CVector3<float>& xyz);
    static void LinearRGBToIPT(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                               Math::CVector3<float>& ipt);
    /// Clamped to 0 to 1 unless `extendedRange`.
    static void IPTToLinearRGB(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& ipt,
                               Math::CVector3<float>& rgb);
    static void SRGBToIPT(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                          const Math::CVector3<float>& srgb, Math::CVector3<float>& ipt);
    /// The linear values are clamped to 0 to 1 before they are encoded, unless `extendedRange`.
    static void IPTToSRGB(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                          const Math::CVector3<float>& ipt, Math::CVector3<float>& srgb);
    /// The intensity of a grey of luminance Y: Y^0.43, NaN for a negative Y.
    static void LinearYToIXX(float Y, float& I);
    /// Chroma over sqrt(I^2 + chroma^2), from 0 to 1; 0 for greys and for NaN.
    [[nodiscard]] static float IPTSaturation(const Math::CVector3<float>& ipt);

    /// (I, sqrt(T^2 + P^2), atan2(P, T)).
    static void IPTToICH(const Math::CVector3<float>& ipt, Math::CVector3<float>& ich);
    /// (I, C sin H, C cos H).
    static void ICHToIPT(const Math::CVector3<float>& ich, Math::CVector3<float>& ipt);
    /// The hue alone.
    static void IPTToXXH(const Math::CVector3<float>& ipt, float& H);
    static void LinearRGBToICH(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                               Math::CVector3<float>& ich);
    /// Clamped to 0 to 1 unless `extendedRange`.
    static void ICHToLinearRGB(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& ich,
                               Math::CVector3<float>& rgb);
    /// C / sqrt(I^2 + C^2), from 0 to 1; 0 for black and for NaN.
    [[nodiscard]] static float ICHSaturation(const Math::CVector3<float>& ich);

    /// Linear cone responses: no power is applied.
    static void SRGBToLMS(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                          const Math::CVector3<float>& srgb, Math::CVector3<float>& lms);
    /// \}

    /// \name Display P3 (the primaries of SMPTE RP 431-2 with the D65 white and the sRGB curve)
    /// Encoded Display P3 is never extended-range.
    /// \{
    [[nodiscard]] static const Math::CMatrix3<float>& LinearDisplayP3ToXYZMatrix(EIlluminant illuminant);
    [[nodiscard]] static const Math::CMatrix3<float>& XYZToLinearDisplayP3Matrix(EIlluminant illuminant);
    /// XYZToLMSMatrix() * LinearDisplayP3ToXYZMatrix().
    [[nodiscard]] static Math::CMatrix3<float> LinearDisplayP3ToXYZToLMSMatrix(EIlluminant illuminant);
    /// XYZToLinearDisplayP3Matrix() * LMSToXYZMatrix().
    [[nodiscard]] static Math::CMatrix3<float> LMSToXYZToLinearDisplayP3Matrix(EIlluminant illuminant);
    /// The second row of LinearDisplayP3ToXYZMatrix().
    [[nodiscard]] static const Math::CVector3<float>& LinearDisplayP3LuminanceVec3(EIlluminant illuminant);

    /// Never clamped.
    static void LinearDisplayP3ToXYZ(EIlluminant illuminant, const Math::CVector3<float>& p3lin,
                                     Math::CVector3<float>& xyz);
    /// Never clamped.
    static void XYZToLinearDisplayP3(EIlluminant illuminant, const Math::CVector3<float>& xyz,
                                     Math::CVector3<float>& p3lin);
    static void DisplayP3ToXYZ(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& p3,
                               Math::CVector3<float>& xyz);
    /// Clamped to 0 to 1 after the encoding, so that NaN becomes 0.
    static void XYZToDisplayP3(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& xyz,
                               Math::CVector3<float>& p3);
    /// The tone curve alone, without a clamp.
    static void LinearDisplayP3ToDisplayP3(bool useGamma22, const Math::CVector3<float>& p3lin,
                                           Math::CVector3<float>& p3);
    /// One `useGamma22` serves the decoding and the encoding. The linear values are clamped to 0 to 1 in
    /// between, unless `extendedRange`.
    static void DisplayP3ToSRGB(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                                const Math::CVector3<float>& p3, Math::CVector3<float>& srgb);
    /// Clamped to 0 to 1, with `extendedRange` too.
    static void SRGBToDisplayP3(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                                const Math::CVector3<float>& srgb, Math::CVector3<float>& p3);
    static void DisplayP3ToLab(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& p3,
                               Math::CVector3<float>& lab);
    /// Clamped to 0 to 1.
    static void LabToDisplayP3(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& lab,
                               Math::CVector3<float>& p3);
    static void DisplayP3ToIPT(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& p3,
                               Math::CVector3<float>& ipt);
    /// Clamped to 0 to 1.
    static void IPTToDisplayP3(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& ipt,
                               Math::CVector3<float>& p3);
    static void LinearDisplayP3ToIPT(EIlluminant illuminant, const Math::CVector3<float>& p3lin,
                                     Math::CVector3<float>& ipt);
    /// Never clamped.
    static void IPTToLinearDisplayP3(EIlluminant illuminant, const Math::CVector3<float>& ipt,
                                     Math::CVector3<float>& p3lin);
    /// Clamped to 0 to 1.
    static void DisplayP3ToLinearY(bool useGamma22, EIlluminant illuminant, const Math::CVector3<float>& p3,
                                   float& Y);
    /// Clamped to 0 to 1.
    static void LinearDisplayP3ToLinearY(EIlluminant illuminant, const Math::CVector3<float>& p3lin,
                                         float& Y);
    /// The encoded luminance, clamped to 0 to 1. The second flag is accepted and ignored.
    static void DisplayP3ToDisplayP3Y(bool useGamma22, bool ignored, EIlluminant illuminant,
                                      const Math::CVector3<float>& p3, float& y);
    /// \}

    /// The Bradford matrix that carries an XYZ colour seen under one white to the corresponding colour under
    /// another (K. M. Lam, 1985; ICC.1:2022, Annex E). A source white with a zero cone response gives
    /// infinities.
    [[nodiscard]] static Math::CMatrix3<float> ChromaticAdaptationMatrix(
        const Math::CVector3<float>& sourceWhite, const Math::CVector3<float>& destinationWhite);

    /// \name Adjustments
    /// \{

    /// The opposite hue in HSV: H + 0.5, less 1 when that is greater than 1. Saturation and value stay.
    static void ComplementaryColor(const Math::CVector3<float>& rgb, Math::CVector3<float>& out);

    /// A gain for each channel (P. Haeberli, "Matrix Operations for Image Processing", 1993).
    static void HaeberliBrightnessMatrix(const Math::CVector3<float>& scale, Math::CMatrix3<float>& out);
    /// Saturation about the grey of equal luminance: 0 is grey, 1 the identity (Haeberli, 1993). The matrix
    /// is laid out for row vectors, v * out: transpose it before multiplying a column.
    static void HaeberliSaturationMatrix(bool luma, bool extendedRange, EIlluminant illuminant,
                                         float saturation, Math::CMatrix3<float>& out);
    /// Rotation of RGB about the grey axis, for column vectors: rgb' = out * rgb.
    /// \param angle        radians.
    /// \param useHaeberli  true to keep the luminance constant by a shear (Haeberli, 1993); false for the plain
    ///                     rotation, which does not read the three arguments before the angle.
    static void HaeberliHueRotationMatrix(bool luma, bool extendedRange, EIlluminant illuminant, float angle,
                                          bool useHaeberli, Math::CMatrix3<float>& out);
    /// Rotation of the IQ plane by an angle in radians, for columns of RGB. Its matrices are rounded to three
    /// decimals: an angle of 0 gives the identity only to about 1e-3.
    static void YIQHueRotation(float angle, Math::CMatrix3<float>& out);

    /// A curve over the 256 grey levels that bends only the highlights.
    /// \param a    strength, strictly between 0 and 1; a of 1 makes every entry 0.
    /// \param b    width of the bent band [1 - b, 1], strictly between 0 and 1.
    /// \param lut  resized to 256 entries and overwritten; entry 0 is 0 and entry 255 is 255.
    static void Highlights(float a, float b, std::vector<unsigned char>& lut);

    /// The colour with the intensity of `target` and the hue and saturation of `reference`, in IPT (T. Pouli
    /// and others, "Color Correction for Tone Reproduction", Color and Imaging Conference 2013).
    ///
    /// \param nonlinear  true when both colours and the result are encoded sRGB (always the piecewise curve);
    ///                   false for linear RGB.
    /// \return  components in 0 to 1. Where the chroma cannot be scaled, because the target or the reference is
    ///          black or the chroma of the target is exactly 0 in IPT, every component is 0.
    [[nodiscard]] static Math::CVector3<float> ColorCorrectionMethodPouli(
        bool nonlinear, bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& reference,
        const Math::CVector3<float>& target);

    /// Equalises the histogram of one channel of an interleaved 8-bit picture, in place.
    /// \param step    bytes a pixel, at least 1.
    /// \param offset  the channel's byte within a pixel, 0 to step - 1.
    /// \param data    width * height * step bytes; may be null when there is no pixel.
    static void GrayscaleHistogramEqualization(int width, int height, int step, int offset,
                                               unsigned char* data);

    /// ((B + A x) x) / ((A x + C) x + D), after J. Hable's filmic curve ("Uncharted 2: HDR Lighting",
    /// GDC 2010). The division is unguarded.
    [[nodiscard]] static float ToneCurveModifiedHable(float A, float B, float C, float D, float x);

    /// The parameters of ToneCurveInsomniacGames().
    struct sInsomniacGamesToneCurve {
        float blackPoint;         ///< Input that maps to 0.
        float toeStrength;        ///< Shape of the lower segment, 0 to below 1.
        float crossOverPoint;     ///< Input at which the lower segment hands over to the upper one.
        float shoulderStrength;   ///< Shape of the upper segment, 0 to below 1.
        float whitePoint;         ///< Input that maps to 1.
    };

    /// A filmic curve of two rational segments (M. Day, "An Efficient and User-Friendly Tone Mapping
    /// Operator", Insomniac Games, 2012). Divisions are unguarded.
    ///
    /// \param inverse  true to find the input for the output value x.
    [[nodiscard]] static float ToneCurveInsomniacGames(const sInsomniacGamesToneCurve& curve, bool inverse,
                                                       float x);
    /// The coefficients (a, b, c, d) of each segment y = (a x + c) / (b x + d).
    static void ToneCurveCoefficientsInsomniacGames(const sInsomniacGamesToneCurve& curve,
                                                    Math::CVector4<float>& toe,
                                                    Math::CVector4<float>& shoulder);
    /// \}
};

}   // namespace QZ::Foundation
