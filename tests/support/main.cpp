// The main function of every test program.
#include "support/child.h"
#include "support/isolation.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    const testing_support::Isolation isolation;
    if (const std::optional<int> result = testing_support::runAsChild(argc, argv)) {
        return *result;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
