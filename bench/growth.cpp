// Measures, with Google Benchmark, how the cost of operations grows with the number of values in a key.
#include "settings.h"

#include <benchmark/benchmark.h>

#include <random>

namespace {

/// A key with a given number of values. The key's name is "Scale" followed by the number. The first run
/// creates the values.
class Key
{
public:
    Key(TarvoConfig& config, std::int64_t size) : m_config(config), m_size(size)
    {
        wchar_t* end = m_item;
        for (const char c : "Scale" + std::to_string(size)) {
            *end++ = static_cast<wchar_t>(c);
        }
        *end = 0;
        TarvoConfig::ValueIterator it;
        if (config.findItem(TarvoConfig::eSettings, m_item, it) != TarvoConfig::eOk) {
            for (int i = 0; i < size; ++i) {
                set(i);
            }
        }
    }

    const wchar_t* item() const { return m_item; }
    int anyNumber() { return static_cast<int>(m_random() % static_cast<std::uint64_t>(m_size)); }

    /// Returns "Scale{size}/Setting{number}".
    const wchar_t* path(int number)
    {
        wchar_t* end = m_path;
        for (const wchar_t* at = m_item; *at != 0;) {
            *end++ = *at++;
        }
        *end++ = L'/';
        const bench::SettingPath setting(number);
        for (const wchar_t* at = setting.name(); (*end++ = *at++) != 0;) {
        }
        return m_path;
    }

    /// Writes a different number each time, because the store skips writing an unchanged value.
    void set(int number)
    {
        VelaVariant value;
        value.setInt(++s_written);
        bench::require(m_config.setValue(TarvoConfig::eSettings, path(number), value) == TarvoConfig::eOk,
                       "setValue");
    }

private:
    TarvoConfig& m_config;
    std::int64_t m_size;
    std::minstd_rand m_random;
    static inline std::int32_t s_written = 0;
    wchar_t m_item[32];
    wchar_t m_path[64];
};

void read(benchmark::State& state)
{
    TarvoConfig& config = *velaConfig();
    Key key(config, state.range(0));
    VelaVariant value;
    while (state.KeepRunning()) {
        bench::require(config.getValue(TarvoConfig::eSettings, key.path(key.anyNumber()), value) ==
                           TarvoConfig::eOk,
                       "getValue");
    }
}

void write(benchmark::State& state)
{
    Key key(*velaConfig(), state.range(0));
    while (state.KeepRunning()) {
        key.set(key.anyNumber());
    }
}

/// Measures the cost per value of iterating over a key.
void enumerate(benchmark::State& state)
{
    TarvoConfig& config = *velaConfig();
    const Key key(config, state.range(0));
    VelaVariant value;
    wchar_t name[64];
    while (state.KeepRunningBatch(state.range(0))) {
        TarvoConfig::ValueIterator it;
        bench::require(config.findItem(TarvoConfig::eSettings, key.item(), it) == TarvoConfig::eOk,
                       "findItem");
        for (long length = 64; it.key(name, length) == TarvoConfig::eOk; length = 64) {
            bench::require(it.value(value) == TarvoConfig::eOk && it.step() == TarvoConfig::eOk, "walk");
        }
    }
}

/// Measures the removal of a value. Writes the value back, with the timer paused.
void remove(benchmark::State& state)
{
    TarvoConfig& config = *velaConfig();
    Key key(config, state.range(0));
    while (state.KeepRunning()) {
        const int number = key.anyNumber();
        bench::require(config.removeValue(TarvoConfig::eSettings, key.item(),
                                          bench::SettingPath(number).name()) == TarvoConfig::eOk,
                       "removeValue");
        state.PauseTiming();
        key.set(number);
        state.ResumeTiming();
    }
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
    for (const int size : {10, 1000, 100000, 1000000}) {
        benchmark->Arg(size);
    }
}

BENCHMARK(read)->Apply(sizes);
BENCHMARK(write)->Apply(sizes);
BENCHMARK(enumerate)->Apply(sizes);
BENCHMARK(remove)->Apply(sizes);

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    bench::start();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
