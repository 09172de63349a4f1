// SPDX-License-Identifier: MIT
#include <iostream>

#include "tools/qz/selftest/Selftest.h"

// The self-test of qz as a program of its own, for machines that have nothing but a compiler.
//   qz-selftest [WORD]...    only functions whose names have one of the words in them

int main(int argc, char** argv)
{
    const auto outcomes = QZ::Tool::Selftest::Run([](const auto&, const auto&) {}, {argv + 1, argv + argc});
    bool isSame = true;
    for (const auto& outcome : outcomes) {
        for (const std::string& name : outcome.different)
            std::cout << outcome.target << ": " << name << " differs\n";
        std::cout << outcome.target << ": " << outcome.different.size() << " of " << outcome.lines.size()
                  << " lines differ\n";
        isSame = isSame && outcome.different.empty() && !outcome.lines.empty();
    }
    return isSame ? 0 : 1;
}
