#include "session.h"

#include <RkUInfo.hpp>

#include <cstdio>

namespace {

void write(std::FILE* stream, std::string_view text)
{
    std::fwrite(text.data(), 1, text.size(), stream);
}

} // namespace

void require(TarvoConfig::Error error, const std::string& subject)
{
    if (error != TarvoConfig::eOk) {
        throw Failure(subject + ": " + make_error_code(error).message());
    }
}

void print(std::string_view line)
{
    write(stdout, line);
    write(stdout, "\n");
}

void printError(std::string_view sentence)
{
    std::fflush(stdout);
    write(stderr, "rkuinfo: ");
    write(stderr, sentence);
    write(stderr, "\n");
}

void complain(Session& session, std::string_view sentence)
{
    printError(sentence);
    session.exitCode = exitFailed;
}
