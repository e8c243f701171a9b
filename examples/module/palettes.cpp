// A module of the application, with its own settings. The application must call InitVelaConfig before any
// module uses the library.
//
// Below the user's settings:  Palettes               Limit (number)
//                             Palettes\{name}        Layout (bytes)
#include "palettes.h"

#include <cstddef>
#include <cstring>
#include <optional>

namespace {

constexpr auto settings = TarvoConfig::eSettings;
constexpr std::int32_t defaultLimit = 8;

/// Returns the value path of a palette's layout. The palette's name must not contain a separator.
rkuinfo::Text layoutPath(const rkuinfo::Text& name)
{
    return rkuinfo::text(L"Palettes\\") + name + rkuinfo::text(L"\\Layout");
}

/// Returns std::nullopt if the data does not have the size of a layout. An older version or another program
/// may have stored such data.
std::optional<WindowLayout> layoutFrom(const rkuinfo::Bytes& bytes)
{
    WindowLayout layout = {};
    if (bytes.size() != sizeof layout) {
        return std::nullopt;
    }
    std::memcpy(&layout, bytes.data(), sizeof layout);
    return layout;
}

} // namespace

std::error_code savePalette(const Palette& palette)
{
    const auto* const first = reinterpret_cast<const std::byte*>(&palette.layout);
    return rkuinfo::set(settings, layoutPath(palette.name),
                        rkuinfo::Bytes(first, first + sizeof palette.layout));
}

std::vector<Palette> savedPalettes()
{
    std::vector<Palette> palettes;
    // If no palette has been saved, the key does not exist and the range is empty.
    for (const rkuinfo::Text& name : rkuinfo::items(settings, L"Palettes")) {
        const auto bytes = rkuinfo::get<rkuinfo::Bytes>(settings, layoutPath(name));
        if (const auto layout = layoutFrom(bytes.value_or(rkuinfo::Bytes()))) {
            palettes.push_back({name, *layout});
        }
    }
    return palettes;
}

std::int32_t paletteLimit()
{
    // Reads the limit on each call, because another process may have changed it; a read takes microseconds.
    return rkuinfo::get<std::int32_t>(settings, L"Palettes\\Limit").value_or(defaultLimit);
}

std::error_code setPaletteLimit(std::int32_t limit)
{
    return rkuinfo::set(settings, L"Palettes\\Limit", limit);
}
