#include "text.h"

#include "upcase_table.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace winhost {

namespace {

bool isHighSurrogate(std::uint32_t unit)
{
    return (unit & 0xFC00U) == 0xD800U;
}

bool isLowSurrogate(std::uint32_t unit)
{
    return (unit & 0xFC00U) == 0xDC00U;
}

void appendUtf8(std::string& out, std::uint32_t codePoint)
{
    constexpr std::uint32_t firstOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
    constexpr std::uint32_t leadOfLength[] = {0, 0, 0xC0, 0xE0, 0xF0};
    std::size_t length = 4;
    while (length > 1 && codePoint < firstOfLength[length]) {
        --length;
    }
    for (std::size_t i = 0; i < length; ++i) {
        const auto shift = static_cast<unsigned>(6 * (length - 1 - i));
        const std::uint32_t byte =
            i == 0 ? leadOfLength[length] | (codePoint >> shift) : 0x80U | ((codePoint >> shift) & 0x3FU);
        out.push_back(static_cast<char>(byte));
    }
}

struct Decoded
{
    std::uint32_t codePoint;
    std::size_t length; // 0 when the bytes start no valid sequence
};

Decoded decodeUtf8(std::string_view bytes)
{
    const auto byteAt = [bytes](std::size_t i) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i]));
    };
    const std::uint32_t lead = byteAt(0);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    constexpr std::uint32_t leadMask[] = {0, 0, 0x1F, 0x0F, 0x07};
    constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) {
        return {0, 0};
    }
    std::uint32_t codePoint = lead & leadMask[length];
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0U) != 0x80U) {
            return {0, 0};
        }
        codePoint = (codePoint << 6U) | (byteAt(i) & 0x3FU);
    }
    if (codePoint < smallest[length] || codePoint > 0x10FFFF) {
        return {0, 0};
    }
    return {codePoint, length};
}

} // namespace

wchar_t upcase(wchar_t unit)
{
    const auto number = static_cast<std::uint16_t>(unit);
    if (number < 0x80) {
        return static_cast<wchar_t>(number >= 'a' && number <= 'z' ? number - ('a' - 'A') : number);
    }
    const CaseRange* const next =
        std::upper_bound(std::begin(caseRanges), std::end(caseRanges), number,
                         [](std::uint16_t value, const CaseRange& range) { return value < range.first; });
    if (next == std::begin(caseRanges)) {
        return unit;
    }
    const CaseRange& range = *std::prev(next);
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
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto unit = static_cast<std::uint32_t>(text[i]);
        if (isHighSurrogate(unit) && i + 1 < text.size() &&
            isLowSurrogate(static_cast<std::uint32_t>(text[i + 1]))) {
            ++i;
            appendUtf8(bytes,
                       0x10000U + ((unit & 0x3FFU) << 10U) + (static_cast<std::uint32_t>(text[i]) & 0x3FFU));
        } else {
            appendUtf8(bytes, unit);
        }
    }
    return bytes;
}

Text fromUtf8(std::string_view bytes)
{
    Text text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Decoded decoded = decodeUtf8(bytes);
        if (decoded.length == 0) {
            text.push_back(static_cast<wchar_t>(static_cast<unsigned char>(bytes.front())));
            bytes.remove_prefix(1);
            continue;
        }
        if (decoded.codePoint >= 0x10000) {
            const std::uint32_t offset = decoded.codePoint - 0x10000U;
            text.push_back(static_cast<wchar_t>(0xD800U | (offset >> 10U)));
            text.push_back(static_cast<wchar_t>(0xDC00U | (offset & 0x3FFU)));
        } else {
            text.push_back(static_cast<wchar_t>(decoded.codePoint));
        }
        bytes.remove_prefix(decoded.length);
    }
    return text;
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
