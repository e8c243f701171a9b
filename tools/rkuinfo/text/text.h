// Functions for text, command output and errors. The library uses UTF-16; the command line and the output
// use UTF-8.
#pragma once

#include <RkUInfo.hpp>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

using rkuinfo::Text;
using rkuinfo::TextView;
using rkuinfo::utf16;
using rkuinfo::utf8;

constexpr Text::value_type separator = '\\';

/// Joins a key path and a name below it. Either argument may be empty.
Text joinedKey(TextView key, TextView name);
/// Returns a path up to its last separator, or an empty string if the path is a single name.
TextView parentKey(TextView path);
/// Returns the part of a path after its last separator.
TextView lastName(TextView path);

/// Returns whether the text is valid UTF-16, that is, contains no lone surrogate.
bool isValid(TextView text);

/// Returns the `count` least significant hexadecimal digits of a number.
std::string hexDigits(std::uint32_t number, int count);

/// Replaces characters that a terminal may interpret, such as control characters, bidirectional marks and
/// lone surrogates, with \uXXXX, as in JSON. Does not replace `kept`.
std::string shown(std::string_view text, char32_t kept = 0);
std::string shown(TextView text);

/// Compares two names. Returns 0 if the registry treats the names as equal, otherwise a negative or
/// positive number.
int compareIgnoringCase(TextView a, TextView b);
inline bool equalIgnoringCase(TextView a, TextView b)
{
    return compareIgnoringCase(a, b) == 0;
}
bool containsIgnoringCase(TextView text, TextView part);

constexpr int exitFailed = 1;
constexpr int exitUsage = 2;

/// An error that ends the command. The message states the problem and, after a semicolon, the fix.
class Failure : public std::runtime_error
{
public:
    explicit Failure(const std::string& why, const std::string& whatToDo = {}, int code = exitFailed)
        : std::runtime_error(whatToDo.empty() ? why : why + "; " + whatToDo),
          problem(why),
          remedy(whatToDo),
          exitCode(code)
    {
    }

    const std::string problem;
    const std::string remedy;
    const int exitCode;
};

/// Prints a line to standard output. main() checks at the end whether the output could be written.
void print(std::string_view line);
/// Flushes standard output, then prints an error message to standard error.
void printError(std::string_view sentence);
/// Prints the progress of a long operation at most four times a second, and only on a terminal.
void showProgress(const char* what, std::size_t done);
/// Erases what showProgress printed.
void finishProgress();

struct Layout
{
    std::optional<std::size_t> columns; ///< if not set, cells are separated by tabs
    bool coloured = false;
};

/// Text styles. A style's number N selects it in the escape sequence "ESC [ N m".
enum class Style
{
    plain = 0,
    heading = 1,
    bad = 31, ///< colours errors and removed rows
    good = 32,
    name = 36,
    quiet = 90, ///< colours notes and missing items
};

struct Cell
{
    std::string text;
    Style style = Style::plain;
};

/// A row with a single cell is a heading. Tab-separated output omits headings.
using Table = std::vector<std::vector<Cell>>;

/// Prints rows. If `layout.columns` is set, aligns and colours the cells and wraps the last column at the
/// right edge.
void printTable(const Table& table, const Layout& layout);
