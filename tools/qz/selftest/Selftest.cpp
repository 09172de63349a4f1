// SPDX-License-Identifier: MIT
#include "tools/qz/selftest/Selftest.h"

#include <hwy/highway.h>
#include <algorithm>
#include <iterator>
#include <map>
#include <sstream>

#include "tools/qz/selftest/Cases.h"

namespace QZ::Tool::Selftest {

namespace {

/// While it lives, the library takes one instruction set, whatever better one there is.
class ForcedTarget {
public:
    explicit ForcedTarget(std::int64_t target) { hwy::SetSupportedTargetsForTest(target); }
    ~ForcedTarget() { hwy::SetSupportedTargetsForTest(0); }
    ForcedTarget(const ForcedTarget&) = delete;
    ForcedTarget& operator=(const ForcedTarget&) = delete;
};

std::vector<Case> Joined(std::vector<Case> cases, const std::vector<Case>& more)
{
    cases.insert(cases.end(), more.begin(), more.end());
    return cases;
}

/// Those whose names have one of the words in them; all of them when there are no words.
std::vector<Case> Chosen(std::vector<Case> cases, const std::vector<std::string>& words)
{
    std::erase_if(cases, [&](const Case& c) {
        return !words.empty() && std::none_of(words.begin(), words.end(), [&](const std::string& word) {
            return c.name.find(word) != std::string::npos;
        });
    });
    return cases;
}

std::map<std::string, std::string> ExpectedByName()
{
    std::map<std::string, std::string> expected;
    std::istringstream text{std::string(expectedText)};
    std::string digest, name;
    while (text >> digest >> std::ws && std::getline(text, name))
        expected[name] = digest;
    return expected;
}

void Compare(Outcome& outcome)
{
    static const auto expected = ExpectedByName();
    for (const Line& line : outcome.lines) {
        const auto found = expected.find(line.name);
        if (found == expected.end() || found->second != line.digest)
            outcome.different.push_back(line.name);
    }
}

Outcome RunCases(const std::string& target, const std::vector<Case>& cases, const Progress& progress)
{
    Outcome outcome{target, {}, {}};
    for (const Case& c : cases) {
        progress(target, c.name);
        Digest digest;
        c.run(digest);
        outcome.lines.push_back({c.name, digest.Finish()});
    }
    return outcome;
}

}   // namespace

std::vector<Outcome> Run(const Progress& progress, const std::vector<std::string>& words)
{
    // One colour at a time takes the same path whatever the machine has.
    std::vector<Outcome> outcomes = {RunCases("single colours", Chosen(SingleCases(), words), progress)};
    const std::vector<Case> cases = Chosen(Joined(RowCases(), AnalysisCases()), words);
    for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
        const ForcedTarget forced(target);
        outcomes.push_back(RunCases(hwy::TargetName(target), cases, progress));
    }
    for (Outcome& outcome : outcomes)
        Compare(outcome);
    return outcomes;
}

std::string AsText(const std::vector<Line>& lines)
{
    std::string text;
    for (const Line& line : lines)
        text += line.digest + "  " + line.name + "\n";
    return text;
}

}   // namespace QZ::Tool::Selftest
