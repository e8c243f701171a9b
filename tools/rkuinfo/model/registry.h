// The current user's registry by its own calls: they tell why something is refused, which the library does
// not.
//
// What a command shows it reads here, without starting the library: start-up remembers in the registry what
// it chose, and looking must change nothing, not even when it is ended in between or run twice at a time.
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

    bool sameData(const Value& other) const { return type == other.type && data == other.data; }
};

/// A key of the current user. Every operation throws the system's reason when it is refused.
class Key
{
public:
    static std::optional<Key> find(const Text& path, unsigned long access = KEY_READ);
    /// Opened for writing; made with everything above it.
    static Key make(const Text& path);

    /// In the system's order.
    std::vector<Text> keys() const;
    std::vector<Value> values() const;
    std::optional<Value> value(const Text& name) const;

    void set(const Value& value) const;
    /// False when there is none.
    bool removeValue(const Text& name) const;
    /// With everything below it.
    void removeKey(const Text& name) const;

    /// A key right below this one.
    std::optional<Key> below(const Text& name) const;

private:
    struct Close
    {
        void operator()(HKEY key) const { RegCloseKey(key); }
    };

    Key(HKEY key, Text path) : m_key(key), m_path(std::move(path)) {}
    [[noreturn]] void refuse(LSTATUS status) const;

    std::unique_ptr<std::remove_pointer_t<HKEY>, Close> m_key;
    Text m_path;
};

/// Why one of the two roots cannot be opened, and the remedy; empty when both can.
struct Trouble
{
    std::string problem;
    std::string remedy;
};
std::optional<Trouble> registryTrouble();

/// Whether the machine's part has a value.
bool machineValueExists(const Text& key, const wchar_t* name);
