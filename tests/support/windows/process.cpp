#include "support/child.h"

#include "support/text.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <optional>
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

struct Search
{
    DWORD process;
    HWND box;
};

BOOL CALLBACK isBoxOf(HWND window, LPARAM parameter)
{
    auto* const search = reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    wchar_t className[16] = {};
    GetWindowThreadProcessId(window, &process);
    GetClassNameW(window, className, 16);
    if (process == search->process && utf8(className) == "#32770" && IsWindowVisible(window)) {
        search->box = window;
        return FALSE;
    }
    return TRUE;
}

BOOL CALLBACK takeText(HWND control, LPARAM parameter)
{
    wchar_t className[16] = {};
    GetClassNameW(control, className, 16);
    const std::string text = textOf(control);
    if (utf8(className) == "Static" && !text.empty()) {
        *reinterpret_cast<std::string*>(parameter) = text;
    }
    return TRUE;
}

int buttonOf(const std::string& answer)
{
    return answer == "yes" ? IDYES : answer == "no" ? IDNO : IDOK;
}

/// Answers the child's message boxes until it ends.
std::vector<ShownBox> answerBoxes(const PROCESS_INFORMATION& child, std::vector<std::string> answers)
{
    std::vector<ShownBox> boxes;
    std::reverse(answers.begin(), answers.end());
    constexpr DWORD poll = 20;
    while (WaitForSingleObject(child.hProcess, poll) == WAIT_TIMEOUT) {
        Search search = {child.dwProcessId, nullptr};
        EnumWindows(isBoxOf, reinterpret_cast<LPARAM>(&search));
        if (search.box == nullptr) {
            continue;
        }
        ShownBox box = {textOf(search.box), {}};
        EnumChildWindows(search.box, takeText, reinterpret_cast<LPARAM>(&box.text));
        boxes.push_back(box);
        if (answers.empty()) {
            PostMessageW(search.box, WM_CLOSE, 0, 0);
            PostMessageW(search.box, WM_COMMAND, IDNO, 0); // a box of yes and no does not close
        } else {
            PostMessageW(search.box, WM_COMMAND, static_cast<WPARAM>(buttonOf(answers.back())), 0);
            answers.pop_back();
        }
        while (IsWindow(search.box) && WaitForSingleObject(child.hProcess, poll) == WAIT_TIMEOUT) {
        }
    }
    return boxes;
}

} // namespace

ChildResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                       const ChildOptions& options)
{
    static std::atomic<int> runs = 0;
    const std::filesystem::path folder = scratchFolder() / ("run" + std::to_string(++runs));
    writeFile(folder / "in", "");

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
    const Wide wideCommand(command);
    std::vector<wchar_t> writable(static_cast<const wchar_t*>(wideCommand),
                                  static_cast<const wchar_t*>(wideCommand) + wideCommand.length() + 1);
    const Wide workingFolder(windowsPath(options.workingFolder));
    PROCESS_INFORMATION child = {};
    const BOOL started =
        CreateProcessW(nullptr, writable.data(), nullptr, nullptr, TRUE, 0, nullptr,
                       options.workingFolder.empty() ? nullptr : static_cast<const wchar_t*>(workingFolder),
                       &startup, &child);
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
    result.output = readFile(folder / "out");
    result.errors = readFile(folder / "err");
    return result;
}

} // namespace testing_support
