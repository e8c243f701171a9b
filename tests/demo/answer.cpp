// Answers Yes to the next message box with the given caption, so that the demonstration runs without a user.
#include <windows.h>

#include <cstdio>

extern "C" int wmain(int argc, wchar_t** argv)
{
    constexpr DWORD pause = 100; // milliseconds
    for (int attempt = 0; attempt < 300 && argc == 2; ++attempt) {
        const HWND box = FindWindowW(L"#32770", argv[1]);
        if (box != nullptr && PostMessageW(box, WM_COMMAND, IDYES, 0) != FALSE) {
            return 0;
        }
        Sleep(pause);
    }
    std::fputs("answer CAPTION: no box came\n", stderr);
    return 1;
}
