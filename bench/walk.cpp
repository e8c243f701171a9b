// What one step of a walk costs in a key of 10,000 sub-keys, over what it costs in one of 100: the two are
// measured in turn, and the median of each taken.
#include <RkUInfo.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int repetitions = 9;

/// The name of the n-th sub-key of a folder, with it; four digits.
void itemPath(wchar_t (&path)[16], wchar_t folder, int n)
{
    wchar_t* at = path;
    *at++ = folder;
    *at++ = L'/';
    for (int power = 1000; power > 0; power /= 10) {
        *at++ = static_cast<wchar_t>(L'0' + n / power % 10);
    }
    *at = 0;
}

bool makeItems(wchar_t folder, int count)
{
    for (int n = 0; n < count; ++n) {
        wchar_t path[16];
        itemPath(path, folder, n);
        if (velaConfig()->addItem(TarvoConfig::eSettings, path) != TarvoConfig::eOk) {
            return false;
        }
    }
    return true;
}

/// Nanoseconds per sub-key of whole walks over about as many sub-keys in all; below 0 when one fell short.
double walk(wchar_t folder, int count)
{
    constexpr int steps = 10000;
    const wchar_t item[] = {folder, 0};
    const Clock::time_point start = Clock::now();
    for (int round = 0; round < steps / count; ++round) {
        TarvoConfig::ItemIterator items;
        velaConfig()->findItem(TarvoConfig::eSettings, item, items);
        int seen = 0;
        wchar_t name[256];
        for (long length = 256; items.name(name, length) == TarvoConfig::eOk; length = 256) {
            ++seen;
            items.step();
        }
        if (seen != count) {
            return -1;
        }
    }
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count() / steps;
}

} // namespace

int main()
{
    if (InitVelaConfig(L"Bench", L"Walk", L"en-US", nullptr) != TarvoConfig::eOk || !makeItems(L'S', 100) ||
        !makeItems(L'L', 10000)) {
        std::puts("the keys cannot be made");
        return 1;
    }
    std::array<double, repetitions> small{};
    std::array<double, repetitions> large{};
    for (int i = 0; i < repetitions; ++i) {
        small[static_cast<std::size_t>(i)] = walk(L'S', 100);
        large[static_cast<std::size_t>(i)] = walk(L'L', 10000);
    }
    std::sort(small.begin(), small.end());
    std::sort(large.begin(), large.end());
    if (small.front() < 0 || large.front() < 0) {
        std::puts("a walk missed a sub-key");
        return 1;
    }
    const double ofSmall = small[repetitions / 2];
    const double ofLarge = large[repetitions / 2];
    std::printf("walk, per sub-key: %.0f ns of 100, %.0f ns of 10,000, ratio %.2f\n", ofSmall, ofLarge,
                ofLarge / ofSmall);
    return 0;
}
