// Pairs of works measured side by side. Google Benchmark, which growth.cpp uses, interleaves whole
// repetitions and is not packaged for MinGW; here the two works of a pair alternate several thousand times a
// second, so that what else the machine does falls on both, and what counts is the median of the ratios of
// neighbours.
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
    double limit = 0; // of ours / other, as far as the row has one
    std::function<void()> ours;
    std::function<void()> other;
    double differenceLimit = 0; // of ours - other, in nanoseconds
};

/// Measures each pair and writes one JSON object per line. Times are in nanoseconds; ours, other, ratio and
/// difference are medians of their own.
void run(const std::vector<Pair>& pairs, std::FILE* out, const std::string& only);

/// Keeps a result alive.
template <typename Value>
void use(const Value& value)
{
    asm volatile("" : : "r,m"(value) : "memory");
}

/// Ends the program when a step of a measurement fails.
void require(bool succeeded, const char* step);

} // namespace bench
