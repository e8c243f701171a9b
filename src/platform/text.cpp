#include "platform/text.h"

#include <windows.h>

#include <algorithm>
#include <charconv>
#include <iterator>

namespace uinfo {

std::size_t length(const wchar_t* text)
{
    if (text == nullptr) {
        return 0;
    }
    // Unrolled, because reading a setting spends most of its time here.
    const wchar_t* end = text;
    while (end[0] != 0) {
        if (end[1] == 0) {
            return static_cast<std::size_t>(end + 1 - text);
        }
        if (end[2] == 0) {
            return static_cast<std::size_t>(end + 2 - text);
        }
        if (end[3] == 0) {
            return static_cast<std::size_t>(end + 3 - text);
        }
        end += 4;
    }
    return static_cast<std::size_t>(end - text);
}

bool equalIgnoringCase(const wchar_t* a, const wchar_t* b)
{
    constexpr int terminated = -1;
    return CompareStringOrdinal(a == nullptr ? L"" : a, terminated, b == nullptr ? L"" : b, terminated,
                                TRUE) == CSTR_EQUAL;
}

wchar_t* duplicate(const wchar_t* text)
{
    if (text == nullptr) {
        return nullptr;
    }
    const std::size_t count = length(text) + 1;
    auto* const copy = new wchar_t[count];
    std::copy_n(text, count, copy);
    return copy;
}

std::size_t folderLength(const wchar_t* path)
{
    const auto endsFolder = [path](std::size_t index) {
        return path[index] == L'\\' || path[index] == L'/' || (index == 1 && path[index] == L':');
    };
    std::size_t count = length(path);
    while (count > 0 && !endsFolder(count - 1)) {
        --count;
    }
    return count;
}

BoundedText BoundedText::appendingTo(wchar_t* storage, std::size_t capacity)
{
    const std::size_t held = uinfo::length(storage);
    BoundedText text(storage + held, capacity - held);
    text.m_storage = storage;
    text.m_capacity = capacity;
    text.m_length = held;
    return text;
}

bool BoundedText::appendNumber(std::int32_t number)
{
    char digits[16];
    const std::to_chars_result end = std::to_chars(std::begin(digits), std::end(digits), number);
    wchar_t wide[16];
    std::copy(std::begin(digits), end.ptr, wide);
    return appendPart(wide, static_cast<std::size_t>(end.ptr - digits));
}

void BoundedText::measure()
{
    m_storage[m_capacity - 1] = 0;
    m_length = uinfo::length(m_storage);
}

} // namespace uinfo
