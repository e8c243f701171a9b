#include "support/isolation.h"

#include "support/scratch.h"

#include <cstdlib>
#include <random>

namespace testing_support {

namespace fs = std::filesystem;

const fs::path& scratchFolder()
{
    static const fs::path folder = std::getenv("RKUINFO_TEST_SCRATCH");
    return folder;
}

void isolate(bool isChild)
{
    if (!isChild) {
        const fs::path folder = fs::path(RKUINFO_TEST_SCRATCH) / std::to_string(std::random_device()());
        fs::create_directories(folder);
        shareWithChildren("RKUINFO_TEST_SCRATCH", folder.string());
    }
    joinHome();
}

void removeTraces()
{
    leaveHome();
    std::error_code ignored;
    fs::remove_all(scratchFolder(), ignored);
}

} // namespace testing_support
