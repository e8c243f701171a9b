#include "text.h"

#include "upcase_table.h"

#include <RkUInfo/Text.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace winhost {

wchar_t upcase(wchar_t unit)
{
    const auto number = static_cast<std::uint16_t>(unit);
    if (number < 0x80) {
        return static_cast<wchar_t>(number >= 'a' && number <= 'z' ? number - ('a' - 'A') : number);
    }
    const CaseRange* const next =
        std::upper_bound(std::begin(caseRanges), std::end(caseRanges), number,
                         [](std::uint16_t value, const CaseRange& range) { return value < range.first; });
    const CaseRange& range = *std::prev(next); // exists, because the first range starts below 0x80
    const bool inRange = number <= range.last && (number - range.first) % range.stride == 0;
    return inRange ? static_cast<wchar_t>(number + range.delta) : unit;
}

int compare(TextView a, TextView b, bool ignoreCase)
{
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (a[i] == b[i]) {
            continue;
        }
        const int difference = ignoreCase ? upcase(a[i]) - upcase(b[i]) : a[i] - b[i];
        if (difference != 0) {
            return difference;
        }
    }
    return (a.size() > common ? 1 : 0) - (b.size() > common ? 1 : 0);
}

std::string toUtf8(TextView text)
{
    return rkuinfo::utf8(rkuinfo::Text(text.begin(), text.end()));
}

Text fromUtf8(std::string_view bytes)
{
    rkuinfo::Text text;
    while (!bytes.empty()) {
        const std::string_view before = bytes;
        const char32_t point = rkuinfo::detail::takeCodePoint(bytes);
        const auto first = static_cast<unsigned char>(before[0]);
        const bool isPart = first >= 0x80 && before.size() - bytes.size() == 1; // an invalid byte
        rkuinfo::detail::appendCodePoint(text, isPart ? first : point);
    }
    return Text(text.begin(), text.end());
}

std::size_t copyText(TextView text, wchar_t* out, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const std::size_t copied = std::min(text.size(), size - 1);
    std::copy_n(text.data(), copied, out);
    out[copied] = 0;
    return copied;
}

} // namespace winhost
