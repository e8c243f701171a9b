#include "support/text.h"

#include <RkUInfo/Text.hpp>

namespace testing_support {

std::string utf8(const wchar_t* text)
{
    return rkuinfo::utf8(text);
}

Wide::Wide(std::string_view text)
{
    const rkuinfo::Text units = rkuinfo::utf16(text);
    m_units.assign(units.begin(), units.end());
    m_units.push_back(0);
}

std::string Wide::bytes() const
{
    return {reinterpret_cast<const char*>(m_units.data()), m_units.size() * sizeof(wchar_t)};
}

} // namespace testing_support
