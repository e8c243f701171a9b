#include "support/child.h"

#include "support/text.h"

#include <windows.h>

namespace testing_support {

namespace {

HANDLE openInherited(const char* fileName, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return CreateFileW(Wide(windowsPath(scratchFolder() / fileName)), access, FILE_SHARE_READ, &inherited,
                       disposition, 0, nullptr);
}

/// Quoted so that the C runtime splits it back into what it was.
std::string quoted(const std::string& argument)
{
    std::string out = "\"";
    std::size_t backslashes = 0;
    for (const char c : argument) {
        out.append(c == '"' ? backslashes + 1 : 0, '\\');
        out.push_back(c);
        backslashes = c == '\\' ? backslashes + 1 : 0;
    }
    return out + std::string(backslashes, '\\') + '"';
}

} // namespace

int runOnFiles(const std::filesystem::path& program, const std::vector<std::string>& arguments,
               const std::filesystem::path& workingFolder)
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
                   Wide(windowsPath(workingFolder)), &startup, &child);
    WaitForSingleObject(child.hProcess, INFINITE);
    DWORD exitCode = 127; // of one that cannot be started
    GetExitCodeProcess(child.hProcess, &exitCode);
    for (const HANDLE handle :
         {startup.hStdInput, startup.hStdOutput, startup.hStdError, child.hProcess, child.hThread}) {
        CloseHandle(handle);
    }
    return static_cast<int>(exitCode);
}

} // namespace testing_support
