// The store under killed writers and under many at once. RKUINFO_STRESS in the environment asks for the full
// amounts.
#include "process.h"

#include <atomic>
#include <barrier>
#include <chrono>
#include <csignal>
#include <cstring>
#include <iostream>
#include <random>
#include <thread>
#include <unistd.h>

namespace {

using namespace testing_support;
using Clock = std::chrono::steady_clock;

constexpr auto settings = TarvoConfig::eSettings;
constexpr std::uint64_t slots = 8;

// ---- Values that tell whether they are whole ----------------------------------------------------

/// A number and filling, behind their hash.
VelaVariant sealed(std::uint64_t number, std::size_t filling)
{
    const std::string text = std::to_string(number) + ' ' + std::string(filling, 'x');
    const std::string whole = std::to_string(std::hash<std::string>()(text)) + ' ' + text;
    VelaVariant value;
    value.setBinary(whole.data(), static_cast<std::int32_t>(whole.size()));
    return value;
}

/// The number in a whole value.
std::optional<std::uint64_t> numberIn(const VelaVariant& value)
{
    if (value.getBinary() == nullptr) {
        return std::nullopt;
    }
    const std::string whole(static_cast<const char*>(value.getBinary()),
                            static_cast<std::size_t>(value.blockSize()) - 4);
    std::istringstream in(whole);
    std::size_t hash = 0;
    std::uint64_t number = 0;
    in >> hash >> number;
    const bool isWhole = hash == std::hash<std::string>()(whole.substr(whole.find(' ') + 1));
    return isWhole ? std::optional(number) : std::nullopt;
}

// ---- Killed at any instant ----------------------------------------------------------------------

Wide slotOf(std::uint64_t number)
{
    return Wide("Killed/v" + std::to_string(number % slots));
}

/// What is missing of the writes up to a number, of which the next one may have been made too.
std::string missing(std::uint64_t finished)
{
    for (std::uint64_t number = finished > slots ? finished - slots + 1 : 1; number <= finished; ++number) {
        VelaVariant value;
        const int error = velaConfig()->getValue(settings, slotOf(number), value);
        const std::optional<std::uint64_t> found = error == 0 ? numberIn(value) : std::nullopt;
        if (!found || (*found != number && (*found != number + slots || *found > finished + 1))) {
            return "lost " + std::to_string(number) + " of " + std::to_string(finished) + ": " +
                   (found ? std::to_string(*found) : "error " + std::to_string(error)) + '\n';
        }
    }
    return {};
}

/// Checks what is there, then writes on and says each number once it is written.
int writeOn(const std::vector<std::string>& arguments)
{
    std::uint64_t number = std::stoull(arguments[0]);
    const int error = startAcme();
    say(error != 0 ? "lost all\n" : missing(number));
    std::minstd_rand random(static_cast<unsigned>(number));
    for (;;) {
        ++number;
        const std::size_t filling = random() % 50 == 0 ? 200000 : random() % 4000;
        const int failed = velaConfig()->setValue(settings, slotOf(number), sealed(number, filling));
        say(failed != 0 ? "lost the way: " + std::to_string(failed) + '\n' : std::to_string(number) + '\n');
    }
}

const ChildPart writer("writer", writeOn);

TEST(Storm, AKilledWriterLeavesEveryWriteWhole)
{
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    const int kills = stressed() ? 600 : 50;
    std::minstd_rand random(2018);
    std::uint64_t finished = 0;
    for (int kill = 0; kill < kills; ++kill) {
        const Process process("writer", std::to_string(finished));
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 120000));
        process.kill();
        std::istringstream said(process.read(false));
        ASSERT_EQ(process.wait(), -SIGKILL);
        for (std::string line; std::getline(said, line);) {
            ASSERT_NE(line[0], 'l') << line;
            finished = std::stoull(line);
        }
        ASSERT_EQ(missing(finished), "") << "after kill " << kill; // seen by one that was there all along
    }
    EXPECT_GT(finished, 0U);
    std::cout << kills << " kills, " << finished << " writes, all whole\n";
}

// ---- Many at once -------------------------------------------------------------------------------

/// One thread's part: returns what no contract allows, "" if all was well.
std::string storm(std::uint64_t seed, Clock::time_point end, std::atomic<std::uint64_t>& operations)
{
    TarvoConfig& config = *velaConfig();
    std::minstd_rand random(static_cast<unsigned>(seed));
    std::string wrong;
    const auto check = [&](const char* what, int error, const char* allowed, const VelaVariant& value = {}) {
        if (std::strchr(allowed, '0' + error) == nullptr) {
            wrong += std::string(what) + " gave " + std::to_string(error) + '\n';
        } else if (error == 0 && value.type() != VelaVariant::eNull && !numberIn(value)) {
            wrong += std::string(what) + " gave a torn value\n";
        }
        ++operations;
        return error == 0;
    };
    while (Clock::now() < end && wrong.empty()) {
        const Wide key("Storm/k" + std::to_string(random() % 8));
        const Wide name("v" + std::to_string(random() % 8));
        const Wide path(utf8(key) + '/' + utf8(name));
        VelaVariant value;
        const auto walk = [&](auto& it, LPCWSTR item, auto look) {
            check("find", config.findItem(settings, item, it), "015");
            do {
                look(it);
            } while (check("step", it.step(), "04"));
        };
        const auto choice = random() % 16;
        if (choice < 6) { // a value that changes between its two queries counts as of another type
            const int error = config.getValue(settings, path, value);
            check("get", error, "012", value);
        } else if (choice < 8) {
            TarvoConfig::ValueIterator values;
            walk(values, key, [&](auto& it) {
                value = VelaVariant();
                const int error = it.value(value);
                check("value", error, "0124", value);
            });
        } else if (choice == 8) {
            TarvoConfig::ItemIterator items;
            walk(items, L"Storm", [&](auto& it) {
                wchar_t found[64];
                long length = 64;
                check("name", it.name(found, length), "04");
            });
        } else if (choice == 9) {
            check("remove value", config.removeValue(settings, key, name), "015");
        } else if (random() % 64 == 0) {
            check("remove item", config.removeItem(settings, key), "015");
        } else {
            check("set", config.setValue(settings, path, sealed(random(), random() % 3000)), "05");
        }
    }
    return wrong;
}

int takePart(const std::vector<std::string>& arguments)
{
    std::istringstream words(arguments[0]);
    std::uint64_t seed = 0;
    int seconds = 0;
    words >> seed >> seconds;
    bool well = startAcme() == TarvoConfig::eOk;
    const auto end = Clock::now() + std::chrono::seconds(seconds);
    std::atomic<std::uint64_t> operations = 0;
    std::string wrong[8];
    std::vector<std::thread> threads;
    for (std::string& each : wrong) {
        threads.emplace_back([&, own = ++seed * 1000] { each = storm(own, end, operations); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const std::string& each : wrong) {
        std::cerr << each;
        well = well && each.empty();
    }
    say(std::to_string(operations));
    return well ? 0 : 1;
}

/// Tells what it reads whenever it is asked, and writes the next number.
int answer(const std::vector<std::string>&)
{
    bool well = startAcme() == TarvoConfig::eOk;
    for (char asked = 0; read(STDIN_FILENO, &asked, 1) == 1;) {
        VelaVariant value;
        well = velaConfig()->getValue(settings, L"Handed/n", value) == TarvoConfig::eOk && well;
        const std::int32_t seen = value.getInt();
        value.setInt(seen + 1);
        well = velaConfig()->setValue(settings, L"Handed/n", value) == TarvoConfig::eOk && well;
        say(std::to_string(seen) + '\n');
    }
    return well ? 0 : 1;
}

const ChildPart worker("worker", takePart);
const ChildPart partner("partner", answer);

TEST(Storm, ManyAtOnceDisturbNobody)
{
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    const int seconds = stressed() ? 30 : 2;
    std::vector<std::unique_ptr<Process>> workers;
    workers.reserve(8);
    for (int i = 0; i < 8; ++i) {
        workers.push_back(
            std::make_unique<Process>("worker", std::to_string(i * 100) + ' ' + std::to_string(seconds)));
    }
    std::int32_t number = 0;
    {
        const Process other("partner", "");
        for (const auto end = Clock::now() + std::chrono::seconds(seconds); Clock::now() < end;) {
            VelaVariant value;
            value.setInt(++number);
            ASSERT_EQ(velaConfig()->setValue(settings, L"Handed/n", value), TarvoConfig::eOk);
            other.tell();
            ASSERT_EQ(other.read(true), std::to_string(number)); // what was just written
            ASSERT_EQ(velaConfig()->getValue(settings, L"Handed/n", value), TarvoConfig::eOk);
            ASSERT_EQ(value.getInt(), ++number); // what the other has written since
        }
        other.kill();
        other.wait();
    }
    std::uint64_t operations = 0;
    for (const auto& each : workers) {
        operations += std::stoull("0" + each->read(false));
        EXPECT_EQ(each->wait(), 0);
    }
    std::cout << operations << " operations of 64 threads in " << seconds << " s, " << number
              << " handed over\n";
}

TEST(Storm, ThreadsThatComeFirstTogetherGetTheSame)
{
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    ASSERT_EQ(velaConfig()->setValue(settings, L"Handed/n", sealed(1, 100)), TarvoConfig::eOk);
    std::string seen[8];
    std::barrier start(8);
    std::vector<std::thread> threads;
    for (std::string& each : seen) {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            wchar_t path[1024] = {};
            GetProgramPath(path, 1024);
            each = utf8(path) + '|' + utf8(GetCurrentLanguageLocalName()) + '|' +
                   utf8(velaGetProduct()->helpFilePath()) + '|' +
                   utf8(velaGetProduct()->userDataCachePath()) + '|' +
                   utf8(GetVelaArchitectrueCommandNamePrefix());
            for (int round = 0; round < 200; ++round) {
                VelaVariant value;
                TarvoConfig::ValueIterator it;
                const bool well = velaConfig()->getValue(settings, L"Handed/n", value) == 0 &&
                                  velaConfig()->findItem(settings, L"Handed", it) == 0 &&
                                  numberIn(value) == 1 && it.value(value) == 0 &&
                                  TarvoConfig::ValueIterator(it).step() == 0;
                each += well ? "" : "|a reading failed";
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const std::string& each : seen) {
        EXPECT_EQ(each, seen[0]);
    }
    EXPECT_NE(seen[0].find("English"), std::string::npos) << seen[0];
}

} // namespace
