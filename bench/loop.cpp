// Repeats one operation of the library or of another store. Run it under a tool such as valgrind. Prints the
// processor time of the operation in nanoseconds.
#include "peers/peers.h"

#include "settings.h"

#include <ctime>

namespace {

using bench::require;
using Operation = std::function<void()>;

Operation ofLibrary(const std::string& what)
{
    TarvoConfig& config = bench::startWithSettings();
    if (what == "write") {
        return [&config, value = VelaVariant(), number = 0]() mutable {
            value.setInt(++number);
            require(config.setValue(TarvoConfig::eSettings, bench::framesPath, value) == TarvoConfig::eOk,
                    "setValue");
        };
    }
    return [&config, value = VelaVariant(), inTurn = what == "turn", all = bench::Rotation()]() mutable {
        const wchar_t* const path = inTurn ? all.next().text : bench::framesPath;
        require(config.getValue(TarvoConfig::eSettings, path, value) == TarvoConfig::eOk, "getValue");
    };
}

Operation of(bench::Peer& peer, const std::string& what)
{
    if (what == "write") {
        return [&peer, number = 0]() mutable { require(peer.write(++number), "writing"); };
    }
    return [&peer, inTurn = what == "turn"] {
        require((inTurn ? peer.readNext() : peer.read()) > 0, "reading");
    };
}

} // namespace

/// Arguments: the store ("ours", "dconf" or "sqlite"), the operation ("read" reads one value, "turn" reads
/// 1,000 values in turn, "write" writes one value), the number of repetitions, and an empty folder.
int main(int argc, char** argv) // NOLINT(bugprone-exception-escape): it then terminates
{
    require(argc > 4, "reading the arguments");
    const std::string store = argv[1], what = argv[2];
    const auto peer = store == "dconf"    ? bench::openDconf(argv[4])
                      : store == "sqlite" ? bench::openSqlite(argv[4])
                                          : nullptr;
    const Operation operation = peer != nullptr ? of(*peer, what) : ofLibrary(what);
    const long count = std::atol(argv[3]);
    const std::clock_t start = std::clock();
    for (long i = 0; i < count; ++i) {
        operation();
    }
    std::printf("%.0f\n", double(std::clock() - start) / CLOCKS_PER_SEC * 1e9 / double(count));
    return 0;
}
