// The main function of every test program.
#include "support/child.h"
#include "support/isolation.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    const testing_support::Isolation isolation;
    if (testing_support::isChild(argc, argv)) {
        return testing_support::childMain(argc, argv);
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
