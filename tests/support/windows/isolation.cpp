// Both roots of the registry are redirected to a key of this test's own, below the real current user.
#include "support/isolation.h"

#include "support/scratch.h"

#include <windows.h>

#include <cstdlib>
#include <stdexcept>

namespace testing_support {

namespace {

/// Below Software, where companies are.
std::string ownPath(const std::filesystem::path& scratch)
{
    return "RkUInfoTests\\" + scratch.filename().string();
}

void redirect(HKEY root, const std::string& path)
{
    HKEY key = nullptr;
    HKEY software = nullptr; // which every real root has
    if (RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                        nullptr, &key, nullptr) != ERROR_SUCCESS ||
        RegCreateKeyExA(key, "Software", 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_READ, nullptr, &software,
                        nullptr) != ERROR_SUCCESS) {
        throw std::runtime_error("cannot make " + path);
    }
    RegOverridePredefKey(root, key);
    RegCloseKey(software);
    RegCloseKey(key);
}

} // namespace

void shareWithChildren(const char* variable, const std::string& value)
{
    _putenv_s(variable, value.c_str());
}

void joinHome(const std::filesystem::path& scratch)
{
    const std::string path = "Software\\" + ownPath(scratch);
    // A process that crashes ends so, without a debugger.
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS*) -> LONG { return EXCEPTION_EXECUTE_HANDLER; });
    redirect(HKEY_LOCAL_MACHINE, path + "\\Machine");
    redirect(HKEY_CURRENT_USER, path + "\\User"); // last: the paths are those of the real one
}

void removeHome(const std::filesystem::path& scratch)
{
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegDeleteTreeA(HKEY_CURRENT_USER, ("Software\\" + ownPath(scratch)).c_str());
}

std::string companyFromOutside(const std::string& company)
{
    return ownPath(scratchFolder()) + "\\User\\Software\\" + company;
}

} // namespace testing_support
