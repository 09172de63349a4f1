// SPDX-License-Identifier: MIT

/// \file
/// Writes the precomputed table of CLUVMaximumChromaMap as C++. Runs on the machine that builds the library:
///     GenerateMaximumChroma output.cpp

#include <bit>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "QZ/Foundation/Color/Formulas/MaximumChroma.h"

namespace {

/// The bits of the nearest binary16, ties to even.
std::uint32_t HalfBits(float value)
{
    return std::bit_cast<std::uint16_t>(static_cast<_Float16>(value));
}

bool Write(std::FILE* file)
{
    using namespace QZ::Foundation::MaximumChroma;
    const std::vector<float> table = Table(precomputedCount, precomputedCount);
    std::fputs(
        "#include \"QZ/Foundation/Color/Formulas/MaximumChroma.h\"\n"
        "const unsigned int QZ::Foundation::MaximumChroma::precomputed[] = {\n",
        file);
    for (std::size_t i = 0; i < table.size(); i += 2)
        std::fprintf(file, "0x%08xu,%c", unsigned{HalfBits(table[i]) | HalfBits(table[i + 1]) << 16},
                     i % 16 == 14 ? '\n' : ' ');
    std::fputs("};\n", file);
    return std::ferror(file) == 0;
}

}   // namespace

int main(int argc, char** argv)
{
    std::FILE* file = argc == 2 ? std::fopen(argv[1], "w") : nullptr;
    if (file == nullptr) {
        std::fputs("usage: GenerateMaximumChroma output.cpp\n", stderr);
        return 1;
    }
    const bool written = Write(file);
    return std::fclose(file) == 0 && written ? 0 : 1;
}
