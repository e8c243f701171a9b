// What reads and walks cost in a store of any size, as one process sees it: ./dev bench scale runs it in turn
// on a store of 1,000,000 values in 100,000 keys and on one of 1,000 in 100. And values of 1 MB.
#include "memory.h"
#include "settings.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <random>
#include <string>

namespace {

using bench::require;

constexpr int valuesPerKey = 10;

/// "Large100000/Key012345/Value7", of a tree with as many keys as its name says.
class Path
{
public:
    explicit Path(int keys) : m_random(1), m_keys(keys)
    {
        writeNumber(m_text + keysAt, keys);
        set(0, 0);
    }

    const wchar_t* set(int key, int value)
    {
        writeNumber(m_text + keyAt, key);
        m_text[valueAt] = static_cast<wchar_t>(L'0' + value);
        return m_text;
    }

    const wchar_t* any()
    {
        const auto number = static_cast<int>(m_random() % static_cast<unsigned>(m_keys * valuesPerKey));
        return set(number / valuesPerKey, number % valuesPerKey);
    }

    /// "Large100000"
    const wchar_t* tree()
    {
        m_text[keysAt + digits] = 0;
        return m_text;
    }

private:
    static constexpr int digits = 6;
    static constexpr int keysAt = 5;
    static constexpr int keyAt = keysAt + digits + 4;
    static constexpr int valueAt = keyAt + digits + 6;

    static void writeNumber(wchar_t* text, int number)
    {
        for (int digit = digits; digit-- > 0; number /= 10) {
            text[digit] = static_cast<wchar_t>(L'0' + number % 10);
        }
    }

    std::minstd_rand m_random;
    int m_keys;
    wchar_t m_text[valueAt + 2] = L"Large000000/Key000000/Value0";
};

void fill(TarvoConfig& config, int keys)
{
    Path path(keys);
    VelaVariant value;
    for (int key = 0; key < keys; ++key) {
        for (int i = 0; i < valuesPerKey; ++i) {
            value.setInt(key * valuesPerKey + i);
            require(config.setValue(TarvoConfig::eSettings, path.set(key, i), value) == TarvoConfig::eOk,
                    "setValue");
        }
    }
}

/// Nanoseconds of processor time, which is all that these works take.
double processorTime()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

/// What one of as many steps as work makes costs: the median of some runs.
double cost(int steps, const std::function<void()>& work)
{
    std::array<double, 9> times{};
    for (double& each : times) {
        const double start = processorTime();
        work();
        each = (processorTime() - start) / steps;
    }
    std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
    return times[times.size() / 2];
}

constexpr int readSteps = 10000;

/// One setting after the other, from any on.
void readInTurn(TarvoConfig& config, int keys)
{
    Path path(keys);
    VelaVariant value;
    static int next = 0;
    for (int i = 0; i < readSteps; ++i, next = (next + 1) % (keys * valuesPerKey)) {
        require(config.getValue(TarvoConfig::eSettings, path.set(next / valuesPerKey, next % valuesPerKey),
                                value) == TarvoConfig::eOk,
                "getValue");
    }
}

void readAll(TarvoConfig& config, int keys)
{
    for (int i = 0; i < keys * valuesPerKey; i += readSteps) {
        readInTurn(config, keys);
    }
}

void readAny(TarvoConfig& config, int keys)
{
    static Path path(keys);
    VelaVariant value;
    for (int i = 0; i < readSteps; ++i) {
        require(config.getValue(TarvoConfig::eSettings, path.any(), value) == TarvoConfig::eOk, "getValue");
    }
}

/// Whole walks over the sub-keys, in all as many steps as are asked for.
void walk(TarvoConfig& config, int keys, int steps)
{
    Path path(keys);
    const wchar_t* const tree = path.tree();
    for (int round = 0; round < steps / keys; ++round) {
        TarvoConfig::ItemIterator items;
        require(config.findItem(TarvoConfig::eSettings, tree, items) == TarvoConfig::eOk, "findItem");
        int seen = 0;
        wchar_t name[32];
        for (long length = 32; items.name(name, length) == TarvoConfig::eOk; length = 32, ++seen) {
            items.step();
        }
        require(seen == keys, "walk");
    }
}

constexpr wchar_t bigPath[] = L"Big/Value";
constexpr wchar_t bigName[] = L"Value";
constexpr wchar_t bigKey[] = L"Software\\Acme\\Widget\\2018\\en-US\\Settings\\Big";

/// 1 MB of another content each time.
const std::vector<BYTE>& bigData()
{
    static std::vector<BYTE> data(std::size_t{1} << 20);
    ++data[data.size() / 2];
    return data;
}

bench::Pair readingBig(TarvoConfig& config)
{
    return {"getValue of 1 MB", "open, query, query, close", 0,
            [&config, value = VelaVariant()]() mutable {
                require(config.getValue(TarvoConfig::eSettings, bigPath, value) == TarvoConfig::eOk,
                        "getValue");
            },
            [data = bigData()]() mutable {
                HKEY key = bench::openKey(bigKey, KEY_READ);
                DWORD size = 0;
                RegQueryValueExW(key, bigName, nullptr, nullptr, nullptr, &size);
                require(RegQueryValueExW(key, bigName, nullptr, nullptr, data.data(), &size) == ERROR_SUCCESS,
                        "RegQueryValueExW");
                RegCloseKey(key);
            }};
}

void writeBig(TarvoConfig& config)
{
    const std::vector<BYTE>& data = bigData();
    const auto size = static_cast<std::int32_t>(data.size());
    VelaVariant value;
    value.setBinary(data.data(), size);
    require(config.setValue(TarvoConfig::eSettings, bigPath, value) == TarvoConfig::eOk, "setValue");
}

bench::Pair writingBig(TarvoConfig& config)
{
    return {"setValue of 1 MB", "open, set, close", 0, [&config] { writeBig(config); },
            [] {
                HKEY key = bench::openKey(bigKey, KEY_WRITE);
                const std::vector<BYTE>& data = bigData();
                require(RegSetValueExW(key, bigName, 0, REG_BINARY, data.data(),
                                       static_cast<DWORD>(data.size())) == ERROR_SUCCESS,
                        "RegSetValueExW");
                RegCloseKey(key);
            }};
}

void checkBig(TarvoConfig& config)
{
    writeBig(config);
    VelaVariant value;
    const std::vector<BYTE> other(std::size_t{1} << 20);
    require(config.getValue(TarvoConfig::eSettings, bigPath, value) == TarvoConfig::eOk &&
                value.blockSize() == static_cast<std::int32_t>(other.size() + sizeof(std::int32_t)) &&
                std::memcmp(value.getBinary(), other.data(), other.size() / 2) == 0,
            "reading what was written");
}

} // namespace

/// "fill KEYS" makes the tree, "measure KEYS" prints a line of nanoseconds: of a read in turn, of any read,
/// of a walk's step. "memory KEYS" reads all of the tree and tells what that took. "big FILE" measures values
/// of 1 MB.
int main(int argc, char** argv) // NOLINT(bugprone-exception-escape): the end of a measurement
{
    require(argc > 2, "reading the arguments");
    const std::string task = argv[1];
    TarvoConfig& config = bench::start();
    if (task == "big") {
        checkBig(config);
        std::FILE* const out = std::fopen(argv[2], "w");
        require(out != nullptr, "opening the file of results");
        bench::run({readingBig(config), writingBig(config)}, out, "");
        std::fclose(out);
        return 0;
    }
    const int keys = std::atoi(argv[2]);
    const int walkSteps = std::max(keys, readSteps);
    if (task == "fill") {
        fill(config, keys);
    } else if (task == "measure") {
        readAll(config, keys); // the system gives the process the store's pages as it first touches them
        const double inTurn = cost(readSteps, [&] { readInTurn(config, keys); });
        const double any = cost(readSteps, [&] { readAny(config, keys); });
        std::printf("%.1f %.1f %.1f\n", inTurn, any, cost(walkSteps, [&] { walk(config, keys, walkSteps); }));
    } else {
        readAll(config, keys);
        walk(config, keys, walkSteps);
        bench::printMemory();
    }
    return 0;
}
