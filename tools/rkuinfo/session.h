// What every command shares: whom to be, how to print, and how a command fails.
#pragma once

#include <RkUInfo.h>

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

constexpr int exitFailed = 1;
constexpr int exitUsage = 2;

/// Ends a command with one sentence for the user.
class Failure : public std::runtime_error
{
public:
    explicit Failure(const std::string& sentence, int exitCode = exitFailed)
        : std::runtime_error(sentence), m_exitCode(exitCode)
    {
    }

    int exitCode() const { return m_exitCode; }

private:
    int m_exitCode;
};

/// Throws unless the library did what it was asked.
void require(TarvoConfig::Error error, const std::string& subject);

/// The command line's options; empty where one is not given.
struct Session
{
    std::string company;
    std::string product;
    std::string language;
    std::string profile;
    std::size_t columns = 0; ///< asked for; 0 leaves it to the terminal
    bool json = false;

    int exitCode = 0;
};

/// Prints a line on standard output; whether it could be is asked at the end.
void print(std::string_view line);
/// Prints a sentence on standard error, behind what was printed.
void printError(std::string_view sentence);
/// The same, and lets the process end with exit code 1 later on.
void complain(Session& session, std::string_view sentence);
