// The current user's registry by its own calls: they return why something is refused, which the library does
// not.
//
// Commands that look read the registry here, without starting the library: start-up records in the registry
// what it chose, and looking must change nothing, even when it is interrupted or run twice at a time.
#pragma once

#include "text/text.h"

#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include <windows.h>

/// A value as it is stored.
struct Value
{
    Text name;
    unsigned long type = REG_NONE;
    std::string data;
};

/// What could not be read, and why.
using Losses = std::vector<std::string>;

/// Reads something; with losses, appends to them why it cannot be read instead of throwing it.
template <typename Read>
void guard(Losses* losses, const Read& read)
{
    try {
        read();
    } catch (const Failure& failure) {
        if (losses == nullptr) {
            throw;
        }
        losses->push_back(failure.what());
    }
}

/// A key of the current user. Every operation throws the system's reason when it is refused.
class Key
{
public:
    static std::optional<Key> find(const Text& path, unsigned long access = KEY_READ);
    /// Opens a key for writing; creates it with everything above it.
    static Key make(const Text& path);

    /// The names of the keys right below. With losses, appends to them instead of throwing, and continues.
    std::vector<Text> keys(Losses* losses = nullptr) const;
    std::vector<Value> values(Losses* losses = nullptr) const;
    std::optional<Value> value(const Text& name) const;

    void set(const Value& value) const;
    /// Returns false when there is no such value.
    bool removeValue(const Text& name) const;
    /// Removes a key right below this one with everything below it.
    void removeKey(const Text& name) const;

    /// Opens a key right below this one.
    std::optional<Key> below(const Text& name) const;

private:
    struct Close
    {
        void operator()(HKEY key) const { RegCloseKey(key); }
    };

    Key(HKEY key, Text path) : m_key(key), m_path(std::move(path)) {}
    template <typename Call, typename Visit>
    void enumerate(Call call, std::size_t longest, Losses* losses, const Visit& visit) const;
    static std::optional<Key> open(HKEY parent, const Text& name, unsigned long access, Text path);

    std::unique_ptr<std::remove_pointer_t<HKEY>, Close> m_key;
    Text m_path;
};

struct Trouble
{
    std::string problem;
    std::string remedy;
};
/// Why one of the two roots cannot be opened; nothing when both can.
std::optional<Trouble> registryTrouble();
/// What a status of the registry means, and where the registry is.
Trouble trouble(LSTATUS status, const std::string& subject);
