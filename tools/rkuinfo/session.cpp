#include "session.h"

#include <RkUInfo.hpp>

#include <fmt/format.h>

#include <cstdio>

void require(TarvoConfig::Error error, const std::string& subject)
{
    if (error != TarvoConfig::eOk) {
        throw Failure(subject + ": " + make_error_code(error).message());
    }
}

void complain(Session& session, const std::string& sentence)
{
    std::fflush(stdout);
    fmt::print(stderr, "rkuinfo: {}\n", sentence);
    session.exitCode = exitFailed;
}
