#include "text/print.h"

#include <cstdio>

namespace {

void write(std::FILE* stream, std::string_view text)
{
    std::fwrite(text.data(), 1, text.size(), stream);
}

} // namespace

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
