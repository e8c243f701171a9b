#include "pairs.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double batchNanoseconds = 2e5; // another process rarely interrupts a batch this short
constexpr double rowNanoseconds = 3e9;
constexpr std::size_t fewest = 61; // repetitions
constexpr std::size_t most = 5001;

double time(const std::function<void()>& work, long repeat)
{
    const Clock::time_point start = Clock::now();
    for (long i = 0; i < repeat; ++i) {
        work();
    }
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count() /
           static_cast<double>(repeat);
}

/// Returns how many repetitions fit into a batch, and warms up the caches.
long repeatFor(const std::function<void()>& work)
{
    long repeat = 1;
    double each = time(work, repeat);
    while (each * static_cast<double>(repeat) < batchNanoseconds / 2) {
        repeat *= 2;
        each = time(work, repeat);
    }
    return std::max(1L, static_cast<long>(batchNanoseconds / each));
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void measure(const Pair& pair, std::FILE* out)
{
    const long repeatOurs = repeatFor(pair.ours);
    const long repeatOther = repeatFor(pair.other);
    std::vector<double> ours;
    std::vector<double> others;
    std::vector<double> ratios;
    std::vector<double> differences;
    const Clock::time_point end =
        Clock::now() + std::chrono::nanoseconds(static_cast<std::int64_t>(rowNanoseconds));
    while (ratios.size() < fewest || (ratios.size() < most && Clock::now() < end)) {
        const bool oursFirst = ratios.size() % 2 == 0;
        double own = oursFirst ? time(pair.ours, repeatOurs) : 0;
        const double other = time(pair.other, repeatOther);
        own = oursFirst ? own : time(pair.ours, repeatOurs);
        ours.push_back(own);
        others.push_back(other);
        ratios.push_back(own / other);
        differences.push_back(own - other);
    }
    std::fprintf(out,
                 R"({"row": "%s", "against": "%s", "limit": %g, "ours": %.1f, "other": %.1f, )"
                 R"("ratio": %.4f, "difference": %.1f, "difference_limit": %.0f, "repetitions": %zu})"
                 "\n",
                 pair.row.c_str(), pair.against.c_str(), pair.limit, median(ours), median(others),
                 median(ratios), median(differences), pair.differenceLimit, ratios.size());
    std::fflush(out);
}

} // namespace

void run(const std::vector<Pair>& pairs, std::FILE* out, const std::string& filter)
{
    for (const Pair& pair : pairs) {
        if (pair.row.find(filter) != std::string::npos) {
            measure(pair, out);
        }
    }
}

void require(bool succeeded, const char* step)
{
    if (!succeeded) {
        std::fprintf(stderr, "bench: %s failed\n", step);
        std::exit(1);
    }
}

} // namespace bench
