// SPDX-License-Identifier: MIT
#include "tests/proof/FunctionRows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tests/proof/FunctionRows.cpp"
#include <hwy/foreach_target.h>

#include "QZ/Foundation/Color/Formulas/IPT.h"
#include "QZ/Foundation/Color/Formulas/Lab.h"
#include "QZ/Foundation/Color/Formulas/Luv.h"

// Every power with a fixed exponent, and every curve of one argument built on them: QZ_EACH(name, f(c)).
#ifndef QZ_EACH_FUNCTION
#define QZ_EACH_FUNCTION(QZ_EACH)                                                                    \
    QZ_EACH("2.4", Pow<Exponent::k2_4>(c))                                                           \
    QZ_EACH("0.41666666", Pow<Exponent::k0_41666666>(c))                                             \
    QZ_EACH("2.2", Pow<Exponent::k2_2>(c))                                                           \
    QZ_EACH("0.45454544", Pow<Exponent::k0_45454544>(c))                                             \
    QZ_EACH("0.33333334", Pow<Exponent::k0_33333334>(c))                                             \
    QZ_EACH("0.43", Pow<Exponent::k0_43>(c))                                                         \
    QZ_EACH("2.325581", Pow<Exponent::k2_325581>(c))                                                 \
    QZ_EACH("2.2222223", Pow<Exponent::k2_2222223>(c))                                               \
    QZ_EACH("0.45", Pow<Exponent::k0_45>(c))                                                         \
    QZ_EACH("1.961", Pow<Exponent::k1_961>(c))                                                       \
    QZ_EACH("0.5099439", Pow<Exponent::k0_5099439>(c))                                               \
    QZ_EACH("3", Pow<Exponent::k3>(c))                                                               \
    QZ_EACH("sRGB decoding", SRGBToLinear(c))                                                        \
    QZ_EACH("sRGB encoding", LinearToSRGB(c))                                                        \
    QZ_EACH("sRGB decoding, extended range", NonlinearToLinear(false, true, Vec3<F>{c, c, c}).y)     \
    QZ_EACH("sRGB encoding, extended range", LinearToNonlinear(false, true, Vec3<F>{c, c, c}).y)     \
    QZ_EACH("gamma 2.2 decoding, extended range", NonlinearToLinear(true, true, Vec3<F>{c, c, c}).y) \
    QZ_EACH("gamma 2.2 encoding, extended range", LinearToNonlinear(true, true, Vec3<F>{c, c, c}).y) \
    QZ_EACH("Rec. 709 decoding", Rec709ToLinear(c))                                                  \
    QZ_EACH("Rec. 709 encoding", LinearToRec709(c))                                                  \
    QZ_EACH("sRGB to Rec. 709", SRGBToRec709(c))                                                     \
    QZ_EACH("CIE root", LightnessRoot(c))                                                            \
    QZ_EACH("inverse CIE root", InverseLightnessRoot(c))                                             \
    QZ_EACH("luminance to lightness", LinearYToLXX(c))                                               \
    QZ_EACH("lightness to luminance", LXXToLinearY(c))                                               \
    QZ_EACH("encoded luminance to lightness", LinearYToLXX(NonlinearToLinear(false, c)))             \
    QZ_EACH("lightness to encoded luminance", LinearToNonlinear(false, LXXToLinearY(c)))             \
    QZ_EACH("gamma 2.2 luminance to lightness", LinearYToLXX(NonlinearToLinear(true, c)))            \
    QZ_EACH("lightness to gamma 2.2 luminance", LinearToNonlinear(true, LXXToLinearY(c)))            \
    QZ_EACH("Y to L of Lab and Luv", XYZToLab(CColor::eD65, Vec3<F>{F(0.0f), c, F(0.0f)}).x)         \
    QZ_EACH("L to Y of Lab", LabToXYZ(CColor::eD65, Vec3<F>{c, F(0.0f), F(0.0f)}).y)                 \
    QZ_EACH("L to Y of Luv", LuvToXYZ(CColor::eD65, Vec3<F>{c, F(0.0f), F(0.0f)}).y)                 \
    QZ_EACH("IPT cone compression", SignedPow<Exponent::k0_43>(c))                                   \
    QZ_EACH("inverse of the IPT cone compression", SignedPow<Exponent::k2_325581>(c))
#endif

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

template <class Function>
HWY_FLATTEN void LaneRow(const float* x, std::size_t n, float* out)
{
    const Lane::Tag tag;
    for (std::size_t i = 0; i < n; i += Lane::Size())
        hn::StoreU(Function()(Lane(hn::LoadU(tag, x + i))).vector, tag, out + i);
}

template <class Function>
FunctionRows::Row LaneRowOf(Function)
{
    return LaneRow<Function>;
}

#define QZ_LANE_ROW(name, ...)                   \
    {name, LaneRowOf([](auto c) HWY_ATTR {       \
         using F [[maybe_unused]] = decltype(c); \
         return __VA_ARGS__;                     \
     })},

[[maybe_unused]] const auto& kEntry =
    AllFunctionRows().emplace_back(FunctionRows{HWY_TARGET, {QZ_EACH_FUNCTION(QZ_LANE_ROW)}});

#undef QZ_LANE_ROW

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QZ::Foundation {

namespace {

template <class Function>
void SingleRow(const float* x, std::size_t n, float* out)
{
    for (std::size_t i = 0; i < n; ++i)
        out[i] = Function()(x[i]);
}

template <class Function>
FunctionRows::Row SingleRowOf(Function)
{
    return SingleRow<Function>;
}

}   // namespace

#define QZ_SINGLE_ROW(name, ...)           \
    {name, SingleRowOf([](float c) {       \
         using F [[maybe_unused]] = float; \
         using namespace QZ_TARGET;        \
         return __VA_ARGS__;               \
     })},

std::vector<FunctionRows>& AllFunctionRows()
{
    static std::vector<FunctionRows> all = {{0, {QZ_EACH_FUNCTION(QZ_SINGLE_ROW)}}};
    return all;
}

}   // namespace QZ::Foundation
#endif
