// SPDX-License-Identifier: MIT
#include "tests/Support/Reference.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <set>
#include <sstream>

namespace QZ::Test {

namespace {

template <class T>
std::vector<T> ReadNumbers(std::istream& line)
{
    std::string field;
    std::getline(line, field, '|');
    std::istringstream words(field);
    std::vector<T> numbers;
    for (double number = 0.0; words >> number;)
        numbers.push_back(static_cast<T>(number));
    return numbers;
}

void ExpectRow(const ReferenceRow& row, const Numbers& actual)
{
    ASSERT_EQ(actual.size(), row.expected.size()) << row.text;
    for (std::size_t i = 0; i < actual.size(); ++i) {
        // Written so that NaN fails.
        const double error = std::fabs(static_cast<double>(actual[i]) - row.expected[i]);
        EXPECT_TRUE(error <= row.bound[i]) << row.text << "\n  number " << i << " is " << actual[i]
                                           << ", not " << row.expected[i] << " +- " << row.bound[i];
    }
}

}   // namespace

std::vector<ReferenceRow> ReadReference(const std::string& family)
{
    std::ifstream file(std::string(QZ_TEST_DATA) + "/" + family + ".txt");
    std::vector<ReferenceRow> rows;
    for (std::string text; std::getline(file, text);) {
        if (text.starts_with('#'))
            continue;
        ReferenceRow row;
        row.text = text;
        std::istringstream line(text);
        line >> row.function;
        line.ignore(2, '|');
        row.flags = ReadNumbers<int>(line);
        row.in = ReadNumbers<float>(line);
        row.expected = ReadNumbers<double>(line);
        row.bound = ReadNumbers<double>(line);
        rows.push_back(row);
    }
    return rows;
}

void ExpectReference(const std::string& family, const std::map<std::string, Evaluation>& evaluations)
{
    std::set<std::string> seen;
    for (const ReferenceRow& row : ReadReference(family)) {
        const auto found = evaluations.find(row.function);
        ASSERT_NE(found, evaluations.end()) << "no evaluation of " << row.function;
        seen.insert(row.function);
        ExpectRow(row, found->second(row));
    }
    for (const auto& [function, evaluation] : evaluations)
        EXPECT_TRUE(seen.contains(function)) << "no row of " << function;
}

}   // namespace QZ::Test
