// Builds key paths from arbitrary company, product and profile names and arbitrary client paths.
#include "input.h"

#include "store/key_path.h"
#include "support/config.h"

#include <filesystem>
#include <system_error>

namespace {

/// An in-memory registry, deleted when the process exits.
class Home
{
public:
    Home()
    {
        require(mkdtemp(m_folder) != nullptr);
        setenv("XDG_DATA_HOME", m_folder, 1);
    }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;
    ~Home()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }

private:
    char m_folder[32] = "/dev/shm/rkuinfo-fuzz.XXXXXX";
};

/// Initialises the library. The registry contains an uninstall entry for only one language.
bool start()
{
    static const Home home;
    HKEY key = nullptr;
    RegCreateKeyExW(
        HKEY_LOCAL_MACHINE,
        L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\{5C3D71E0-B00F-1033-C10E-9E40B6D2F815}", 0,
        nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
    RegSetValueExW(key, L"UninstallString", 0, REG_SZ, nullptr, 0);
    return InitVelaConfig(L"Acme", L"Widget", L"en-US", nullptr) == TarvoConfig::eOk;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool isStarted = start();
    require(isStarted);
    Input input(data, size);
    const bool isWide = input.byte() % 2 != 0;
    const auto text = [&](unsigned times) { return input.text(std::size_t{input.byte()} * times, isWide); };
    const std::vector<wchar_t> company = text(8);
    const std::vector<wchar_t> product = text(8);
    const std::vector<wchar_t> profile = text(1);
    const std::vector<wchar_t> item = input.restAsText(isWide);

    testing_support::Config config;
    config.initial(company.data(), product.data(), L"en-US", profile.data());
    for (int path = -1; path <= TarvoConfig::eUserConfig + 1; ++path) {
        const auto root = static_cast<TarvoConfig::Path>(path);
        std::vector<wchar_t> out(uinfo::pathCapacity, L'?');
        config.getRegRootPath(root, out.data());
        require(std::find(out.begin(), out.end(), L'\0') != out.end());
        uinfo::KeyPath key;
        const bool isBuilt = key.assign(config, root, item.data());
        require(!isBuilt || uinfo::length(key.text()) <= uinfo::longestChangePath + 1);
        config.isItemExist(root, item.data());
        VelaVariant value;
        config.getValue(root, item.data(), value);
    }
    return 0;
}
