// INI files of any content, and any names looked up in them.
#include "input.h"

#include <fcntl.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const int file = open("/dev/shm/rkuinfo-fuzz.ini", O_RDWR | O_CREAT, 0600);
    constexpr wchar_t path[] = L"Z:\\dev\\shm\\rkuinfo-fuzz.ini";
    Input input(data, size);
    const std::vector<wchar_t> section = input.text(input.byte() % 32, false);
    const std::vector<wchar_t> key = input.text(input.byte() % 32, false);
    const DWORD room = input.byte();
    const std::string_view bytes = input.rest();
    require(ftruncate(file, 0) == 0 &&
            pwrite(file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));

    for (const wchar_t* const wantedSection : {static_cast<const wchar_t*>(nullptr), section.data()}) {
        for (const wchar_t* const wantedKey : {static_cast<const wchar_t*>(nullptr), key.data()}) {
            std::vector<wchar_t> out(room);
            const DWORD length =
                GetPrivateProfileStringW(wantedSection, wantedKey, L"fallback ", out.data(), room, path);
            require(length == 0 || length < room);
            require(room == 0 || std::find(out.begin(), out.end(), L'\0') != out.end());
        }
    }
    GetPrivateProfileIntW(section.data(), key.data(), -1, path);
    return 0;
}
