// Measures reads and walks in stores of different sizes, and reads and writes of 1 MB values. ./dev bench
// scale alternates between a store of 1,000,000 values in 100,000 keys and one of 1,000 values in 100 keys.
#include "memory.h"
#include "settings.h"

#include <sqlite3.h>
#include <winhost/changes.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <random>
#include <string>

namespace {

using bench::require;

constexpr int valuesPerKey = 10;

/// A value path such as "Large100000/Key012345/Value7". The tree "Large100000" has 100,000 keys.
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

/// Returns the processor time of this process in nanoseconds.
double processorTime()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

/// Calls work() several times and returns the median time per step. Each call performs the given number of
/// steps.
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

/// Reads settings one after the other, continuing where the last call stopped.
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

/// Walks over the sub-keys several times, and returns the median processor time per step. A write before each
/// walk invalidates the cache.
double walkCost(TarvoConfig& config, int keys)
{
    Path path(keys);
    const wchar_t* const tree = path.tree();
    std::array<double, 101> times{};
    const std::size_t rounds = keys > readSteps ? 3 : times.size();
    VelaVariant value;
    for (std::size_t round = 0; round < rounds; ++round) {
        value.setInt(static_cast<std::int32_t>(round));
        require(config.setValue(TarvoConfig::eSettings, L"Walk/Round", value) == TarvoConfig::eOk,
                "setValue");
        const double start = processorTime();
        TarvoConfig::ItemIterator items;
        require(config.findItem(TarvoConfig::eSettings, tree, items) == TarvoConfig::eOk, "findItem");
        int seen = 0;
        wchar_t name[32];
        for (long length = 32; items.name(name, length) == TarvoConfig::eOk; length = 32, ++seen) {
            items.step();
        }
        times[round] = (processorTime() - start) / keys;
        require(seen == keys, "walk");
    }
    std::nth_element(times.begin(), times.begin() + rounds / 2, times.begin() + rounds);
    return times[rounds / 2];
}

/// Reads settings directly from the store's file, with two prepared statements per setting.
class Selects
{
public:
    explicit Selects(int keys) : m_keys(keys)
    {
        const std::string file = std::string(std::getenv("XDG_DATA_HOME")) + "/winhost/registry.db";
        require(sqlite3_open_v2(file.c_str(), &m_database, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK,
                "sqlite3_open");
        sqlite3_stmt* tree = nullptr;
        prepare("SELECT id FROM keys WHERE folded = ?1", tree);
        bind(tree, 1, "large" + number(keys));
        require(sqlite3_step(tree) == SQLITE_ROW, "finding the tree");
        m_tree = sqlite3_column_int64(tree, 0);
        sqlite3_finalize(tree);
        prepare("SELECT id, name, sum FROM keys WHERE parent = ?1 AND folded = ?2", m_key);
        prepare("SELECT name, type, data, sum FROM vals WHERE key = ?1 AND folded = ?2", m_value);
    }
    Selects(const Selects&) = delete;
    Selects& operator=(const Selects&) = delete;
    ~Selects()
    {
        sqlite3_finalize(m_key);
        sqlite3_finalize(m_value);
        sqlite3_close(m_database);
    }

    void readAny()
    {
        for (int i = 0; i < readSteps; ++i) {
            const auto any = static_cast<int>(m_random() % static_cast<unsigned>(m_keys * valuesPerKey));
            sqlite3_bind_int64(m_key, 1, m_tree);
            bind(m_key, 2, "key" + number(any / valuesPerKey));
            require(sqlite3_step(m_key) == SQLITE_ROW, "selecting a key");
            sqlite3_bind_int64(m_value, 1, sqlite3_column_int64(m_key, 0));
            sqlite3_reset(m_key);
            bind(m_value, 2, "value" + std::to_string(any % valuesPerKey));
            require(sqlite3_step(m_value) == SQLITE_ROW, "selecting a value");
            bench::use(sqlite3_column_blob(m_value, 2));
            sqlite3_reset(m_value);
        }
    }

private:
    static std::string number(int number)
    {
        const std::string digits = std::to_string(number);
        return std::string(6 - digits.size(), '0') + digits;
    }

    void prepare(const char* sql, sqlite3_stmt*& statement)
    {
        require(sqlite3_prepare_v2(m_database, sql, -1, &statement, nullptr) == SQLITE_OK, sql);
    }

    static void bind(sqlite3_stmt* statement, int index, const std::string& name)
    {
        std::string folded;
        for (const char each : name) {
            folded += {0, each};
        }
        sqlite3_bind_blob(statement, index, folded.data(), static_cast<int>(folded.size()), SQLITE_TRANSIENT);
    }

    std::minstd_rand m_random{1};
    int m_keys;
    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_key = nullptr;
    sqlite3_stmt* m_value = nullptr;
    sqlite3_int64 m_tree = 0;
};

/// Prints the times of operations on 10,000 keys and values, in milliseconds.
void bulk(TarvoConfig& config)
{
    constexpr int keys = 1000; // each key has ten values
    const auto timed = [](const char* what, const std::function<void()>& work) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
        std::printf("milliseconds to %s: %.0f\n", what, taken.count());
    };
    timed("write 10,000 values into 1,000 keys, one by one", [&] { fill(config, keys); });
    timed("write 10,000 values into 1,000 keys in one transaction", [&] {
        require(winhostBeginRegistryChanges() == ERROR_SUCCESS, "winhostBeginRegistryChanges");
        fill(config, keys + 1);
        require(winhostEndRegistryChanges(TRUE) == ERROR_SUCCESS, "winhostEndRegistryChanges");
    });
    winhostBeginRegistryChanges();
    fill(config, 10 * keys);
    winhostEndRegistryChanges(TRUE);
    timed("remove a tree of 10,000 keys and 100,000 values", [&] {
        Path path(10 * keys);
        require(config.removeItem(TarvoConfig::eSettings, path.tree()) == TarvoConfig::eOk, "removeItem");
    });
}

constexpr wchar_t bigPath[] = L"Big/Value";
constexpr wchar_t bigName[] = L"Value";
constexpr wchar_t bigKey[] = L"Software\\Acme\\Widget\\2018\\en-US\\Settings\\Big";

/// Returns 1 MB of data, which differs on each call.
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

/// "fill KEYS" creates the tree. "measure KEYS" prints four durations in nanoseconds: reading one value
/// in sequential order, reading one value in random order, one step of a walk, and reading one value with two
/// SQL SELECT statements. "bulk 0" prints how long bulk changes take. "memory KEYS" reads the whole tree and
/// prints the memory used. "big FILE" measures reads and writes of 1 MB values.
int main(int argc, char** argv) // NOLINT(bugprone-exception-escape): it then terminates
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
    if (task == "bulk") {
        bulk(config);
    } else if (task == "fill") {
        fill(config, keys);
    } else if (task == "measure") {
        readAll(config, keys); // maps the pages of the store into the process first
        const double inTurn = cost(readSteps, [&] { readInTurn(config, keys); });
        const double any = cost(readSteps, [&] { readAny(config, keys); });
        Selects selects(keys);
        const double twoSelects = cost(readSteps, [&] { selects.readAny(); });
        std::printf("%.1f %.1f %.1f %.1f\n", inTurn, any, walkCost(config, keys), twoSelects);
    } else {
        readAll(config, keys);
        walkCost(config, keys);
        bench::printMemory();
    }
    return 0;
}
