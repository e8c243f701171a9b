// Splits the bytes that a fuzz target receives.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

class Input
{
public:
    Input(const std::uint8_t* data, std::size_t size) : m_bytes(reinterpret_cast<const char*>(data), size) {}

    std::uint8_t byte() { return static_cast<std::uint8_t>(m_bytes.empty() ? 0 : bytes(1)[0]); }

    std::string_view bytes(std::size_t count)
    {
        const std::string_view taken = m_bytes.substr(0, count);
        m_bytes.remove_prefix(taken.size());
        return taken;
    }
    std::string_view rest() { return bytes(m_bytes.size()); }

    /// Returns a terminated string. Each code unit uses one byte of input, or two if isWide is true. The
    /// allocation ends directly after the terminator, so that sanitizers detect overruns.
    std::vector<wchar_t> text(std::size_t bytesToTake, bool isWide)
    {
        const std::string_view taken = bytes(bytesToTake);
        std::vector<wchar_t> units;
        for (std::size_t i = 0; i + (isWide ? 1 : 0) < taken.size(); i += isWide ? 2 : 1) {
            const auto low = static_cast<unsigned char>(taken[i]);
            const auto high = static_cast<unsigned char>(isWide ? taken[i + 1] : 0);
            units.push_back(static_cast<wchar_t>(low | high << 8));
        }
        units.push_back(0);
        units.shrink_to_fit();
        return units;
    }
    std::vector<wchar_t> restAsText(bool isWide) { return text(m_bytes.size(), isWide); }

private:
    std::string_view m_bytes;
};

/// Aborts unless the condition holds.
inline void require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}
