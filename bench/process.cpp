// Compares how long a client and an empty program take to start and exit.
#include "pairs.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void run(const std::string& program)
{
    char* arguments[] = {const_cast<char*>(program.c_str()), nullptr};
    pid_t child = 0;
    int status = -1;
    bench::require(posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments, environ) == 0 &&
                       waitpid(child, &status, 0) == child && status == 0,
                   program.c_str());
}

} // namespace

/// Arguments: the file for the results, and the folder that contains the two programs.
int main(int argc, char** argv)
{
    bench::require(argc > 2, "reading the arguments");
    const std::string folder = argv[2];
    std::FILE* const out = std::fopen(argv[1], "w");
    bench::require(out != nullptr, "opening the file of results");
    bench::Pair pair{"load and InitVelaConfig", "an empty program", 0, [&] { run(folder + "/bench_start"); },
                     [&] { run(folder + "/bench_empty"); }};
    pair.differenceLimit = 3e6;
    bench::run({pair}, out, "");
    std::fclose(out);
    return 0;
}
