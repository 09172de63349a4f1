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
#include "tests/proof/PowerReference.h"
#include "tests/proof/PowerRows.h"

// Every float through every power with a fixed exponent, one float at a time and by the vectors of every
// instruction set of the machine, against a reference of more than 100 bits.

namespace {

using QZ::Foundation::Exponent;
using QZ::Proof::kChunkCount;
using QZ::Proof::kChunkSize;
using QZ::Test::SameBits;

struct Options {
    int firstExponent = 0;
    int lastExponent = static_cast<int>(Exponent::k3);
    std::uint32_t firstChunk = 0;
    std::uint32_t endChunk = kChunkCount;
    std::uint32_t stride = 1;
    unsigned threads = 1;
};

/// The vectors that this machine can run, but for those of one float.
const std::vector<QZ::Foundation::PowersOfLanes>& Lanes()
{
    static const auto supported = [] {
        auto lanes = QZ::Foundation::AllPowersOfLanes();
        std::erase_if(lanes, [](const auto& l) {
            return l.target == HWY_SCALAR || (l.target & hwy::SupportedTargets()) == 0;
        });
        return lanes;
    }();
    return supported;
}

struct Tally {
    std::uint64_t floats = 0;
    std::uint64_t hard = 0;
    std::uint64_t wrong = 0;
    double closest = HUGE_VAL;
    float closestX = 0.0f;

    void Add(const Tally& other)
    {
        floats += other.floats;
        hard += other.hard;
        wrong += other.wrong;
        if (other.closest < closest) {
            closest = other.closest;
            closestX = other.closestX;
        }
    }
};

/// The proof of one exponent on one thread.
class Prover {
public:
    Prover(Exponent exponent, const QZ::Proof::PowerReference& reference)
        : m_exponent(exponent), m_reference(reference)
    {}

    void Prove(std::uint32_t chunk)
    {
        for (std::uint32_t i = 0; i < kChunkSize; ++i)
            m_x[i] = std::bit_cast<float>(chunk * static_cast<std::uint32_t>(kChunkSize) + i);
        FillNearest(chunk);
        QZ::Foundation::PowersOfSingles(m_exponent, m_x.data(), kChunkSize, m_powers.data());
        Compare("single floats");
        for (const auto& lanes : Lanes()) {
            lanes.row(m_exponent, m_x.data(), kChunkSize, m_powers.data());
            Compare(hwy::TargetName(lanes.target));
        }
        tally.floats += kChunkSize;
    }

    Tally tally;

private:
    void FillNearest(std::uint32_t chunk)
    {
        const std::uint32_t exponentBits = (chunk >> 12) & 0xff;
        const bool isPositive = chunk < kChunkCount / 2;
        if (m_exponent == Exponent::k3) {
            FillCubes();
        } else if (isPositive && exponentBits != 0 && exponentBits != 255) {
            m_reference.Chunk(chunk, m_nearest.data(), m_isHard.data());
            for (std::size_t i = 0; i < kChunkSize; ++i)
                if (m_isHard[i] != 0)
                    m_nearest[i] = Hard(m_x[i]);
        } else if (isPositive && exponentBits == 0) {
            for (std::size_t i = 0; i < kChunkSize; ++i)
                m_nearest[i] = Hard(m_x[i]);
        } else {
            FillSpecial();
        }
    }

    float Hard(float x)
    {
        double distance = 0.0;
        const float nearest = m_reference.Nearest(x, distance);
        ++tally.hard;
        if (std::isnormal(nearest) && distance < tally.closest) {
            tally.closest = distance;
            tally.closestX = x;
        }
        return nearest;
    }

    /// Negative numbers have no power; infinities and NaN stay, a zero loses its sign.
    void FillSpecial()
    {
        for (std::size_t i = 0; i < kChunkSize; ++i) {
            const bool isNegativeNumber = m_x[i] < 0.0f && std::isfinite(m_x[i]);
            m_nearest[i] = isNegativeNumber ? QZ::Test::kNaN : std::fabs(m_x[i]);
        }
    }

    /// Exactly, in integers: x = m 2^k, and m^3 has 72 bits.
    void FillCubes()
    {
        for (std::size_t i = 0; i < kChunkSize; ++i) {
            const float x = m_x[i];
            if (!std::isfinite(x) || x == 0.0f) {
                m_nearest[i] = x;
                continue;
            }
            int k = 0;
            const auto m = static_cast<std::uint64_t>(std::ldexp(std::frexp(std::fabs(x), &k), 24));
            const std::uint64_t square = m * m;
            const std::uint64_t low = (square & 0xffffffu) * m;
            const std::uint64_t high = (square >> 24) * m + (low >> 24);   // m^3 = high 2^24 + rest
            const std::uint64_t sticky = (low & 0xffffffu) != 0 ? 1 : 0;
            // high has 46 to 48 bits: with a last bit that tells of the rest, one rounding to float is right.
            const double odd = static_cast<double>(2 * high + sticky);
            m_nearest[i] = std::copysign(static_cast<float>(std::ldexp(odd, 3 * (k - 24) + 23)), x);
        }
    }

    void Compare(const char* what)
    {
        if (std::memcmp(m_powers.data(), m_nearest.data(), kChunkSize * sizeof(float)) == 0)
            return;   // as nearly always; one NaN may differ from another
        for (std::size_t i = 0; i < kChunkSize; ++i)
            if (!SameBits(m_powers[i], m_nearest[i]) && ++tally.wrong <= 10)
                std::printf("wrong on %s: %a ^ %.9g is %a, not %a\n", what, static_cast<double>(m_x[i]),
                            static_cast<double>(Value(m_exponent)), static_cast<double>(m_nearest[i]),
                            static_cast<double>(m_powers[i]));
    }

    Exponent m_exponent;
    const QZ::Proof::PowerReference& m_reference;
    std::vector<float> m_x = std::vector<float>(kChunkSize);
    std::vector<float> m_powers = std::vector<float>(kChunkSize);
    std::vector<float> m_nearest = std::vector<float>(kChunkSize);
    std::vector<unsigned char> m_isHard = std::vector<unsigned char>(kChunkSize);
};

Tally ProveExponent(Exponent exponent, const Options& options)
{
    const QZ::Proof::PowerReference reference(exponent);
    std::atomic<std::uint64_t> next = options.firstChunk;
    std::mutex mutex;
    Tally total;
    const auto work = [&] {
        Prover prover(exponent, reference);
        for (std::uint64_t chunk = next.fetch_add(options.stride); chunk < options.endChunk;
             chunk = next.fetch_add(options.stride))
            prover.Prove(static_cast<std::uint32_t>(chunk));
        const std::lock_guard lock(mutex);
        total.Add(prover.tally);
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
        "PowerProof [--exponent N] [--from BITS] [--to BITS] [--sample] [--threads N]\n"
        "Compares every power with a fixed exponent, on every float, with the nearest float.\n"
        "  --exponent N   only number N of Exponent.h, from 0\n"
        "  --from, --to   only floats whose bits (hexadecimal) lie from the one to before the other\n"
        "  --sample       2^26 floats an exponent, by chunks of 2048, in place of all 2^32\n"
        "  --threads N    one unless told");
    std::exit(2);
}

Options Parse(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        if (name == "--sample") {
            options.stride = 61;
            continue;
        }
        if (i + 1 == argc)
            ShowHelp();
        const char* value = argv[++i];
        if (name == "--exponent")
            options.firstExponent = options.lastExponent = std::atoi(value);
        else if (name == "--from")
            options.firstChunk = static_cast<std::uint32_t>(std::strtoull(value, nullptr, 16) / kChunkSize);
        else if (name == "--to")
            options.endChunk = static_cast<std::uint32_t>(std::strtoull(value, nullptr, 16) / kChunkSize);
        else if (name == "--threads")
            options.threads = static_cast<unsigned>(std::atoi(value));
        else
            ShowHelp();
    }
    if (options.firstExponent < 0 || options.lastExponent > static_cast<int>(Exponent::k3))
        ShowHelp();
    return options;
}

}   // namespace

int main(int argc, char** argv)
{
    const Options options = Parse(argc, argv);
    std::string targets = "single floats";
    for (const auto& lanes : Lanes())
        targets += std::string(", ") + hwy::TargetName(lanes.target);
    std::printf("on %s\n%-11s %12s %10s %6s %s\n", targets.c_str(), "exponent", "floats", "by MPFR", "wrong",
                "closest to a midpoint, seconds");
    std::uint64_t wrong = 0;
    for (int e = options.firstExponent; e <= options.lastExponent; ++e) {
        const auto start = std::chrono::steady_clock::now();
        const Tally tally = ProveExponent(static_cast<Exponent>(e), options);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        std::printf("%-11.9g %12llu %10llu %6llu 2^%.1f at %a, %.0f\n",
                    static_cast<double>(Value(static_cast<Exponent>(e))),
                    static_cast<unsigned long long>(tally.floats),
                    static_cast<unsigned long long>(tally.hard), static_cast<unsigned long long>(tally.wrong),
                    std::log2(tally.closest), static_cast<double>(tally.closestX), seconds.count());
        std::fflush(stdout);
        wrong += tally.wrong;
    }
    std::printf("%llu wrong\n", static_cast<unsigned long long>(wrong));
    return wrong == 0 ? 0 : 1;
}
