#include "support/text.h"

#include <cstdint>

namespace testing_support {

namespace {

bool isHigh(std::uint32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLow(std::uint32_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

void append(std::string& out, std::uint32_t point)
{
    const auto push = [&](std::uint32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (point < 0x80) {
        push(point);
    } else if (point < 0x800) {
        push(0xC0 | point >> 6);
        push(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
        push(0xE0 | point >> 12);
        push(0x80 | (point >> 6 & 0x3F));
        push(0x80 | (point & 0x3F));
    } else {
        push(0xF0 | point >> 18);
        push(0x80 | (point >> 12 & 0x3F));
        push(0x80 | (point >> 6 & 0x3F));
        push(0x80 | (point & 0x3F));
    }
}

} // namespace

std::string utf8(const wchar_t* text)
{
    std::string out;
    while (text != nullptr && *text != 0) {
        std::uint32_t point = *text++;
        if (isHigh(point) && isLow(*text)) {
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

Wide::Wide(std::size_t count, wchar_t unit) : m_units(count, unit)
{
    m_units.push_back(0);
}

std::string Wide::bytes() const
{
    return {reinterpret_cast<const char*>(m_units.data()), m_units.size() * sizeof(wchar_t)};
}

} // namespace testing_support
