// A module of the application: it reads and writes settings of its own. The application's launcher has
// started the library (InitVelaConfig) long before; a module only uses it.
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

/// The value path of a palette's layout. A name must hold no separator: it is a key's name.
rkuinfo::Text layoutPath(const rkuinfo::Text& name)
{
    return rkuinfo::text(L"Palettes\\") + name + rkuinfo::text(L"\\Layout");
}

/// What is stored may come from an older version, or from anyone: its size is checked before it is trusted.
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
    // A key that does not exist yet gives an empty range: nobody has saved a palette.
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
    // Read on each use: another process may have changed it, and reading costs microseconds.
    return rkuinfo::get<std::int32_t>(settings, L"Palettes\\Limit").value_or(defaultLimit);
}

std::error_code setPaletteLimit(std::int32_t limit)
{
    return rkuinfo::set(settings, L"Palettes\\Limit", limit);
}
