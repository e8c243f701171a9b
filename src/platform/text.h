// Bounded texts, and the few wide text routines of the library: the C runtime's assume the host's own
// wchar_t.
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

/// Characters before the terminator; 0 for null.
std::size_t length(const wchar_t* text);

/// Whether two texts are equal as the system's own names are, ignoring case. Null equals the empty text.
bool equalIgnoringCase(const wchar_t* a, const wchar_t* b);

/// An array-allocated copy, which the caller owns; null stays null.
wchar_t* duplicate(const wchar_t* text);

/// The characters up to and including the last path separator, or a leading drive; 0 for neither.
std::size_t folderLength(const wchar_t* path);

/// Builds a terminated text in storage of fixed capacity (terminator counted), which must be 1 or more. What
/// does not fit whole is not appended.
class BoundedText
{
public:
    /// Starts empty.
    BoundedText(wchar_t* storage, std::size_t capacity) : m_storage(storage), m_capacity(capacity) { cut(0); }

    /// Goes on behind the text that the storage holds.
    static BoundedText behind(wchar_t* storage, std::size_t capacity);

    bool append(const wchar_t* text, std::size_t count) { return appendAt(m_length, text, count); }
    bool append(const wchar_t* text) { return isEmpty(text) || append(text, uinfo::length(text)); }
    /// Appends one backslash and the text, or nothing.
    bool appendComponent(const wchar_t* text, std::size_t count)
    {
        const std::size_t separator = m_length;
        const bool fits = appendAt(separator + 1, text, count);
        if (fits) {
            m_storage[separator] = L'\\';
        }
        return fits;
    }
    bool appendComponent(const wchar_t* text) { return appendComponent(text, uinfo::length(text)); }
    bool appendNumber(std::int32_t number);

    /// Keeps the first characters.
    void cut(std::size_t newLength)
    {
        m_length = newLength;
        m_storage[newLength] = 0;
    }

    /// Takes over what a system call wrote into the storage.
    void measure();

    wchar_t* data() { return m_storage; }
    const wchar_t* text() const { return m_storage; }
    std::size_t length() const { return m_length; }
    std::size_t capacity() const { return m_capacity; }
    bool empty() const { return m_length == 0; }

private:
    /// Writes behind the first characters, of which one more than the text's may be new.
    bool appendAt(std::size_t start, const wchar_t* text, std::size_t count)
    {
        if (start >= m_capacity || count >= m_capacity - start) {
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

/// A BoundedText with storage of its own. Only the terminator is cleared.
template <std::size_t Capacity>
class TextBuffer : public BoundedText
{
public:
    TextBuffer() : BoundedText(m_characters, Capacity) {}
    TextBuffer(const TextBuffer& other) : TextBuffer() { append(other.text(), other.length()); }
    TextBuffer& operator=(const TextBuffer&) = delete;

private:
    wchar_t m_characters[Capacity];
};

using PathBuffer = TextBuffer<pathCapacity>;

} // namespace uinfo
