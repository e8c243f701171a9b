// An application that uses the module: prints the palettes of the last run, then moves them.
#include "palettes.h"

#include "loading/loading.h"

#include <RkUInfo.hpp>

#include <iostream>

namespace {

void printPalette(const Palette& palette)
{
    const WindowLayout& at = palette.layout;
    std::cout << rkuinfo::utf8(palette.name) << ": " << at.width << " x " << at.height << " at " << at.left
              << ", " << at.top << '\n';
}

/// Saves new window positions, as if the user had moved the palettes. Returns false if saving fails.
bool arrangePalettes()
{
    for (const Palette& palette : {Palette{rkuinfo::text(L"Layers"), {20, 80, 240, 600}},
                                   Palette{rkuinfo::text(L"Properties"), {1600, 80, 300, 900}}}) {
        if (const std::error_code error = savePalette(palette)) {
            std::cerr << "drawing: " << error.message() << '\n';
            return false;
        }
    }
    return !setPaletteLimit(paletteLimit() + 1);
}

} // namespace

extern "C" int wmain(int /*argc*/, wchar_t** /*argv*/)
{
    loadLibrariesSafely();
    if (InitVelaConfig(nullptr, nullptr, nullptr, nullptr) != TarvoConfig::eOk) {
        std::cerr << "drawing: start-up failed\n";
        return 1;
    }
    std::cout << "at most " << paletteLimit() << " palettes\n";
    for (const Palette& palette : savedPalettes()) {
        printPalette(palette);
    }
    return arrangePalettes() ? 0 : 1;
}
