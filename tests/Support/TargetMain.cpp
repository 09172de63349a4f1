// SPDX-License-Identifier: MIT
// The main program of tests that run once on every instruction set, whole:
//   AnalysisTests --target=AVX2
// holds the library to AVX2. Without the option it takes the best that the machine has, as for any host.
#include <gmock/gmock.h>
#include <cstdio>
#include <string_view>

#include "tests/Support/Targets.h"

namespace {

constexpr int kSkipped = 77;   // as the tests' CMakeLists.txt says
constexpr int kWrong = 2;

/// 0 when the library is not compiled for it.
std::int64_t TargetNamed(std::string_view name)
{
    for (std::int64_t rest = HWY_TARGETS; rest != 0; rest &= rest - 1)
        if (name == hwy::TargetName(rest & -rest))
            return rest & -rest;
    return 0;
}

int RunOn(const char* name)
{
    const std::int64_t target = TargetNamed(name);
    if (target == 0) {
        std::fprintf(stderr, "%s is no instruction set that the library is compiled for\n", name);
        return kWrong;
    }
    if ((hwy::SupportedTargets() & target) == 0) {
        std::printf("this machine has no %s\n", name);
        return kSkipped;
    }
    QZ::Test::targetOfRun = target;
    hwy::SetSupportedTargetsForTest(target);
    const int result = RUN_ALL_TESTS();
    if (hwy::SupportedTargets() != target) {
        std::fprintf(stderr, "a test chose another instruction set than %s\n", name);
        return kWrong;
    }
    return result;
}

}   // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    constexpr std::string_view option = "--target=";
    if (argc == 2 && std::string_view(argv[1]).starts_with(option))
        return RunOn(argv[1] + option.size());
    if (argc > 1) {
        std::fprintf(stderr, "%s: unknown option\n", argv[1]);
        return kWrong;
    }
    return RUN_ALL_TESTS();
}
