// The registry's keys and values in the store. Functions that access the store must be called in a
// Transaction. On failure, they throw Failure.
#pragma once

#include "database/database.h"
#include "text.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace winhost::registry {

using database::check;
using database::Failure;
using database::outcome;
using database::Query;
using database::require;

using NodeId = std::int64_t;

constexpr NodeId currentUserId = 1;
constexpr NodeId localMachineId = 2;

constexpr std::size_t longestKeyName = 256;
constexpr std::size_t longestValueName = 16383;

/// A look-up whose result find() caches.
struct Lookup
{
    enum Kind : std::uint32_t
    {
        ePath,     ///< the key at a path with backslashes as separators; a leading backslash is an error
        eValue,    ///< the value with the given name
        eSubKeyAt, ///< the sub-key at an index, in the order of names
        eValueAt
    };

    Kind kind;
    TextView text = {};
    DWORD index = 0;
    NodeId node = 0;
};

/// The entry that precedes an index in an enumeration.
struct Previous
{
    Text name;
    bool isOutdated; ///< another process may have written since
};

struct Result
{
    LSTATUS status = ERROR_SUCCESS; ///< on failure, the other members are unset
    DWORD type = 0;
    NodeId node = 0; ///< of a path
    std::string data = {};
    Text name = {}; ///< the original spelling of the name; unset for a path
};

/// Returns the cached result if there is one; otherwise reads the store. If the previous entry of an
/// enumeration is outdated, returns the entry whose name follows in sort order, and caches nothing. Do not
/// call this after a change in the same Transaction.
Result find(const Lookup& lookup, const Previous* previous = nullptr);

/// The numbers of a key's sub-keys and values, and the maximum lengths in bytes of their names and data.
struct Measure
{
    std::int64_t subKeys = 0;
    std::int64_t longestSubKey = 0;
    std::int64_t values = 0;
    std::int64_t longestValueName = 0;
    std::int64_t longestData = 0;
};
Measure measure(NodeId node);

// ---- Changes

/// Creates the missing keys of a path, and sets `created` if any were missing. Returns the key at the path.
NodeId createPath(NodeId start, TextView path, bool& created);
/// Sets a value, and returns what a later find() would return.
Result setValue(NodeId node, TextView name, DWORD type, std::string_view data);
void deleteValue(NodeId node, TextView name);
/// Deletes a key; throws ERROR_ACCESS_DENIED for a root and for a key that has sub-keys.
void deleteKey(NodeId node);
/// Deletes all sub-keys and values and, if withItself is true, the key itself.
void deleteTree(NodeId node, bool withItself);

// ---- Bytes as they are stored

inline std::string_view bytesOf(TextView text)
{
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
}

/// Adds a word to a checksum. A change in only one word always changes the checksum, and any other change
/// almost certainly does.
inline std::uint64_t mix(std::uint64_t sum, std::uint64_t word)
{
    constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;
    sum = (sum ^ word) * odd;
    return sum ^ (sum >> 32);
}

inline std::uint64_t mix(std::uint64_t sum, std::string_view bytes)
{
    sum = mix(sum, bytes.size());
    for (std::size_t at = 0; at <= bytes.size(); at += sizeof sum) {
        std::uint64_t word = 0;
        bytes.copy(reinterpret_cast<char*>(&word), sizeof word, at);
        sum = mix(sum, word);
    }
    return sum;
}

} // namespace winhost::registry
