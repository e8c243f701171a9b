// The main function of every test program. Each process runs a single case, because start-up happens once per
// process. The case starts with an empty scratch folder, home and registry.
#include "support/child.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <random>
#include <string>
#include <system_error>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const bool isOne = GTEST_FLAG_GET(filter).find_first_of("*?:-") == std::string::npos;
    if (!isOne && !GTEST_FLAG_GET(list_tests)) {
        std::cerr << "Each case needs a separate process: name one by --gtest_filter, or run several by "
                     "ctest -R.\n";
        return 2;
    }
    const auto folder = std::filesystem::path(RKUINFO_TEST_SCRATCH) / std::to_string(std::random_device()());
    std::filesystem::create_directories(folder);
    testing_support::shareWithChildren("RKUINFO_TEST_SCRATCH", folder.string());
    testing_support::joinHome();
    const int exitCode = RUN_ALL_TESTS();
    testing_support::leaveHome();
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    return exitCode;
}
