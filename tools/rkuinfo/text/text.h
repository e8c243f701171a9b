// Functions for text, and for the output and the errors of commands. The library uses UTF-16, the command
// line and the output UTF-8.
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

/// Returns the path of a key below another one. Either may be empty.
Text joinedKey(TextView key, TextView name);
/// Returns a path up to its last separator; empty for a single name.
TextView parentKey(TextView path);
/// Returns the part of a path after its last separator.
TextView lastName(TextView path);

/// Returns whether the text is valid UTF-16: it has no lone surrogate.
bool isValid(TextView text);

/// Returns the lowest digits of a number in hexadecimal.
std::string hexDigits(std::uint32_t number, int count);

/// Replaces by \uXXXX what a terminal would obey instead of drawing: control characters, bidirectional marks
/// and lone surrogates, but not the character kept. JSON stays the same JSON.
std::string shown(std::string_view text, char32_t kept = 0);
std::string shown(TextView text);

/// Returns a number below, equal to or above 0, in the order of names in the registry.
int compareIgnoringCase(TextView a, TextView b);
inline bool equalIgnoringCase(TextView a, TextView b)
{
    return compareIgnoringCase(a, b) == 0;
}
bool containsIgnoringCase(TextView text, TextView part);

constexpr int exitFailed = 1;
constexpr int exitUsage = 2;

/// Ends a command with one sentence for the user: the problem, and the remedy after a semicolon.
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

/// Prints a line on standard output. main() checks at the end whether the output could be written.
void print(std::string_view line);
/// Prints a sentence on standard error, after everything that was printed before.
void printError(std::string_view sentence);
/// Prints the progress of a long operation on a terminal, four times a second.
void showProgress(const char* what, std::size_t done);
/// Erases what showProgress printed.
void finishProgress();

struct Layout
{
    std::optional<std::size_t> columns; ///< without a value, cells are separated by tabs
    bool coloured = false;
};

/// The number of the terminal's sequence ESC [ number m.
enum class Style
{
    plain = 0,
    heading = 1,
    bad = 31, ///< what is wrong, or removed
    good = 32,
    name = 36,
    quiet = 90, ///< also for what is merely absent
};

struct Cell
{
    std::string text;
    Style style = Style::plain;
};

/// A row of a single cell is a heading, which only people see.
using Table = std::vector<std::vector<Cell>>;

/// Prints rows for people, aligned and coloured, with the last column folded at the right edge; for programs,
/// with a tab between the cells.
void printTable(const Table& table, const Layout& layout);
