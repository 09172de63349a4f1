// SPDX-License-Identifier: MIT
#include <array>
#include <vector>

#include "QZ/Foundation/Analysis/COtsuMethod.h"
#include "QZ/Foundation/Analysis/CWhiteBalance.h"
#include "QZ/Foundation/Analysis/ColorQuantization.h"
#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Analysis/HueAndGrayscaleQuantization.h"
#include "QZ/Foundation/Color/CGrayscaleToneCurve.h"
#include "QZ/Foundation/Color/CLUVMaximumChromaMap.h"
#include "tools/qz/selftest/Cases.h"
#include "tools/qz/selftest/Inputs.h"

namespace QZ::Tool::Selftest {

namespace {

using namespace Foundation;
using Weighted = CGrayscaleWeightedHistogram;
using Hues = CHueWeightedHistogramHierarchicalClusterQuantization;
using GreyClusters = CGrayscaleHistogramHierarchicalClusterQuantization;

constexpr std::array kWhites = {CColor::eD50, CColor::eD65};
constexpr std::array kGreys = {Weighted::eFourthChannel, Weighted::eLXX, Weighted::eNonlinearY};
constexpr std::array kSpaces = {CHueWeightedHistogram::eLab, CHueWeightedHistogram::eLuv,
                                CHueWeightedHistogram::eIPT};
constexpr std::array kModes = {Hues::eMeanPair, Hues::eDirection, Hues::eRelativeChroma};

/// A case that runs on each picture under each white.
template <class Function>
Case ForPictures(const char* name, Function function)
{
    return {name, [function](Digest& digest) {
                for (const Picture& picture : Pictures())
                    for (const CColor::EIlluminant white : kWhites)
                        function(digest, picture, white);
            }};
}

std::vector<Case> HistogramCases()
{
    return {
        ForPictures("CGrayscaleHistogram",
                    [](Digest& digest, const Picture& p, CColor::EIlluminant) {
                        CGrayscaleHistogram histogram;
                        histogram.Compute(p.width, p.height, 4, 1, p.rgba.data());
                        digest.Add(histogram.bins);
                        digest.Add(COtsuMethod<double, int>::Solution(histogram.count, histogram.bins));
                        digest.Add(COtsuMethod<float, int>::Solution(histogram.count, histogram.bins));
                    }),
        ForPictures("CGrayscaleWeightedHistogram",
                    [](Digest& digest, const Picture& p, CColor::EIlluminant white) {
                        for (const auto from : kGreys)
                            for (const bool isSRGB : {false, true})
                                for (const unsigned char* mask :
                                     {static_cast<const unsigned char*>(nullptr), p.rgba.data()}) {
                                    Weighted histogram;
                                    histogram.Compute(from, isSRGB, white, p.width, p.height, p.rgba.data(),
                                                      4, 2, mask);
                                    digest.Add(histogram.bins);
                                    digest.Add(histogram.total);
                                }
                    }),
        ForPictures("CGrayscaleKDEHistogram",
                    [](Digest& digest, const Picture& p, CColor::EIlluminant) {
                        CGrayscaleKDEHistogram histogram;
                        histogram.Compute(p.width, p.height, 0.0, 4, 0, p.rgba.data());
                        digest.Add(histogram.bins);
                    }),
        ForPictures("CPTHistogram",
                    [](Digest& digest, const Picture& p, CColor::EIlluminant white) {
                        CPTHistogram histogram;
                        histogram.Compute(360, white, p.width * p.height, p.rgba.data());
                        digest.Add(histogram.counts);
                        digest.Add(histogram.sums);
                    }),
        ForPictures("CHueWeightedHistogram",
                    [](Digest& digest, const Picture& p, CColor::EIlluminant white) {
                        for (const auto space : kSpaces)
                            for (const bool isSRGB : {false, true}) {
                                CHueWeightedHistogram histogram;
                                histogram.Compute(256, space, isSRGB, white, p.width * p.height,
                                                  p.rgba.data());
                                digest.Add(histogram.weights);
                                digest.Add(histogram.sums);
                                digest.Add(histogram.greySums);
                                digest.Add(histogram.total);
                            }
                    }),
    };
}

std::vector<Case> GreyCases()
{
    return {
        ForPictures("CGrayscaleHistogramMedianCutQuantization",
                    [](Digest& digest, const Picture& p, CColor::EIlluminant) {
                        CGrayscaleHistogramMedianCutQuantization quantizer;
                        quantizer.Compute(0, 0, 0, 0, 0, 6, p.width, p.height, 4, 1, 8, p.rgba.data());
                        digest.Add(quantizer.table);
                    }),
        ForPictures("CGrayscaleHistogramHierarchicalClusterQuantization",
                    [](Digest& digest, const Picture& p, CColor::EIlluminant white) {
                        for (const auto from : kGreys) {
                            GreyClusters quantizer;
                            quantizer.Compute(0.05f, 0.95f, 1.2f, 0.3f, 0.8f, 0.7f, 0.85f, 5, 4.0, from, true,
                                              white, p.width, p.height, p.rgba.data(), 0, 0, nullptr);
                            digest.Add(quantizer.table);
                            digest.Add(quantizer.levels);
                            float low = 0.0f, high = 0.0f, mid = 0.0f;
                            quantizer.ComputeForThreeTone(0.0f, 1.0f, 0.9f, 0.0f, 1.0f, 3, from, true, white,
                                                          p.width, p.height, p.rgba.data(), 0, 0, nullptr,
                                                          1.1f, 0.9f, low, high, mid);
                            digest.Add(std::array{low, high, mid});
                        }
                    }),
        {"CGrayscaleToneCurve",
         [](Digest& digest) {
             Numbers numbers(6);
             for (int i = 0; i < 256; ++i) {
                 CGrayscaleToneCurve curve;
                 const float shoulder = numbers.Unit();
                 const float toe = numbers.Unit();
                 const float gamma = 0.2f + 3.0f * numbers.Unit();
                 const float white = 1.0f - 0.3f * numbers.Unit();
                 curve.Compute(0.3f * numbers.Unit(), white, gamma, toe, shoulder);
                 digest.Add(curve.lookupTable);
             }
         }},
    };
}

std::vector<Case> HueCases()
{
    return {
        ForPictures("CPTMedianCutQuantization",
                    [](Digest& digest, const Picture& p, CColor::EIlluminant white) {
                        CPTMedianCutQuantization quantizer;
                        quantizer.Compute(256, 6, p.width, p.height, white, p.rgba.data());
                        digest.Add(quantizer.binColours);
                        Picture recolored = p;
                        quantizer.Recolor(p.width, p.height, white, recolored.rgba.data());
                        digest.Add(recolored.rgba);
                    }),
        ForPictures("CHueWeightedHistogramHierarchicalClusterQuantization",
                    [](Digest& digest, const Picture& p, CColor::EIlluminant white) {
                        for (const auto space : kSpaces)
                            for (const auto mode : kModes) {
                                Hues quantizer;
                                quantizer.Compute(256, 6, 10.0, space, true, white, mode, p.width, p.height,
                                                  p.rgba.data());
                                digest.Add(quantizer.binColours);
                                digest.Add(quantizer.binCluster);
                                Picture recolored = p;
                                quantizer.Recolor(p.width, p.height, white, recolored.rgba.data());
                                digest.Add(recolored.rgba);
                            }
                    }),
        ForPictures("CHueAndGrayscaleQuantizationTest",
                    [](Digest& digest, const Picture& p, CColor::EIlluminant white) {
                        CHueAndGrayscaleQuantizationTest quantizer;
                        quantizer.Compute(0.0f, 1.0f, 1.0f, 0.0f, 1.0f, 4, 5.0, 3, 2.0, 0.3f, Weighted::eLXX,
                                          true, white, p.width, p.height, p.rgba.data());
                        std::vector<unsigned char> out(p.rgba.size() / 2);
                        quantizer.Quantize(true, white, p.width, p.height, p.rgba.data(), out.data());
                        digest.Add(quantizer.palette);
                        digest.Add(out);
                    }),
        {"CLUVMaximumChromaMap", [](Digest& digest) { digest.Add(CLUVMaximumChromaMap::Compute(256, 256)); }},
    };
}

/// All three estimates, and the picture balanced to each in all four kinds of output.
void AddBalance(Digest& digest, const Picture& p, CColor::EIlluminant white)
{
    std::vector<Math::CVector3<float>> linear;
    CWhiteBalance::UCharToCVector3fBuffer(true, p.width, p.height, p.rgba.data(), linear);
    digest.Add(linear);

    std::array<Math::CMatrix3<float>, 4> matrices;
    CWhiteBalance::GrayWorld(white, true, false, p.width, p.height, linear, matrices[0]);
    CWhiteBalance::MaxGray(white, true, false, p.width, p.height, linear, matrices[1]);
    CWhiteBalance::LSRS(white, true, false, false, p.width, p.height, linear, matrices[2]);
    CWhiteBalance::LSRS(white, true, true, true, p.width, p.height, linear, matrices[3]);
    for (const auto& matrix : matrices)
        digest.Add(matrix * Math::CVector3<float>(0.3f, 0.5f, 0.7f));

    Math::CVector3<float> source;
    CWhiteBalance::SourceIlluminant({0.9f, 0.7f, 0.5f}, white, false, source);
    std::vector<unsigned char> out(p.rgba.size());
    for (const bool nonlinear : {false, true})
        for (const bool displayP3 : {false, true}) {
            CWhiteBalance::Balance(white, nonlinear, displayP3, source, p.width, p.height, linear,
                                   out.data());
            digest.Add(out);
        }
}

}   // namespace

std::vector<Case> AnalysisCases()
{
    std::vector<Case> cases = HistogramCases();
    for (const auto& more : {GreyCases(), HueCases()})
        cases.insert(cases.end(), more.begin(), more.end());
    cases.push_back(ForPictures("CWhiteBalance", AddBalance));
    return cases;
}

}   // namespace QZ::Tool::Selftest
