// Bounded strings, and a few functions for wide strings. The C runtime's functions cannot be used, because on
// Linux they expect a 32-bit wchar_t.
#pragma once

#include "platform/limits.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace uinfo {

inline bool isEmpty(const wchar_t* text)
{
    return text == nullptr || *text == 0;
}

/// Returns the number of characters before the terminator, or 0 for a null pointer.
std::size_t length(const wchar_t* text);

/// Compares two strings, ignoring case as the system does in file and key names. Null equals the empty
/// string.
bool equalIgnoringCase(const wchar_t* a, const wchar_t* b);

/// Returns a copy that the caller must free with delete[], or null if the argument is null.
wchar_t* duplicate(const wchar_t* text);

/// Returns the length of a path's folder part, which includes the last separator. In "C:name" the folder part
/// is "C:". Returns 0 if the path has no separator and no drive.
std::size_t folderLength(const wchar_t* path);

inline constexpr std::size_t anyLength = SIZE_MAX;

/// Builds a terminated string in a buffer. The capacity includes the terminator, and must be at least 1. If
/// the result would exceed the capacity or `longest` characters, an append function appends nothing and
/// returns false.
class BoundedText
{
public:
    /// Starts with the empty string.
    BoundedText(wchar_t* storage, std::size_t capacity) : m_storage(storage), m_capacity(capacity) { cut(0); }

    /// Starts with the string in `storage`.
    static BoundedText appendingTo(wchar_t* storage, std::size_t capacity);

    [[nodiscard]] bool append(const wchar_t* text, std::size_t longest = anyLength)
    {
        return isEmpty(text) || appendPart(text, uinfo::length(text), longest);
    }
    [[nodiscard]] bool appendPart(const wchar_t* text, std::size_t count, std::size_t longest = anyLength)
    {
        return appendAt(m_length, text, count, longest);
    }
    /// Appends a backslash and a string, or nothing if they do not fit.
    [[nodiscard]] bool appendComponent(const wchar_t* text, std::size_t longest = anyLength)
    {
        return appendComponentPart(text, uinfo::length(text), longest);
    }
    [[nodiscard]] bool appendComponentPart(const wchar_t* text, std::size_t count,
                                           std::size_t longest = anyLength)
    {
        const std::size_t separator = m_length;
        const bool fits = appendAt(separator + 1, text, count, longest);
        if (fits) {
            m_storage[separator] = L'\\';
        }
        return fits;
    }
    [[nodiscard]] bool appendNumber(std::int32_t number);

    /// Truncates the string to newLength characters.
    void cut(std::size_t newLength)
    {
        m_length = newLength;
        m_storage[newLength] = 0;
    }

    /// Updates the length after a system call has written to data().
    void measure();

    wchar_t* data() { return m_storage; }
    const wchar_t* text() const { return m_storage; }
    std::size_t length() const { return m_length; }
    std::size_t capacity() const { return m_capacity; }
    bool empty() const { return m_length == 0; }

private:
    /// Writes `text` at index `start`. This may be length() + 1: the caller then writes the separator.
    bool appendAt(std::size_t start, const wchar_t* text, std::size_t count, std::size_t longest)
    {
        const std::size_t end = std::min(m_capacity - 1, longest);
        if (start > end || count > end - start) {
            return false;
        }
        std::copy_n(text, count, m_storage + start);
        cut(start + count);
        return true;
    }

    wchar_t* m_storage;
    std::size_t m_capacity;
    std::size_t m_length = 0;
};

/// A BoundedText with its own buffer. The characters after the terminator are not initialised.
template <std::size_t Capacity>
class TextBuffer : public BoundedText
{
public:
    TextBuffer() : BoundedText(m_characters, Capacity) {}
    TextBuffer(const TextBuffer& other) : TextBuffer()
    {
        std::copy_n(other.text(), other.length() + 1, data());
        measure();
    }
    TextBuffer& operator=(const TextBuffer&) = delete;

private:
    wchar_t m_characters[Capacity];
};

using PathBuffer = TextBuffer<pathCapacity>;

} // namespace uinfo
