// MessageBoxW and ExitProcess.
#include "database/database.h"
#include "text.h"

#include <windows.h>

#include <cstdio>
#include <string>
#include <unistd.h>

namespace {

/// Reads the first 8 non-blank characters of an input line, in lower case. Returns false at the end of the
/// input.
bool readAnswer(std::string& answer)
{
    constexpr std::size_t longestKept = 8;
    answer.clear();
    int character = std::getc(stdin);
    const bool isAtEnd = character == EOF;
    for (; character != EOF && character != '\n'; character = std::getc(stdin)) {
        const bool isUpper = character >= 'A' && character <= 'Z';
        const bool isBlank = character == ' ' || character == '\t' || character == '\r';
        if (!isBlank && answer.size() < longestKept) {
            answer.push_back(static_cast<char>(isUpper ? character + ('a' - 'A') : character));
        }
    }
    return !isAtEnd;
}

INT askYesOrNo()
{
    constexpr INT noAnswer = 0;
    std::string answer;
    for (;;) {
        std::fputs("yes or no?\n", stderr);
        if (!readAnswer(answer)) {
            return noAnswer;
        }
        if (answer == "y" || answer == "yes") {
            return IDYES;
        }
        if (answer == "n" || answer == "no") {
            return IDNO;
        }
    }
}

} // namespace

INT MessageBoxW(HWND /*owner*/, LPCWSTR text, LPCWSTR caption, UINT type)
{
    constexpr UINT buttonMask = 0xF;
    std::string message = winhost::toUtf8(caption == nullptr ? L"Error" : caption);
    message += ": " + winhost::toUtf8(winhost::viewOf(text)) + '\n';
    std::fputs(message.c_str(), stderr);
    return (type & buttonMask) == MB_YESNO ? askYesOrNo() : IDOK;
}

void ExitProcess(UINT code)
{
    // As on Windows, does not destroy the static objects of the program: other threads may still use them.
    // Does not flush stdin, because a thread that is waiting for input holds stdin's lock.
    std::fflush(stdout);
    std::fflush(stderr);
    winhost::database::leave();
    _exit(static_cast<int>(code));
}
