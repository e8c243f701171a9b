#include "support/isolation.h"

#include <cstdlib>

namespace testing_support {

namespace {

constexpr char mark[] = "RKUINFO_TEST_HOME";

} // namespace

void shareWithChildren(const char* variable, const std::string& value)
{
    setenv(variable, value.c_str(), 1);
}

Isolation::Isolation(const std::filesystem::path& home)
{
    if (std::getenv(mark) != nullptr) {
        return;
    }
    const auto make = [&](const char* variable, const std::filesystem::path& folder) {
        std::filesystem::create_directories(folder);
        shareWithChildren(variable, folder.string());
    };
    make(mark, home);
    make("HOME", home);
    make("XDG_CONFIG_HOME", home / ".config");
    make("XDG_DATA_HOME", home / ".local/share");
    make("XDG_DOCUMENTS_DIR", home / "Documents");
}

Isolation::~Isolation() = default; // the home goes with the scratch folder

std::string companyFromOutside(const std::string& company)
{
    return company; // the whole registry is in this process's home
}

} // namespace testing_support
