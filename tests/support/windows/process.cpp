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

std::string textOf(HWND window)
{
    wchar_t text[1024] = {};
    SendMessageW(window, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text));
    return utf8(text);
}

HWND boxOf(DWORD process)
{
    HWND box = nullptr;
    while ((box = FindWindowExW(nullptr, box, L"#32770", nullptr)) != nullptr) {
        DWORD owner = 0;
        GetWindowThreadProcessId(box, &owner);
        if (owner == process && IsWindowVisible(box)) {
            break;
        }
    }
    return box;
}

/// Its text is in the last of its labels that has one: the icon's has none.
ShownBox shown(HWND box)
{
    ShownBox seen = {textOf(box), {}};
    HWND label = nullptr;
    while ((label = FindWindowExW(box, label, L"Static", nullptr)) != nullptr) {
        seen.text = textOf(label).empty() ? seen.text : textOf(label);
    }
    return seen;
}

/// Answers the child's message boxes until it ends.
std::vector<ShownBox> answerBoxes(const PROCESS_INFORMATION& child, const std::vector<std::string>& answers)
{
    std::vector<ShownBox> boxes;
    constexpr DWORD poll = 20;
    while (WaitForSingleObject(child.hProcess, poll) == WAIT_TIMEOUT) {
        const HWND box = boxOf(child.dwProcessId);
        if (box == nullptr) {
            continue;
        }
        const std::string answer = boxes.size() < answers.size() ? answers[boxes.size()] : "";
        boxes.push_back(shown(box));
        if (answer.empty()) {
            PostMessageW(box, WM_CLOSE, 0, 0); // a box of yes and no does not close
        }
        const WPARAM button = answer == "yes" ? IDYES : answer == "ok" ? IDOK : IDNO;
        PostMessageW(box, WM_COMMAND, button, 0);
        while (IsWindow(box) && WaitForSingleObject(child.hProcess, poll) == WAIT_TIMEOUT) {
        }
    }
    return boxes;
}

} // namespace

ChildResult runIn(const std::filesystem::path& folder, const std::filesystem::path& program,
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
    std::vector<wchar_t> writable(static_cast<const wchar_t*>(wide), wide + wide.length() + 1);
    const Wide workingFolder(windowsPath(options.workingFolder));
    PROCESS_INFORMATION child = {};
    const BOOL started =
        CreateProcessW(nullptr, writable.data(), nullptr, nullptr, TRUE, 0, nullptr,
                       options.workingFolder.empty() ? nullptr : workingFolder + 0, &startup, &child);
    for (const HANDLE handle : {startup.hStdInput, startup.hStdOutput, startup.hStdError}) {
        CloseHandle(handle);
    }
    if (started == FALSE) {
        throw std::runtime_error("cannot start " + command);
    }
    ChildResult result;
    result.boxes = answerBoxes(child, options.answers);
    DWORD exitCode = 0;
    GetExitCodeProcess(child.hProcess, &exitCode);
    CloseHandle(child.hProcess);
    CloseHandle(child.hThread);
    result.exitCode = static_cast<int>(exitCode);
    return result;
}

} // namespace testing_support
