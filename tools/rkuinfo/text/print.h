// What a command says, and how it fails.
#pragma once

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

/// Prints a line on standard output; whether it could be is asked at the end.
void print(std::string_view line);
/// Prints a sentence on standard error, behind what was printed.
void printError(std::string_view sentence);
