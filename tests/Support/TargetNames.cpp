// SPDX-License-Identifier: MIT
// Prints the instruction sets that the library is compiled for, parted by semicolons.
#include <hwy/targets.h>
#include <cstdint>
#include <cstdio>

int main()
{
    for (std::int64_t rest = HWY_TARGETS; rest != 0; rest &= rest - 1)
        std::printf("%s%s", rest == HWY_TARGETS ? "" : ";", hwy::TargetName(rest & -rest));
}
