// The main function of every test program. One case runs in this process, several in one each: start-up
// happens once.
#include "support/child.h"
#include "support/isolation.h"

#include <gtest/gtest.h>

#include <atomic>
#include <iostream>
#include <mutex>
#include <sstream>
#include <thread>

namespace {

using namespace testing_support;

ChildResult runAgain(std::vector<std::string> arguments, const std::string& another)
{
    arguments.push_back(another);
    return runProgram(thisProgram(), arguments);
}

/// The names of the cases that the arguments choose.
std::vector<std::string> chosenCases(const std::vector<std::string>& arguments)
{
    std::istringstream lines(runAgain(arguments, "--gtest_list_tests").output);
    std::vector<std::string> names;
    std::string suite;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("  ")) {
            names.push_back(suite + line.substr(2, line.find("  #", 2) - 2)); // behind it, a parameter
        } else {
            suite = line.substr(0, line.find(' '));
        }
    }
    return names;
}

int runApart(const std::vector<std::string>& arguments)
{
    const std::vector<std::string> cases = chosenCases(arguments);
    std::atomic<std::size_t> next = 0;
    std::size_t passed = 0;
    std::mutex mutex;
    const auto work = [&] {
        for (std::size_t i = next++; i < cases.size(); i = next++) {
            const ChildResult result = runAgain(arguments, "--gtest_filter=" + cases[i]);
            const std::lock_guard lock(mutex);
            passed += result.exitCode == 0 ? 1 : 0;
            if (result.exitCode != 0) {
                std::cout << result.output << result.errors << cases[i] << " ended with " << result.exitCode
                          << '\n';
            }
        }
    };
    std::vector<std::thread> workers;
    for (unsigned count = 0; count < std::max(2U, std::thread::hardware_concurrency()); ++count) {
        workers.emplace_back(work);
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
    std::cout << passed << " of " << cases.size() << " cases passed\n";
    return passed > 0 && passed == cases.size() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    const Isolation isolation(isChild(argc, argv));
    if (isChild(argc, argv)) {
        return runAsChild(argc, argv);
    }
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    testing::InitGoogleTest(&argc, argv);
    const bool isOne = GTEST_FLAG_GET(filter).find_first_of("*?:-") == std::string::npos;
    return isOne || GTEST_FLAG_GET(list_tests) || argc > 1 ? RUN_ALL_TESTS() : runApart(arguments);
}
