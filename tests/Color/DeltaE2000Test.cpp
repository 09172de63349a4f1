// SPDX-License-Identifier: MIT
#include "tests/proof/DeltaE2000.h"

#include <gtest/gtest.h>

namespace QZ::Proof {
namespace {

// The colour difference that docs/accuracy.md counts in. Pairs from table 1 of Sharma, Wu and Dalal, 2005,
// which has four decimals.
TEST(DeltaE2000, GivesThePublishedDifferences)
{
    const struct {
        LabColor one, two;
        double difference;
    } pairs[] = {
        {{50.0, 2.6772, -79.7751}, {50.0, 0.0, -82.7485}, 2.0425},
        {{50.0, 3.1571, -77.2803}, {50.0, 0.0, -82.7485}, 2.8615},
        {{50.0, 2.8361, -74.0200}, {50.0, 0.0, -82.7485}, 3.4412},
        {{50.0, -1.3802, -84.2814}, {50.0, 0.0, -82.7485}, 1.0000},
        {{50.0, 2.5, 0.0}, {50.0, 0.0, -2.5}, 4.3065},
        {{50.0, 2.5, 0.0}, {73.0, 25.0, -18.0}, 27.1492},
        {{60.2574, -34.0099, 36.2677}, {60.4626, -34.1751, 39.4387}, 1.2644},
        {{2.0776, 0.0795, -1.1350}, {0.9033, -0.0636, -0.5514}, 0.9082},
    };
    for (const auto& pair : pairs) {
        EXPECT_NEAR(DeltaE2000(pair.one, pair.two), pair.difference, 0.00005);   // half the last decimal
        EXPECT_NEAR(DeltaE2000(pair.two, pair.one), pair.difference, 0.00005);
    }
    EXPECT_EQ(DeltaE2000({50.0, 1.0, 2.0}, {50.0, 1.0, 2.0}), 0.0);
}

}   // namespace
}   // namespace QZ::Proof
