// Compares this library with other settings stores on Linux: how long they take to read or write a setting.
#include "peers/peers.h"

#include "settings.h"

#include <filesystem>

namespace {

using bench::require;

bench::Pair reading(TarvoConfig& config, const std::string& against, bench::Peer& peer, double limit)
{
    return {"getValue of an integer", against, limit,
            [&config, value = VelaVariant()]() mutable {
                require(config.getValue(TarvoConfig::eSettings, bench::framesPath, value) == TarvoConfig::eOk,
                        "getValue");
                bench::use(value.getInt());
            },
            [&peer] { require(peer.read() > 0, "reading of a peer"); }};
}

bench::Pair readingInTurn(TarvoConfig& config, const std::string& against, bench::Peer& peer, double limit)
{
    return {"getValue of 1,000 integers in turn", against, limit,
            [&config, value = VelaVariant(), settings = bench::Rotation()]() mutable {
                require(config.getValue(TarvoConfig::eSettings, settings.next().text, value) ==
                            TarvoConfig::eOk,
                        "getValue");
                bench::use(value.getInt());
            },
            [&peer] { require(peer.readNext() > 0, "reading of a peer"); }};
}

bench::Pair writing(TarvoConfig& config, const std::string& against, bench::Peer& peer, double limit)
{
    return {"setValue of an integer", against, limit,
            [&config, number = 0, value = VelaVariant()]() mutable {
                value.setInt(++number);
                require(config.setValue(TarvoConfig::eSettings, bench::framesPath, value) == TarvoConfig::eOk,
                        "setValue");
            },
            [&peer, number = 0]() mutable { require(peer.write(++number), "writing of a peer"); }};
}

} // namespace

/// Arguments: an empty folder, the file for the results, and optionally a string. If a string is given, only
/// rows whose names contain it are measured.
int main(int argc, char** argv) // NOLINT(bugprone-exception-escape): it then terminates
{
    require(argc > 2, "reading the arguments");
    const std::string folder = std::filesystem::absolute(argv[1]).string();
    TarvoConfig& config = bench::startWithSettings();
    const auto dconf = bench::openDconf(folder);
    const auto keyFile = bench::openKeyFile(folder);
    const auto sqlite = bench::openSqlite(folder);
    const auto qSettings = bench::openQSettings(folder);
    std::FILE* const out = std::fopen(argv[2], "w");
    require(out != nullptr, "opening the file of results");
    bench::run(
        {
            reading(config, "dconf, dconf_client_read", *dconf, 1),
            readingInTurn(config, "dconf, dconf_client_read", *dconf, 1),
            reading(config, "QSettings, sync and value", *qSettings, 0.25),
            reading(config, "SQLite, a prepared select", *sqlite, 1),
            reading(config, "GKeyFile in memory", *keyFile, 0),
            writing(config, "QSettings, setValue and sync", *qSettings, 0.05),
            writing(config, "SQLite, a prepared update", *sqlite, 1.5),
        },
        out, argc > 3 ? argv[3] : "");
    std::fclose(out);
    return 0;
}
