// SPDX-License-Identifier: MIT
#include "bench/Support/PerColour.h"

namespace QZ::Bench {

[[maybe_unused]] static const bool kToneCurves[] = {
    PerColour("NonlinearToLinear/sRGB",
              [](const Colour& c) {
                  Colour out;
                  Color::NonlinearToLinearToneCurve(false, false, c, out);
                  return out;
              }),
    PerColour("NonlinearToLinear/sRGB extended",
              [](const Colour& c) {
                  Colour out;
                  Color::NonlinearToLinearToneCurve(false, true, c, out);
                  return out;
              }),
    PerColour("NonlinearToLinear/2.2",
              [](const Colour& c) {
                  Colour out;
                  Color::NonlinearToLinearToneCurve(true, false, c, out);
                  return out;
              }),
    PerColour("LinearToNonlinear/sRGB",
              [](const Colour& c) {
                  Colour out;
                  Color::LinearToNonlinearToneCurve(false, false, c, out);
                  return out;
              }),
    PerColour("LinearToNonlinear/sRGB extended",
              [](const Colour& c) {
                  Colour out;
                  Color::LinearToNonlinearToneCurve(false, true, c, out);
                  return out;
              }),
    PerColour("LinearToNonlinear/2.2",
              [](const Colour& c) {
                  Colour out;
                  Color::LinearToNonlinearToneCurve(true, false, c, out);
                  return out;
              }),
    PerColour("NonlinearToLinear709",
              [](const Colour& c) { return Out(Color::NonlinearToLinear709ToneCurve, c); }),
    PerColour("LinearToNonlinear709",
              [](const Colour& c) { return Out(Color::LinearToNonlinear709ToneCurve, c); }),
    PerColour("NonlinearToLinearApple709",
              [](const Colour& c) { return Out(Color::NonlinearToLinearApple709ToneCurve, c); }),
    PerColour("LinearToNonlinearApple709",
              [](const Colour& c) { return Out(Color::LinearToNonlinearApple709ToneCurve, c); }),
    PerColour("SRGBToRGB709", [](const Colour& c) { return Out(Color::SRGBToRGB709, c); }),
};

}   // namespace QZ::Bench
