// A template for an application's start-up: reads names from the command line, calls InitVelaConfig, creates
// the user's tree and prints the program's names and folders.
#include "loading/loading.h"

#include <RkUInfo.hpp>

#include <iostream>
#include <optional>
#include <span>
#include <string>

namespace {

constexpr int exitFailed = 1;
constexpr int exitUsage = 2;

using Words = std::span<wchar_t* const>;

/// The names from the command line. If a name is null, the library chooses one.
struct Names
{
    const wchar_t* company = nullptr;
    const wchar_t* product = nullptr;
    const wchar_t* language = nullptr;
    const wchar_t* profile = nullptr;
};

/// Returns the member that stores an option's value, or null if the option is unknown.
const wchar_t** placeOf(const std::string& option, Names& names)
{
    if (option == "--company") {
        return &names.company;
    }
    if (option == "--product") {
        return &names.product;
    }
    if (option == "--language") {
        return &names.language;
    }
    return option == "--profile" ? &names.profile : nullptr;
}

std::optional<Names> parse(Words words)
{
    Names names;
    for (; !words.empty(); words = words.subspan(2)) {
        const wchar_t** const place = placeOf(rkuinfo::utf8(words[0]), names);
        if (place == nullptr || words.size() < 2) {
            return std::nullopt;
        }
        *place = words[1];
    }
    return names;
}

/// Call this once, before any other thread or module uses the library. The first start creates the user's
/// tree.
std::error_code start(const Names& names)
{
    const TarvoConfig::Error error =
        InitVelaConfig(names.company, names.product, names.language, names.profile);
    return error == TarvoConfig::eOk ? CreateConfigReg() : error;
}

void work()
{
    const TarvoConfig& config = *velaConfig();
    const auto print = [](const char* name, const std::string& value) {
        std::cout << name << ": " << (value.empty() ? "(none)" : value) << '\n';
    };
    print("company", rkuinfo::utf8(config.companyName()));
    print("product", rkuinfo::utf8(config.productName()));
    print("language", rkuinfo::utf8(config.language().shortName()));
    print("local name", rkuinfo::utf8(config.language().localName()));
    print("settings", rkuinfo::utf8(rkuinfo::text(GetVelaRegistryCurrentProfileRootKey)));
    print("program", rkuinfo::utf8(rkuinfo::text(GetVelaProgramPath)));
    print("support", rkuinfo::utf8(rkuinfo::text(GetUserApplicationDataSupportPath)));
}

int run(Words words)
{
    const std::optional<Names> names = parse(words);
    if (!names) {
        std::cerr
            << "usage: launcher [--company NAME] [--product NAME] [--language xx-XX] [--profile NAME]\n";
        return exitUsage;
    }
    if (const std::error_code error = start(*names)) {
        std::cerr << "launcher: start-up: " << error.message() << '\n';
        return exitFailed;
    }
    work();
    return 0;
}

} // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    loadLibrariesSafely();
    try {
        return run(Words(argv, static_cast<std::size_t>(argc)).subspan(argc > 0 ? 1 : 0));
    } catch (RkException* exception) { // thrown by pointer if memory is exhausted
        std::cerr << rkuinfo::utf8(exception->className()) << ' ' << exception->code() << '\n';
        delete exception;
        return exitFailed;
    }
}
