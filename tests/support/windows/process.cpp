// The registry of a test process and of the processes that it starts. Both roots of the registry are
// redirected to separate keys below the real HKEY_CURRENT_USER.
#include "support/child.h"
#include "support/registry.h"

#include <cstdio>
#include <cstdlib>
#include <regex>

namespace testing_support {

namespace {

/// Returns the key below Software that contains this process's registry.
std::string ownPath()
{
    return "RkUInfoTests\\" + scratchFolder().filename().string();
}

void redirect(HKEY root, const std::string& name)
{
    const OwnedKey key = makeKey(HKEY_CURRENT_USER, "Software\\" + ownPath() + '\\' + name);
    makeKey(key.get(), "Software"); // the real roots contain the key Software
    RegOverridePredefKey(root, key.get());
}

HANDLE openInherited(const char* fileName, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return CreateFileW(Wide(windowsPath(scratchFolder() / fileName)), access, FILE_SHARE_READ, &inherited,
                       disposition, 0, nullptr);
}

/// Quotes an argument for the C runtime: backslashes before a quotation mark are doubled.
std::string quoted(const std::string& argument)
{
    const std::string inner = std::regex_replace(argument, std::regex(R"re((\\*)")re"), R"($1$1\")");
    return '"' + std::regex_replace(inner, std::regex(R"(\\+$)"), "$&$&") + '"';
}

} // namespace

void shareWithChildren(const char* variable, const std::string& value)
{
    _putenv_s(variable, value.c_str());
}

void joinHome()
{
    // After a crash, prints the exception and exits without starting a debugger.
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS* crash) -> LONG {
        std::fprintf(stderr, "crashed by exception %lX\n", crash->ExceptionRecord->ExceptionCode);
        return EXCEPTION_EXECUTE_HANDLER;
    });
    const std::string folders = R"(Software\Microsoft\Windows\CurrentVersion\Explorer\FolderDescriptions)";
    const OwnedKey described = makeKey(HKEY_CURRENT_USER, "Software\\" + ownPath() + "\\Machine\\" + folders);
    RegCopyTreeW(HKEY_LOCAL_MACHINE, Wide(folders),
                 described.get()); // Windows resolves known folders by these descriptions
    redirect(HKEY_LOCAL_MACHINE, "Machine");
    redirect(HKEY_CURRENT_USER, "User"); // must be last: redirect() uses the real HKEY_CURRENT_USER
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

int runOnFiles(const std::filesystem::path& program, const std::vector<std::string>& arguments)
{
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = openInherited("in", GENERIC_READ, OPEN_EXISTING);
    startup.hStdOutput = openInherited("out", GENERIC_WRITE, CREATE_ALWAYS);
    startup.hStdError = openInherited("err", GENERIC_WRITE, CREATE_ALWAYS);
    std::string line = quoted(windowsPath(program));
    for (const std::string& argument : arguments) {
        line += ' ' + quoted(argument);
    }
    const Wide command(line);
    PROCESS_INFORMATION child = {};
    CreateProcessW(nullptr, const_cast<wchar_t*>(+command), nullptr, nullptr, TRUE, 0, nullptr,
                   Wide(windowsPath(program.parent_path())), &startup, &child);
    WaitForSingleObject(child.hProcess, INFINITE);
    DWORD exitCode = 127; // the result if the program cannot be started
    GetExitCodeProcess(child.hProcess, &exitCode);
    for (const HANDLE handle :
         {startup.hStdInput, startup.hStdOutput, startup.hStdError, child.hProcess, child.hThread}) {
        CloseHandle(handle);
    }
    return static_cast<int>(exitCode);
}

} // namespace testing_support
