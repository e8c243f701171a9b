// Damages the store's files. Registry calls on the damaged store must not crash, hang or return a value that
// was never written.
#include "input.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char* suffixes[] = {"", "-wal"};
constexpr wchar_t keyPath[] = L"Software\\Fuzzed\\Key\\Deep";

/// Creates an undamaged store in an in-memory folder, which is deleted when the process exits.
struct Home
{
    Home()
    {
        require(mkdtemp(folder) != nullptr);
        setenv("XDG_DATA_HOME", folder, 1);
        file = std::string(folder) + "/winhost/registry.db";
        HKEY key = nullptr;
        require(RegCreateKeyExW(HKEY_CURRENT_USER, keyPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                                nullptr) == ERROR_SUCCESS);
        for (wchar_t name[] = L"a"; name[0] <= L'z'; ++name[0]) {
            const std::vector<BYTE> data(std::size_t{40} * (name[0] - L'a'), static_cast<BYTE>(name[0]));
            RegSetValueExW(key, name, 0, REG_BINARY, data.data(), static_cast<DWORD>(data.size()));
        }
        RegCloseKey(key);
        for (int i = 0; i < 2; ++i) {
            std::ifstream in(file + suffixes[i], std::ios::binary);
            whole[i] = {std::istreambuf_iterator<char>(in), {}};
        }
    }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;
    ~Home()
    {
        for (const char* const each : {"", "-wal", "-shm"}) {
            std::remove((file + each).c_str());
        }
        rmdir((std::string(folder) + "/winhost").c_str());
        rmdir(folder);
    }

    char folder[32] = "/dev/shm/rkuinfo-fuzz.XXXXXX";
    std::string file;
    std::string whole[2];
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Home home;
    Input input(data, size);
    for (int i = 0; i < 2; ++i) {
        std::string bytes = home.whole[i];
        for (unsigned changes = input.byte() % 16; changes > 0 && !bytes.empty(); --changes) {
            const std::size_t at = std::size_t{input.byte()} << 8 | input.byte();
            bytes[at * 31 % bytes.size()] = static_cast<char>(input.byte());
        }
        std::remove((home.file + suffixes[i]).c_str()); // winhost reopens the store if its file is replaced
        std::ofstream(home.file + suffixes[i], std::ios::binary) << bytes;
        chmod((home.file + suffixes[i]).c_str(), 0600);
    }
    std::remove((home.file + "-shm").c_str());
    HKEY key = nullptr;
    RegOpenKeyExW(HKEY_CURRENT_USER, keyPath, 0, KEY_ALL_ACCESS, &key);
    for (DWORD i = 0; i < 28; ++i) {
        wchar_t name[8] = L"";
        DWORD length = 8;
        std::vector<BYTE> found(2000);
        auto room = static_cast<DWORD>(found.size());
        if (RegEnumValueW(key, i, name, &length, nullptr, nullptr, found.data(), &room) == ERROR_SUCCESS) {
            require(length == 1 && room == 40U * (name[0] - L'a'));
            require(std::count(found.begin(), found.begin() + room, static_cast<BYTE>(name[0])) == room);
        }
    }
    const BYTE last = input.byte();
    RegSetValueExW(key, L"new", 0, last, &last, 1);
    RegDeleteValueW(key, L"new");
    RegCloseKey(key);
    if (last % 4 == 0) {
        RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Fuzzed");
    }
    return 0;
}
