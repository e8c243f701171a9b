// Compares two functions by alternating between them several thousand times a second, so that other load on
// the machine affects both. The result is the median of the ratios of neighbouring runs. Google Benchmark,
// which growth.cpp uses, cannot alternate as quickly and is not packaged for MinGW.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Pair
{
    std::string row;
    std::string against;
    double limit = 0; // upper limit of the ratio ours / other; 0 means no limit
    std::function<void()> ours;
    std::function<void()> other;
    double differenceLimit = 0; // upper limit of `ours - other`, in nanoseconds; 0 means no limit
};

/// Measures the pairs whose row contains the string `filter`, and writes one JSON object per line. Times are
/// in nanoseconds. The fields "ours", "other", "ratio" and "difference" are medians.
void run(const std::vector<Pair>& pairs, std::FILE* out, const std::string& filter);

/// Keeps the compiler from removing an unused result.
template <typename Value>
void use(const Value& value)
{
    asm volatile("" : : "r,m"(value) : "memory");
}

/// Exits with code 1 if a step of a measurement has failed.
void require(bool succeeded, const char* step);

} // namespace bench
