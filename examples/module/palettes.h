// The module's interface: tool palettes that reappear where the user left them.
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

/// The position and size of a window, stored byte for byte. If the fields change, change the value name too.
struct WindowLayout
{
    std::int32_t left;
    std::int32_t top;
    std::int32_t width;
    std::int32_t height;
};

/// A tool palette. Modules can exchange palettes because all modules share one C++ runtime.
struct Palette
{
    rkuinfo::Text name;
    WindowLayout layout;
};

PALETTES_API std::error_code savePalette(const Palette& palette);
PALETTES_API std::vector<Palette> savedPalettes();

/// Returns the number of palettes that may be open at once.
PALETTES_API std::int32_t paletteLimit();
PALETTES_API std::error_code setPaletteLimit(std::int32_t limit);
