#include "support/text.h"

#include <cstdint>

namespace testing_support {

namespace {

/// Whether a unit is one of the 1024 surrogates from the first on.
bool isSurrogate(std::uint32_t unit, std::uint32_t first)
{
    return unit >= first && unit < first + 0x400;
}

void append(std::string& out, std::uint32_t point)
{
    const unsigned more = point < 0x80 ? 0 : point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
    constexpr std::uint32_t leads[] = {0, 0xC0, 0xE0, 0xF0};
    out.push_back(static_cast<char>(leads[more] | point >> 6 * more));
    for (unsigned left = more; left > 0; --left) {
        out.push_back(static_cast<char>(0x80 | (point >> 6 * (left - 1) & 0x3F)));
    }
}

} // namespace

std::string utf8(const wchar_t* text)
{
    std::string out;
    while (text != nullptr && *text != 0) {
        std::uint32_t point = *text++;
        if (isSurrogate(point, 0xD800) && isSurrogate(*text, 0xDC00)) {
            point = 0x10000 + ((point - 0xD800) << 10) + (static_cast<std::uint32_t>(*text++) - 0xDC00);
        }
        append(out, point);
    }
    return out;
}

Wide::Wide(std::string_view text)
{
    for (std::size_t at = 0; at < text.size();) {
        const auto lead = static_cast<unsigned char>(text[at++]);
        int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
        std::uint32_t point = more == 0 ? lead : lead & (0x3Fu >> more);
        for (; more > 0 && at < text.size(); --more) {
            point = point << 6 | (static_cast<unsigned char>(text[at++]) & 0x3Fu);
        }
        if (point >= 0x10000) {
            m_units.push_back(static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10)));
            point = 0xDC00 + (point & 0x3FF);
        }
        m_units.push_back(static_cast<wchar_t>(point));
    }
    m_units.push_back(0);
}

std::string Wide::bytes() const
{
    return {reinterpret_cast<const char*>(m_units.data()), m_units.size() * sizeof(wchar_t)};
}

} // namespace testing_support
