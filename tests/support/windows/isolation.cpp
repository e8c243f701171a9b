// Both roots of the registry are redirected to a key of this test's own, below the real current user.
#include "support/isolation.h"

#include <windows.h>

#include <cstdlib>
#include <stdexcept>

namespace testing_support {

namespace {

constexpr char mark[] = "RKUINFO_TEST_REGISTRY";

void redirect(HKEY root, const std::string& path)
{
    HKEY key = nullptr;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                        nullptr, &key, nullptr) != ERROR_SUCCESS) {
        throw std::runtime_error("cannot make " + path);
    }
    RegOverridePredefKey(root, key);
    RegCloseKey(key);
}

} // namespace

void shareWithChildren(const char* variable, const std::string& value)
{
    _putenv_s(variable, value.c_str());
}

Isolation::Isolation(const std::filesystem::path& home)
{
    if (std::getenv(mark) == nullptr) {
        std::filesystem::create_directories(home);
        const std::string path = "Software\\RkUInfoTests\\" + std::to_string(GetCurrentProcessId());
        RegDeleteTreeA(HKEY_CURRENT_USER, path.c_str()); // of a process that was killed
        shareWithChildren(mark, path);
        m_owner = true;
    }
    const std::string path = std::getenv(mark);
    redirect(HKEY_LOCAL_MACHINE, path + "\\Machine");
    redirect(HKEY_CURRENT_USER, path + "\\User"); // last: the paths are those of the real one
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        HKEY software = nullptr; // which every real root has
        RegCreateKeyExA(root, "Software", 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_READ, nullptr, &software,
                        nullptr);
        RegCloseKey(software);
    }
}

Isolation::~Isolation()
{
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    if (m_owner) {
        RegDeleteTreeA(HKEY_CURRENT_USER, std::getenv(mark));
    }
}

std::string companyFromOutside(const std::string& company)
{
    const std::string path = std::getenv(mark);
    return path.substr(path.find('\\') + 1) + "\\User\\Software\\" + company;
}

} // namespace testing_support
