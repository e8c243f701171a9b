// Answers the next message box with a given caption, as a user would: for a demonstration that nobody
// watches.
#include <windows.h>

#include <iostream>

namespace {

constexpr int attempts = 300;
constexpr DWORD pause = 100; // milliseconds

} // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    if (argc != 2) {
        std::cerr << "usage: answer CAPTION\n";
        return 2;
    }
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const HWND box = FindWindowW(L"#32770", argv[1]);
        if (box != nullptr && PostMessageW(box, WM_COMMAND, IDYES, 0) != FALSE) {
            return 0;
        }
        Sleep(pause);
    }
    std::cerr << "answer: no box came\n";
    return 1;
}
