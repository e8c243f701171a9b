#include "support/isolation.h"

#include "support/scratch.h"

#include <cstdlib>
#include <random>

namespace testing_support {

namespace {

namespace fs = std::filesystem;

constexpr char variable[] = "RKUINFO_TEST_SCRATCH";

} // namespace

const fs::path& scratchFolder()
{
    static const fs::path folder = std::getenv(variable);
    return folder;
}

Isolation::Isolation(bool isChild) : m_owner(!isChild)
{
    if (m_owner) {
        std::random_device random;
        fs::path folder;
        do {
            folder = fs::path(RKUINFO_TEST_SCRATCH) / std::to_string(random());
        } while (!fs::create_directories(folder));
        shareWithChildren(variable, folder.string());
    }
    joinHome(scratchFolder());
}

Isolation::~Isolation()
{
    if (m_owner) {
        removeHome(scratchFolder());
        std::error_code ignored;
        fs::remove_all(scratchFolder(), ignored);
    }
}

} // namespace testing_support
