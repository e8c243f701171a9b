#include "support/child.h"

#include "support/text.h"

#include <windows.h>

#include <stdexcept>

namespace testing_support {

namespace {

HANDLE openInherited(const std::filesystem::path& file, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return CreateFileW(Wide(windowsPath(file)), access, FILE_SHARE_READ, &inherited, disposition, 0, nullptr);
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

int runIn(const std::filesystem::path& folder, const std::filesystem::path& program,
          const std::vector<std::string>& arguments, const ChildOptions& options)
{
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = openInherited(folder / "in", GENERIC_READ, OPEN_EXISTING);
    startup.hStdOutput = openInherited(folder / "out", GENERIC_WRITE, CREATE_ALWAYS);
    startup.hStdError = openInherited(folder / "err", GENERIC_WRITE, CREATE_ALWAYS);
    std::string command = quoted(windowsPath(program));
    for (const std::string& argument : arguments) {
        command += ' ' + quoted(argument);
    }
    const Wide wide(command);
    const Wide workingFolder(windowsPath(options.workingFolder));
    PROCESS_INFORMATION child = {};
    const BOOL started =
        CreateProcessW(nullptr, const_cast<wchar_t*>(+wide), nullptr, nullptr, TRUE, 0, nullptr,
                       options.workingFolder.empty() ? nullptr : workingFolder + 0, &startup, &child);
    for (const HANDLE handle : {startup.hStdInput, startup.hStdOutput, startup.hStdError}) {
        CloseHandle(handle);
    }
    if (started == FALSE) {
        throw std::runtime_error("cannot start " + command);
    }
    WaitForSingleObject(child.hProcess, INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(child.hProcess, &exitCode);
    CloseHandle(child.hProcess);
    CloseHandle(child.hThread);
    return static_cast<int>(exitCode);
}

} // namespace testing_support
