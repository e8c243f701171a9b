// Text, and how a command prints and fails. The library uses UTF-16, the command line and the output UTF-8.
#pragma once

#include <RkUInfo.hpp>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

using rkuinfo::Text;
using rkuinfo::TextView;
using rkuinfo::utf16;
using rkuinfo::utf8;

constexpr Text::value_type separator = '\\';

/// The path of a key below another one. Either may be empty.
Text joinedKey(TextView key, TextView name);
/// A path up to its last separator; empty for a single name.
TextView parentKey(TextView path);
/// The last name of a path.
TextView lastName(TextView path);

/// Whether the text is valid UTF-16: it has no lone surrogate.
bool isValid(TextView text);

/// The lowest so many hexadecimal digits of a number.
std::string hexDigits(std::uint32_t number, int count);

/// Replaces what a terminal would obey instead of drawing by \uXXXX: control characters, bidirectional marks
/// and lone surrogates, but not the character kept. JSON stays the same JSON.
std::string shown(std::string_view text, char kept = 0);
std::string shown(TextView text);

/// The columns that a UTF-8 text takes on a terminal.
std::size_t displayWidth(std::string_view bytes);

/// Less than 0, 0 or more than 0, as the registry orders names.
int compareIgnoringCase(TextView a, TextView b);
inline bool equalIgnoringCase(TextView a, TextView b)
{
    return compareIgnoringCase(a, b) == 0;
}
bool containsIgnoringCase(TextView text, TextView part);

constexpr int exitFailed = 1;
constexpr int exitUsage = 2;

/// Ends a command with one sentence for the user.
class Failure : public std::runtime_error
{
public:
    explicit Failure(const std::string& sentence, int code = exitFailed)
        : std::runtime_error(sentence), exitCode(code)
    {
    }

    const int exitCode;
};

/// Prints a line on standard output. main() checks at the end whether the output could be written.
void print(std::string_view line);
/// Prints a sentence on standard error, after everything that was printed before.
void printError(std::string_view sentence);
/// Shows on a terminal how far a long operation is, four times a second; a total of 0 is unknown.
void showProgress(const char* what, std::size_t done, std::size_t total = 0);
/// Erases it.
void finishProgress();
