#include "support/isolation.h"

#include "support/scratch.h"

#include <cstdlib>

namespace testing_support {

void shareWithChildren(const char* variable, const std::string& value)
{
    setenv(variable, value.c_str(), 1);
}

void joinHome()
{
    const std::filesystem::path home = scratchFolder() / "home";
    std::filesystem::create_directories(home);
    shareWithChildren("HOME", home.string());
    shareWithChildren("XDG_CONFIG_HOME", (home / ".config").string());
    shareWithChildren("XDG_DATA_HOME", (home / ".local/share").string());
    shareWithChildren("XDG_DOCUMENTS_DIR", (home / "Documents").string());
}

void leaveHome() {}

std::string companyFromOutside(const std::string& company)
{
    return company; // the whole registry is in this process's home
}

} // namespace testing_support
