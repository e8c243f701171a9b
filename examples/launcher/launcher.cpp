// The start-up of an application: names from the command line, InitVelaConfig, then the work.
#include "command.h"
#include "names.h"
#include "print.h"
#include "report.h"
#include "store_commands.h"

#include <RkUInfo.h>

#include <cstddef>
#include <iostream>
#include <optional>
#include <string>

namespace {

constexpr int exitFailed = 1;
constexpr int exitUsage = 2;

constexpr const char* usage =
    "usage: launcher [--company NAME] [--product NAME] [--language xx-XX] [--profile NAME] [COMMAND]\n"
    "COMMAND: report, which is the default\n"
    "         get PATH VALUEPATH\n"
    "         set PATH VALUEPATH TYPE VALUE, TYPE: int, int64, double, binary (VALUE in hex) or string\n"
    "         list PATH [SUBKEY]\n"
    "         tree PATH\n"
    "         provision\n"
    "PATH: ProductRoot, VersionRoot, LanguageRoot, ProfilesRoot, CurrentProfile, Applications,\n"
    "      RecentFileList, Settings or UserConfig\n";

/// The command line. A name that is not given stays null: the library then finds it.
struct Start
{
    const wchar_t* company = nullptr;
    const wchar_t* product = nullptr;
    const wchar_t* language = nullptr;
    const wchar_t* profile = nullptr;
    Command command;
};

/// Where an option's value goes; null for an unknown option.
const wchar_t** nameOf(const std::string& option, Start& start)
{
    if (option == "--company") {
        return &start.company;
    }
    if (option == "--product") {
        return &start.product;
    }
    if (option == "--language") {
        return &start.language;
    }
    return option == "--profile" ? &start.profile : nullptr;
}

/// Empty for a command that is not understood.
Command parseCommand(Words words)
{
    if (words.empty()) {
        return report;
    }
    const std::string name = utf8(words[0]);
    if (words.size() == 1 && name == "report") {
        return report;
    }
    if (words.size() == 1 && name == "provision") {
        return CreateConfigReg;
    }
    return parseStoreCommand(name, words.subspan(1));
}

std::optional<Start> parse(Words words)
{
    Start start;
    while (!words.empty() && utf8(words[0]).starts_with("--")) {
        const wchar_t** const name = nameOf(utf8(words[0]), start);
        if (name == nullptr || words.size() < 2) {
            return std::nullopt;
        }
        *name = words[1];
        words = words.subspan(2);
    }
    start.command = parseCommand(words);
    return start.command ? std::optional(start) : std::nullopt;
}

int run(Words words)
{
    const std::optional<Start> start = parse(words);
    if (!start) {
        std::cerr << usage;
        return exitUsage;
    }
    // Once, before any other thread or module uses the library.
    TarvoConfig::Error error =
        InitVelaConfig(start->company, start->product, start->language, start->profile);
    if (error == TarvoConfig::eOk) {
        error = start->command();
    }
    if (error != TarvoConfig::eOk) {
        std::cerr << errorName(error) << '\n';
        return exitFailed;
    }
    return 0;
}

} // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    prepareOutput();
    try {
        const Words words(argv, static_cast<std::size_t>(argc));
        return run(words.subspan(words.empty() ? 0 : 1));
    } catch (RkException* exception) { // thrown without memory; by pointer, as the whole family is
        std::cerr << utf8(exception->className()) << ' ' << exception->code() << '\n';
        delete exception;
        return exitFailed;
    }
}
