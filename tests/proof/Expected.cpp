// SPDX-License-Identifier: MIT
#include "tests/proof/Expected.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <utility>

namespace QZ::Proof {

using Foundation::Exponent;

Tally::Tally() : closest(HUGE_VAL)
{}

void Tally::Add(const Tally& other)
{
    floats += other.floats;
    hard += other.hard;
    wrong += other.wrong;
    if (other.closest < closest) {
        closest = other.closest;
        closestX = other.closestX;
    }
}

namespace {

float Itself(float c)
{
    return c;
}
float Magnitude(float c)
{
    return std::fabs(c);
}
float ThePower(float, float power)
{
    return power;
}

/// The sign of c put back; a zero of either sign counts as above 0, and NaN as below.
float Mirror(float c, float value)
{
    return value * (c >= 0.0f ? 1.0f : -1.0f);
}

Stage Power(Exponent exponent)
{
    return {exponent, Itself, ThePower};
}
Stage SignedPower(Exponent exponent)
{
    return {exponent, Magnitude, [](float c, float p) { return c >= 0.0f ? p : -p; }};
}
Stage MirroredPower(Exponent exponent)
{
    return {exponent, Magnitude, Mirror};
}

float SRGBBase(float c)
{
    return (c + 0.055f) * 0.94786733f;
}
float DecodedSRGB(float c, float p)
{
    return c > 0.04045f ? p : c * 0.07739938f;
}
float EncodedSRGB(float c, float p)
{
    return c > 0.0031308f ? p * 1.055f - 0.055f : c * 12.92f;
}
float EncodedRec709(float c, float p)
{
    return c > 0.018f ? p * 1.099f - 0.099f : c * 4.5f;
}
float Root(float c, float p)
{
    return c > 0.008856f ? p : c * 7.787f + 0.13793103f;
}
float Unrooted(float s, float cube)
{
    return cube > 0.008856f ? cube : (s - 0.13793103f) * 0.12841916f;
}
float Lightness(float c, float p)
{
    const float L = 1.16f * Root(c, p) - 0.16f;
    return L > 0.0f ? L : 0.0f;
}
float LightnessBase(float L)
{
    return (L + 0.16f) / 1.16f;
}
float LabBase(float L)
{
    return (L + 0.16f) * 0.862069f;
}
float LuvBase(float L)
{
    return (L * 100.0f + 16.0f) / 116.0f;
}

const Stage kDecodeSRGB = {Exponent::k2_4, SRGBBase, DecodedSRGB};
const Stage kEncodeSRGB = {Exponent::k0_41666666, Itself, EncodedSRGB};
const Stage kEncodeRec709 = {Exponent::k0_45, Itself, EncodedRec709};
const Stage kToLightness = {Exponent::k0_33333334, Itself, Lightness};
const Stage kFromLightness = {Exponent::k3, LightnessBase,
                              [](float L, float cube) { return Unrooted(LightnessBase(L), cube); }};

std::vector<Subject> Curves()
{
    return {
        {"sRGB decoding", {kDecodeSRGB}},
        {"sRGB encoding", {kEncodeSRGB}},
        {"sRGB decoding, extended range",
         {{Exponent::k2_4, [](float c) { return SRGBBase(std::fabs(c)); },
           [](float c, float p) { return Mirror(c, DecodedSRGB(std::fabs(c), p)); }}}},
        {"sRGB encoding, extended range",
         {{Exponent::k0_41666666, Magnitude,
           [](float c, float p) { return Mirror(c, EncodedSRGB(std::fabs(c), p)); }}}},
        {"gamma 2.2 decoding, extended range", {MirroredPower(Exponent::k2_2)}},
        {"gamma 2.2 encoding, extended range", {MirroredPower(Exponent::k0_45454544)}},
        {"Rec. 709 decoding",
         {{Exponent::k2_2222223, [](float c) { return (c + 0.099f) * 0.9099181f; },
           [](float c, float p) { return c > 0.081f ? p : c * 0.22222222f; }}}},
        {"Rec. 709 encoding", {kEncodeRec709}},
        {"sRGB to Rec. 709", {kDecodeSRGB, kEncodeRec709}},
        {"CIE root", {{Exponent::k0_33333334, Itself, Root}}},
        {"inverse CIE root", {{Exponent::k3, Itself, Unrooted}}},
        {"luminance to lightness", {kToLightness}},
        {"lightness to luminance", {kFromLightness}},
        {"encoded luminance to lightness", {kDecodeSRGB, kToLightness}},
        {"lightness to encoded luminance", {kFromLightness, kEncodeSRGB}},
        {"gamma 2.2 luminance to lightness", {Power(Exponent::k2_2), kToLightness}},
        {"lightness to gamma 2.2 luminance", {kFromLightness, Power(Exponent::k0_45454544)}},
        {"Y to L of Lab and Luv",
         {{Exponent::k0_33333334, Itself,
           [](float Y, float p) {
               const float L = Lightness(Y, p);
               return L < 1.0f ? L : 1.0f;
           }}}},
        {"L to Y of Lab",
         {{Exponent::k3, LabBase, [](float L, float cube) { return Unrooted(LabBase(L), cube); }}}},
        {"L to Y of Luv",
         {{Exponent::k3, LuvBase,
           [](float L, float cube) {
               const float line = (LuvBase(L) - 0.13793103f) / 7.787f;
               return L == 0.0f ? 0.0f : cube > 0.008856f ? cube : line;
           }}}},
        {"IPT cone compression", {SignedPower(Exponent::k0_43)}},
        {"inverse of the IPT cone compression", {SignedPower(Exponent::k2_325581)}},
    };
}

/// Exactly, in integers: x = m 2^k, and m^3 has 72 bits.
float NearestCube(float x)
{
    if (!std::isfinite(x) || x == 0.0f)
        return x;
    int k = 0;
    const auto m = static_cast<std::uint64_t>(std::ldexp(std::frexp(std::fabs(x), &k), 24));
    const std::uint64_t square = m * m;
    const std::uint64_t low = (square & 0xffffffu) * m;
    const std::uint64_t high = (square >> 24) * m + (low >> 24);   // m^3 = high 2^24 + rest
    const std::uint64_t sticky = (low & 0xffffffu) != 0 ? 1 : 0;
    // high has 46 to 48 bits: with a last bit that tells of the rest, one rounding to float is right.
    const auto odd = static_cast<double>(2 * high + sticky);
    return std::copysign(static_cast<float>(std::ldexp(odd, 3 * (k - 24) + 23)), x);
}

}   // namespace

const std::vector<Subject>& Subjects()
{
    static const std::vector<Subject> subjects = [] {
        std::vector<Subject> all;
        const char* names[] = {"2.4",      "0.41666666", "2.2",  "0.45454544", "0.33333334", "0.43",
                               "2.325581", "2.2222223",  "0.45", "1.961",      "0.5099439",  "3"};
        for (std::size_t i = 0; i < std::size(names); ++i)
            all.push_back({names[i], {Power(static_cast<Exponent>(i))}});
        for (Subject& curve : Curves())
            all.push_back(std::move(curve));
        return all;
    }();
    return subjects;
}

Expected::Expected(const Subject& subject) : m_subject(subject)
{
    for (const Stage& stage : subject.stages)
        if (stage.exponent != Exponent::k3)
            m_references.try_emplace(stage.exponent, stage.exponent);
}

void Expected::Fill(const float* x, float* out, Tally& tally) const
{
    std::array<float, kChunkSize> bases;
    std::array<float, kChunkSize> powers;
    for (const Stage& stage : m_subject.stages) {
        std::transform(x, x + kChunkSize, bases.begin(), stage.argument);
        FillPowers(stage.exponent, bases.data(), powers.data(), tally);
        std::transform(x, x + kChunkSize, powers.begin(), out, stage.rest);
        x = out;
    }
}

void Expected::FillPowers(Exponent exponent, const float* x, float* out, Tally& tally) const
{
    if (exponent == Exponent::k3) {
        std::transform(x, x + kChunkSize, out, NearestCube);
        return;
    }
    const PowerReference& reference = m_references.at(exponent);
    std::array<unsigned char, kChunkSize> isHard;
    reference.Chunk(x, out, isHard.data());
    for (std::size_t i = 0; i < kChunkSize; ++i) {
        if (isHard[i] == 0)
            continue;
        double distance = 0.0;
        out[i] = reference.Nearest(x[i], distance);
        ++tally.hard;
        if (std::isnormal(out[i]) && distance < tally.closest) {
            tally.closest = distance;
            tally.closestX = x[i];
        }
    }
}

}   // namespace QZ::Proof
