// Looks up arbitrary names in INI files with arbitrary content.
#include "input.h"

#include <sys/mman.h>
#include <unistd.h>

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const int file = memfd_create("ini", 0); // deleted when the process exits
    static const std::string name = "Z:\\proc\\self\\fd\\" + std::to_string(file);
    static const std::vector<wchar_t> path(name.c_str(), name.c_str() + name.size() + 1);
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
            const DWORD length = GetPrivateProfileStringW(wantedSection, wantedKey, L"fallback ", out.data(),
                                                          room, path.data());
            require(length == 0 || length < room);
            require(room == 0 || std::find(out.begin(), out.end(), L'\0') != out.end());
        }
    }
    GetPrivateProfileIntW(section.data(), key.data(), -1, path.data());
    return 0;
}
