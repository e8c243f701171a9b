// The table of languages. The translated names of the languages are in langpacks/.
#pragma once

#include <cstdint>
#include <iterator>

namespace uinfo {

struct Language
{
    const wchar_t* shortName;
    const wchar_t* globalName;
    std::int32_t lcid;
    unsigned localNameId; ///< ID of the string in RkUInfoRes.dll
    int preference;       ///< start-up proposes the installed language with the lowest number
};

/// Ordered by index, which is part of the interface: append new rows. langpacks/CMakeLists.txt reads these
/// rows.
// clang-format off
inline constexpr Language languages[] = {
    {L"cs-CZ", L"Czech",               1029, 1001,  7},
    {L"de-DE", L"German",              1031, 1002,  8},
    {L"en-US", L"English",             1033, 1003,  1},
    {L"es-ES", L"Spanish",             3082, 1004,  9},
    {L"fr-FR", L"French",              1036, 1005, 10},
    {L"hu-HU", L"Hungarian",           1038, 1006, 11},
    {L"it-IT", L"Italian",             1040, 1007, 12},
    {L"ja-JP", L"Japanese",            1041, 1008,  4},
    {L"ko-KR", L"Korean",              1042, 1009,  5},
    {L"pl-PL", L"Polish",              1045, 1010,  6},
    {L"pt-BR", L"Portuguese",          1046, 1011, 13},
    {L"ru-RU", L"Russian",             1049, 1012, 14},
    {L"tr-TR", L"Turkish",             1055, 1013, 15},
    {L"zh-CN", L"Simplified Chinese",  2052, 1014,  2},
    {L"zh-TW", L"Traditional Chinese", 1028, 1015,  3},
};
inline constexpr Language unknownRecord =
    {L"unknown", L"unknown",           1033, 1103,  0};
// clang-format on

inline constexpr auto languageCount = static_cast<std::int32_t>(std::size(languages));
inline constexpr std::int32_t unknownLanguage = -1;

inline bool isLanguage(long index)
{
    return index >= 0 && index < languageCount;
}

/// Returns the index of a short name, ignoring case, or unknownLanguage for a null, empty or unknown name.
std::int32_t findLanguage(const wchar_t* shortName);

} // namespace uinfo
