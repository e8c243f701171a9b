// The main function of every test program. One case runs in this process, several in one each: start-up
// happens once. A process has an empty scratch folder, home and registry.
#include "support/child.h"
#include "support/isolation.h"

#include <gtest/gtest.h>

#include <iostream>
#include <random>
#include <system_error>
#include <tuple>

namespace {

using namespace testing_support;

bool passes(const std::string& name)
{
    const ChildResult result = runProgram(thisProgram(), {"--gtest_filter=" + name});
    if (result.exitCode != 0) {
        std::cout << result.output << result.errors << name << " ended with " << result.exitCode << '\n';
    }
    return result.exitCode == 0;
}

int runApart()
{
    GTEST_FLAG_SET(repeat, 0);
    std::ignore = RUN_ALL_TESTS(); // chooses the cases, and runs none
    const testing::UnitTest& all = *testing::UnitTest::GetInstance();
    int passed = 0;
    for (int i = 0; i < all.total_test_suite_count(); ++i) {
        const testing::TestSuite& suite = *all.GetTestSuite(i);
        for (int j = 0; j < suite.total_test_count(); ++j) {
            const testing::TestInfo& test = *suite.GetTestInfo(j);
            passed += test.should_run() && passes(std::string(suite.name()) + '.' + test.name()) ? 1 : 0;
        }
    }
    std::cout << passed << " of " << all.test_to_run_count() << " cases passed\n";
    return passed > 0 && passed == all.test_to_run_count() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    const auto folder = std::filesystem::path(RKUINFO_TEST_SCRATCH) / std::to_string(std::random_device()());
    std::filesystem::create_directories(folder);
    shareWithChildren("RKUINFO_TEST_SCRATCH", folder.string());
    joinHome();
    testing::InitGoogleTest(&argc, argv);
    const bool isOne = GTEST_FLAG_GET(filter).find_first_of("*?:-") == std::string::npos;
    const int exitCode = isOne || GTEST_FLAG_GET(list_tests) ? RUN_ALL_TESTS() : runApart();
    leaveHome();
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    return exitCode;
}
