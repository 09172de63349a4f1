// SPDX-License-Identifier: MIT
#include <hwy/targets.h>

#include <atomic>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tests/Support/Floats.h"
#include "tests/proof/Expected.h"
#include "tests/proof/FunctionRows.h"

// Every float through every power with a fixed exponent and every curve of one argument, one float at a time
// and by the vectors of every instruction set of the machine, against a reference of more than 90 bits.

namespace {

using QZ::Foundation::FunctionRows;
using QZ::Proof::kChunkSize;
using QZ::Test::SameBits;

constexpr std::uint32_t kChunkCount = 1u << 21;
constexpr std::size_t kPowerCount = 12;

struct Options {
    std::size_t first = 0;
    std::size_t end = QZ::Proof::Subjects().size();
    std::uint32_t firstChunk = 0;
    std::uint32_t endChunk = kChunkCount;
    std::uint32_t stride = 1;
    unsigned threads = 1;
};

/// Single floats, and the vectors that this machine can run, but for those of one float.
const std::vector<FunctionRows>& Functions()
{
    static const auto supported = [] {
        auto functions = QZ::Foundation::AllFunctionRows();
        std::erase_if(functions, [](const FunctionRows& f) {
            return f.target == HWY_SCALAR || (f.target & hwy::SupportedTargets()) != f.target;
        });
        return functions;
    }();
    return supported;
}

const char* TargetName(const FunctionRows& functions)
{
    return functions.target == 0 ? "single floats" : hwy::TargetName(functions.target);
}

/// The trial of one subject on one thread.
class Trial {
public:
    Trial(const QZ::Proof::Subject& subject, const QZ::Proof::Expected& expected)
        : m_name(subject.name), m_expected(expected)
    {}

    void Run(std::uint32_t chunk)
    {
        for (std::uint32_t i = 0; i < kChunkSize; ++i)
            m_x[i] = std::bit_cast<float>(chunk * static_cast<std::uint32_t>(kChunkSize) + i);
        m_expected.Fill(m_x.data(), m_nearest.data(), tally);
        for (const FunctionRows& functions : Functions()) {
            functions.rows.at(m_name)(m_x.data(), kChunkSize, m_results.data());
            Compare(TargetName(functions));
        }
        tally.floats += kChunkSize;
    }

    QZ::Proof::Tally tally;

private:
    void Compare(const char* target)
    {
        if (std::memcmp(m_results.data(), m_nearest.data(), kChunkSize * sizeof(float)) == 0)
            return;   // as nearly always; one NaN may differ from another
        for (std::size_t i = 0; i < kChunkSize; ++i)
            if (!SameBits(m_results[i], m_nearest[i]) && ++tally.wrong <= 10)
                std::printf("wrong on %s: %s of %a is %a, not %a\n", target, m_name.c_str(),
                            static_cast<double>(m_x[i]), static_cast<double>(m_nearest[i]),
                            static_cast<double>(m_results[i]));
    }

    const std::string& m_name;
    const QZ::Proof::Expected& m_expected;
    std::vector<float> m_x = std::vector<float>(kChunkSize);
    std::vector<float> m_results = std::vector<float>(kChunkSize);
    std::vector<float> m_nearest = std::vector<float>(kChunkSize);
};

QZ::Proof::Tally TryAll(const QZ::Proof::Subject& subject, const Options& options)
{
    const QZ::Proof::Expected expected(subject);
    std::atomic<std::uint64_t> next = options.firstChunk;
    std::mutex mutex;
    QZ::Proof::Tally total;
    const auto work = [&] {
        Trial trial(subject, expected);
        for (std::uint64_t chunk = next.fetch_add(options.stride); chunk < options.endChunk;
             chunk = next.fetch_add(options.stride))
            trial.Run(static_cast<std::uint32_t>(chunk));
        const std::lock_guard lock(mutex);
        total.Add(trial.tally);
    };
    std::vector<std::thread> threads;
    for (unsigned i = 1; i < options.threads; ++i)
        threads.emplace_back(work);
    work();
    for (std::thread& thread : threads)
        thread.join();
    return total;
}

[[noreturn]] void ShowHelp()
{
    std::puts(
        "PowerProof [--only N | --first N | --powers] [--from BITS] [--to BITS] [--every N] [--threads N]\n"
        "Compares every power with a fixed exponent, and every curve built on them, on every float, with\n"
        "the one right result. The powers are numbers 0 to 11, in the order of Exponent.h; these follow:");
    const auto& subjects = QZ::Proof::Subjects();
    for (std::size_t i = kPowerCount; i < subjects.size(); ++i)
        std::printf("  %2zu  %s\n", i, subjects[i].name.c_str());
    std::puts(
        "  --only N       number N alone\n"
        "  --first N      number N and what follows\n"
        "  --powers       numbers 0 to 11\n"
        "  --from, --to   only floats whose bits (hexadecimal) lie from the one to before the other\n"
        "  --every N      a sample: only every Nth chunk of 2048 floats\n"
        "  --threads N    one unless told");
    std::exit(2);
}

Options Parse(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        if (name == "--powers") {
            options.end = kPowerCount;
            continue;
        }
        if (i + 1 == argc)
            ShowHelp();
        const char* value = argv[++i];
        if (name == "--only" || name == "--first")
            options.first = std::strtoull(value, nullptr, 10);
        else if (name == "--from")
            options.firstChunk = static_cast<std::uint32_t>(std::strtoull(value, nullptr, 16) / kChunkSize);
        else if (name == "--to")
            options.endChunk = static_cast<std::uint32_t>(std::strtoull(value, nullptr, 16) / kChunkSize);
        else if (name == "--every")
            options.stride = static_cast<std::uint32_t>(std::strtoul(value, nullptr, 10));
        else if (name == "--threads")
            options.threads = static_cast<unsigned>(std::atoi(value));
        else
            ShowHelp();
        if (name == "--only")
            options.end = options.first + 1;
    }
    if (options.stride == 0 || options.first >= options.end || options.end > QZ::Proof::Subjects().size())
        ShowHelp();
    return options;
}

}   // namespace

int main(int argc, char** argv)
{
    const Options options = Parse(argc, argv);
    std::string targets;
    for (const FunctionRows& functions : Functions())
        targets += (targets.empty() ? "" : ", ") + std::string(TargetName(functions));
    std::printf("on %s\n%-36s %10s %9s %5s  %s\n", targets.c_str(), "", "floats", "by MPFR", "wrong",
                "closest to a midpoint, seconds");
    std::uint64_t wrong = 0;
    for (std::size_t i = options.first; i < options.end; ++i) {
        const QZ::Proof::Subject& subject = QZ::Proof::Subjects()[i];
        const auto start = std::chrono::steady_clock::now();
        const QZ::Proof::Tally tally = TryAll(subject, options);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        std::printf("%-36s %10llu %9llu %5llu  2^%.1f at %a, %.0f\n", subject.name.c_str(),
                    static_cast<unsigned long long>(tally.floats),
                    static_cast<unsigned long long>(tally.hard), static_cast<unsigned long long>(tally.wrong),
                    std::log2(tally.closest), static_cast<double>(tally.closestX), seconds.count());
        std::fflush(stdout);
        wrong += tally.wrong;
    }
    std::printf("%llu wrong\n", static_cast<unsigned long long>(wrong));
    return wrong == 0 ? 0 : 1;
}
