// SPDX-License-Identifier: MIT
// RkUInfo.hpp: the interface for C++20 clients: typed reads and writes of settings, ranges over keys and
// values, and error codes. All functions are inline and call those of RkUInfo.h; this header adds
// neither exports nor state.
//
//     rkuinfo::get<std::int32_t>(TarvoConfig::eSettings, L"Display/Colors/Back");
//     for (auto& value : rkuinfo::values(TarvoConfig::eSettings, L"Display")) { ... }
#pragma once

#if (defined(_MSVC_LANG) ? _MSVC_LANG : __cplusplus) < 202002L
#error "RkUInfo.hpp needs C++20: compile with /std:c++20 or -std=c++20; RkUInfo.h needs C++14"
#endif

#include "RkUInfo.h"
#include "RkUInfo/Text.hpp"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <vector>

namespace rkuinfo {

// ---- Text --------------------------------------------------------------------------------------------

using Bytes = std::vector<std::byte>;

/// Returns the result of a function that fills a buffer of 1024 characters, such as
/// GetUserApplicationDataSupportPath, or an empty string if that function fails.
inline Text text(unsigned long (*function)(wchar_t*))
{
    wchar_t buffer[1024];
    return function(buffer) > 0 ? text(buffer) : Text();
}

/// A string argument: a pointer to a literal (L"...") or a copy of a Text. A null or empty sub-path means the
/// subtree's own key; a null or empty value path means that key's default value. A string ends at its first
/// null character.
class Argument
{
public:
    Argument() = default;
    Argument(std::nullptr_t) {}
    Argument(const wchar_t* text) : m_literal(text) {}
    template <std::convertible_to<TextView> Source>
    Argument(const Source& source)
    {
        const TextView view = source;
        m_copy.assign(view.begin(), view.end());
        m_copy.push_back(0);
    }

    operator const wchar_t*() const { return m_copy.empty() ? m_literal : m_copy.data(); }

private:
    const wchar_t* m_literal = nullptr;
    std::vector<wchar_t> m_copy; // the terminated copy of a Text, or empty if the Text is a literal
};

// ---- Errors ------------------------------------------------------------------------------------------

/// Returns the category of TarvoConfig::Error. Each module has its own category object, so compare error
/// codes from different modules by value().
inline const std::error_category& category()
{
    struct Category final : std::error_category
    {
        const char* name() const noexcept override { return "rkuinfo"; }
        std::string message(int error) const override
        {
            switch (error) {
            case TarvoConfig::eOk:
                return "success";
            case TarvoConfig::eNotFound:
                return "not found";
            case TarvoConfig::eWrongType:
                return "stored with another type";
            case TarvoConfig::eInvalidIterator:
                return "nothing to iterate over";
            case TarvoConfig::eRegistryError:
                return "refused by the registry";
            case TarvoConfig::eBufferTooSmall:
                return "name too long";
            case TarvoConfig::eInvalidInput:
                return "name too long, or start-up missing";
            default:
                return "unknown error";
            }
        }
    };
    static const Category instance;
    return instance;
}

} // namespace rkuinfo

/// Converts an error to a std::error_code, whose constructor calls this function.
inline std::error_code make_error_code(TarvoConfig::Error error)
{
    return {error, rkuinfo::category()};
}

/// @cond
template <>
struct std::is_error_code_enum<TarvoConfig::Error> : std::true_type
{
};
/// @endcond

namespace rkuinfo {

// ---- Values ------------------------------------------------------------------------------------------

template <typename T>
concept Integer = std::signed_integral<T> &&(sizeof(T) == 4 || sizeof(T) == 8) &&
                  (!std::same_as<T, long> || sizeof(long) == 8);

/// The types that a setting can be read as. A 32-bit integer is stored as eInt, a 64-bit integer as
/// eInt64. The type long is accepted only if it is 64 bits wide, as on 64-bit Linux.
template <typename T>
concept Setting = Integer<T> || std::same_as<T, double> || std::same_as<T, Text> || std::same_as<T, Bytes>;

/// The types that can be stored as a setting.
template <typename T>
concept Storable = Setting<T> || std::floating_point<T> || std::convertible_to<const T&, Argument>;

/// Returns a variant's value if it has type T; never converts. The registry stores a double as eight
/// bytes, so binary data of eight bytes counts as a double.
template <Setting T>
std::optional<T> as(const VelaVariant& value)
{
    const auto* const bytes = static_cast<const std::byte*>(value.getBinary());
    const auto size = bytes != nullptr ? static_cast<std::size_t>(value.blockSize()) - 4 : 0;
    if constexpr (std::same_as<T, double>) {
        if (value.type() == VelaVariant::eBinary && size == sizeof(double)) {
            double number = 0;
            std::memcpy(&number, bytes, sizeof number);
            return number;
        }
        return value.type() == VelaVariant::eDouble ? std::optional(value.getDouble()) : std::nullopt;
    } else if constexpr (std::same_as<T, Text>) {
        return value.type() == VelaVariant::eString ? std::optional(text(value.getString())) : std::nullopt;
    } else if constexpr (std::same_as<T, Bytes>) {
        return value.type() == VelaVariant::eBinary ? std::optional(Bytes(bytes, bytes + size))
                                                    : std::nullopt;
    } else if constexpr (sizeof(T) == 4) {
        return value.type() == VelaVariant::eInt ? std::optional<T>(value.getInt()) : std::nullopt;
    } else {
        return value.type() == VelaVariant::eInt64 ? std::optional<T>(value.getInt64()) : std::nullopt;
    }
}

template <Integer T>
VelaVariant variant(T value)
{
    VelaVariant result;
    if constexpr (sizeof(T) == 4) {
        result.setInt(value);
    } else {
        result.setInt64(value);
    }
    return result;
}

template <std::floating_point T>
VelaVariant variant(T value)
{
    VelaVariant result;
    result.setDouble(value);
    return result;
}

inline VelaVariant variant(const Argument& value)
{
    VelaVariant result;
    result.setString(value);
    return result;
}

inline VelaVariant variant(const Bytes& value)
{
    VelaVariant result;
    result.setBinary(value.data(), static_cast<std::int32_t>(value.size()));
    return result;
}

// ---- Settings ----------------------------------------------------------------------------------------

/// Reads a setting by its value path, such as "Display/Colors/Back". Returns std::nullopt and sets error if
/// the setting cannot be read or has another type; otherwise clears error.
template <typename T>
std::optional<T> get(TarvoConfig::Path path, const Argument& valuePath, std::error_code& error)
{
    static_assert(Setting<T>, "a setting is read as std::int32_t, std::int64_t, double, Text or Bytes");
    VelaVariant value;
    error = velaConfig()->getValue(path, valuePath, value);
    if (error) {
        return std::nullopt;
    }
    std::optional<T> result = as<T>(value);
    if (!result) {
        error = TarvoConfig::eWrongType;
    }
    return result;
}

template <typename T>
std::optional<T> get(TarvoConfig::Path path, const Argument& valuePath)
{
    std::error_code ignored;
    return get<T>(path, valuePath, ignored);
}

/// Writes a setting; creates its key if needed. Empty Bytes are not stored.
template <typename T>
[[nodiscard]] std::error_code set(TarvoConfig::Path path, const Argument& valuePath, const T& value)
{
    static_assert(
        Storable<T>,
        "a setting is written as std::int32_t, std::int64_t, double, string or Bytes: convert to one");
    if constexpr (Storable<T>) {
        return velaConfig()->setValue(path, valuePath, variant(value));
    }
}

// ---- Ranges ------------------------------------------------------------------------------------------

namespace detail {

/// Reads a name; `read` must call an iterator's name() or key().
template <typename ReadName>
TarvoConfig::Error readName(ReadName read, Text& name)
{
    constexpr long capacity = 1024; // name() and key() never return longer names
    wchar_t buffer[capacity];
    long length = capacity;
    const TarvoConfig::Error error = read(buffer, length);
    name = error == TarvoConfig::eOk ? text(buffer) : Text();
    return error;
}

} // namespace detail

/// The entries of one key, as a single-pass range that cannot be copied or moved. Entries that are added
/// during the walk may be missed. If findItem fails, the range is empty and error() returns the reason.
template <typename Cursor>
class Range
{
public:
    class Iterator
    {
    public:
        using iterator_concept = std::input_iterator_tag;
        using value_type = typename Cursor::Entry;
        using difference_type = std::ptrdiff_t;

        explicit Iterator(Range& range) : m_range(&range) {}
        value_type& operator*() const { return m_range->m_entry; }
        value_type* operator->() const { return &m_range->m_entry; }
        Iterator& operator++()
        {
            m_range->advance();
            return *this;
        }
        void operator++(int) { m_range->advance(); }
        bool operator==(std::default_sentinel_t) const { return m_range->m_atEnd; }

    private:
        Range* m_range;
    };

    Range(TarvoConfig::Path path, const Argument& item)
        : m_error(velaConfig()->findItem(path, item, m_cursor.position)), m_atEnd(!m_cursor.read(m_entry))
    {
    }
    Range(const Range&) = delete;
    Range& operator=(const Range&) = delete;
    ~Range() = default;

    Iterator begin() { return Iterator(*this); }
    std::default_sentinel_t end() const { return {}; }
    std::error_code error() const { return m_error; }

private:
    void advance() { m_atEnd = m_cursor.position.step() != TarvoConfig::eOk || !m_cursor.read(m_entry); }

    Cursor m_cursor;
    typename Cursor::Entry m_entry;
    std::error_code m_error;
    bool m_atEnd;
};

/// A named value of a key; the default value's name is empty.
struct Value
{
    Text name;
    VelaVariant data;
    std::error_code error; ///< set if the name or the data could not be read

    template <Setting T>
    std::optional<T> as() const
    {
        return rkuinfo::as<T>(data);
    }
};

namespace detail {

struct ItemCursor
{
    using Entry = Text;

    bool read(Entry& name) const
    {
        return readName([this](wchar_t* buffer, long& length) { return position.name(buffer, length); },
                        name) != TarvoConfig::eInvalidIterator;
    }

    TarvoConfig::ItemIterator position;
};

struct ValueCursor
{
    using Entry = Value;

    /// Returns false if the position is past the end.
    bool read(Entry& value) const
    {
        value.data = VelaVariant();
        TarvoConfig::Error error = readName(
            [this](wchar_t* buffer, long& length) { return position.key(buffer, length); }, value.name);
        if (error == TarvoConfig::eInvalidIterator) {
            return false;
        }
        if (error == TarvoConfig::eOk) {
            error = position.value(value.data);
        }
        value.error = error;
        return true;
    }

    TarvoConfig::ValueIterator position;
};

} // namespace detail

/// Returns the names of a key's sub-keys.
inline Range<detail::ItemCursor> items(TarvoConfig::Path path, const Argument& item = {})
{
    return {path, item};
}

/// Returns the values of a key.
inline Range<detail::ValueCursor> values(TarvoConfig::Path path, const Argument& item = {})
{
    return {path, item};
}

} // namespace rkuinfo
