// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/Formulas/DisplayP3.h"
#include "QZ/Foundation/Color/Formulas/HSV.h"
#include "QZ/Foundation/Color/Formulas/IPT.h"
#include "QZ/Foundation/Color/Formulas/Lab.h"
#include "QZ/Foundation/Color/Formulas/Luv.h"
#include "QZ/Foundation/Color/Formulas/YIQ.h"
#include "QZ/Foundation/Color/Formulas/Yxy.h"
#include "bench/Color/Plain.h"
#include "bench/Color/SingleCalls.h"

namespace QZ::Bench::PlainCalls {

namespace formula = Foundation::QZ_TARGET;
using Foundation::Exponent;
using PlainColor = formula::Vec3<Plain>;

#define QZ_COLOR(member, name, space, ...)                                                                \
    void member([[maybe_unused]] const Settings& s, const Color& in, Color& out)                          \
    {                                                                                                     \
        const PlainColor result = formula::name(__VA_ARGS__ __VA_OPT__(, ) PlainColor(in.x, in.y, in.z)); \
        out = {result.x.value, result.y.value, result.z.value};                                           \
    }
#define QZ_NUMBER(member, name, space, ...)                                                   \
    void member([[maybe_unused]] const Settings& s, const Color& in, Color& out)              \
    {                                                                                         \
        out.x = formula::name(__VA_ARGS__ __VA_OPT__(, ) PlainColor(in.x, in.y, in.z)).value; \
    }
#define QZ_CURVE(member, curve, space)                        \
    void member(const Settings&, const Color& in, Color& out) \
    {                                                         \
        const auto f = [](Plain c) { return (curve).value; }; \
        out = {f(in.x), f(in.y), f(in.z)};                    \
    }
QZ_SINGLE_CALLS(QZ_COLOR, QZ_NUMBER, QZ_CURVE)

}   // namespace QZ::Bench::PlainCalls
