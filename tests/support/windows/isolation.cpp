// Both roots of the registry are redirected to a key of this test's own, below the real current user.
#include "support/isolation.h"

#include "support/registry.h"
#include "support/scratch.h"

#include <cstdlib>

namespace testing_support {

namespace {

/// Below Software, where companies are.
std::string ownPath()
{
    return "RkUInfoTests\\" + scratchFolder().filename().string();
}

void redirect(HKEY root, const std::string& name)
{
    const OwnedKey key = makeKey(HKEY_CURRENT_USER, "Software\\" + ownPath() + '\\' + name);
    makeKey(key.get(), "Software"); // which every real root has
    RegOverridePredefKey(root, key.get());
}

} // namespace

void shareWithChildren(const char* variable, const std::string& value)
{
    _putenv_s(variable, value.c_str());
}

void joinHome()
{
    // A process that crashes ends so, without a debugger.
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS*) -> LONG { return EXCEPTION_EXECUTE_HANDLER; });
    redirect(HKEY_LOCAL_MACHINE, "Machine");
    redirect(HKEY_CURRENT_USER, "User"); // last: the keys are of the real one
}

void leaveHome()
{
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    removeKey(HKEY_CURRENT_USER, "Software\\" + ownPath());
}

std::string companyFromOutside(const std::string& company)
{
    return ownPath() + "\\User\\Software\\" + company;
}

} // namespace testing_support
