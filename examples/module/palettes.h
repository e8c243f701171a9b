// What the module offers to the application: its tool palettes, which come back where the user left them.
#pragma once

#include <RkUInfo.hpp>

#include <cstdint>
#include <system_error>
#include <vector>

#if !defined(_WIN32)
#define PALETTES_API __attribute__((visibility("default")))
#elif defined(PALETTES_BUILD)
#define PALETTES_API __declspec(dllexport)
#else
#define PALETTES_API __declspec(dllimport)
#endif

/// Where a window is. It is stored as these bytes: a layout with other fields gets another value name.
struct WindowLayout
{
    std::int32_t left;
    std::int32_t top;
    std::int32_t width;
    std::int32_t height;
};

/// Classes cross the border between modules because all of them share one C++ runtime.
struct Palette
{
    rkuinfo::Text name;
    WindowLayout layout;
};

PALETTES_API std::error_code savePalette(const Palette& palette);
PALETTES_API std::vector<Palette> savedPalettes();

/// How many palettes may be open at once.
PALETTES_API std::int32_t paletteLimit();
PALETTES_API std::error_code setPaletteLimit(std::int32_t limit);
