// SPDX-License-Identifier: MIT

/// \file
/// Prints how far each estimator of CWhiteBalance is from lights that are known, as a table in Markdown.

#include <cstdio>

#include "tests/Analysis/LitScenes.h"

int main()
{
    using namespace QZ::Test;
    std::printf("| scene | light | uncorrected");
    for (const Estimator& estimator : Estimators())
        std::printf(" | %s", estimator.name.c_str());
    std::printf(" |\n|---|---|--:|--:|--:|--:|--:|\n");

    std::vector<double> sums(Estimators().size());
    double uncorrected = 0.0;
    const auto scenes = Scenes();
    for (const Scene& scene : scenes) {
        for (const Light& light : Lights()) {
            const QZ::Math::CVector3<float> white(1.0f, 1.0f, 1.0f);
            const double cast = AngularError(white, Lit(light, white));
            uncorrected += cast;
            std::printf("| %s | %s | %.1f", scene.name.c_str(), light.name.c_str(), cast);
            for (std::size_t i = 0; i < sums.size(); ++i) {
                const double error = RecoveryError(Estimators()[i], light, scene);
                sums[i] += error;
                std::printf(" | %.1f", error);
            }
            std::printf(" |\n");
        }
    }
    const auto count = static_cast<double>(scenes.size() * Lights().size());
    std::printf("| mean | | %.1f", uncorrected / count);
    for (const double sum : sums)
        std::printf(" | %.1f", sum / count);
    std::printf(" |\n");
}
