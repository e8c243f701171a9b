// The fifteen languages, and every fact about each.
#pragma once

#include "installation/language_ids.h"

#include <cstdint>
#include <iterator>

namespace uinfo {

struct Language
{
    const wchar_t* shortName;
    const wchar_t* globalName;
    std::int32_t lcid;
    unsigned localNameId; ///< in RkUInfoRes.dll
    int preference;       ///< start-up proposes the installed language with the lowest number
};

/// Ordered by index.
// clang-format off
inline constexpr Language languages[] = {
    {L"cs-CZ", L"Czech",               1029, IDS_CZECH,                7},
    {L"de-DE", L"German",              1031, IDS_GERMAN,               8},
    {L"en-US", L"English",             1033, IDS_ENGLISH,              1},
    {L"es-ES", L"Spanish",             3082, IDS_SPANISH,              9},
    {L"fr-FR", L"French",              1036, IDS_FRENCH,              10},
    {L"hu-HU", L"Hungarian",           1038, IDS_HUNGARIAN,           11},
    {L"it-IT", L"Italian",             1040, IDS_ITALIAN,             12},
    {L"ja-JP", L"Japanese",            1041, IDS_JAPANESE,             4},
    {L"ko-KR", L"Korean",              1042, IDS_KOREAN,               5},
    {L"pl-PL", L"Polish",              1045, IDS_POLISH,               6},
    {L"pt-BR", L"Portuguese",          1046, IDS_PORTUGUESE,          13},
    {L"ru-RU", L"Russian",             1049, IDS_RUSSIAN,             14},
    {L"tr-TR", L"Turkish",             1055, IDS_TURKISH,             15},
    {L"zh-CN", L"Simplified Chinese",  2052, IDS_SIMPLIFIED_CHINESE,   2},
    {L"zh-TW", L"Traditional Chinese", 1028, IDS_TRADITIONAL_CHINESE,  3},
};
inline constexpr Language unknownRecord =
    {L"unknown", L"unknown",           1033, IDS_UNKNOWN,              0};
// clang-format on

inline constexpr auto languageCount = static_cast<std::int32_t>(std::size(languages));
inline constexpr std::int32_t unknownLanguage = -1;

inline bool isLanguage(long index)
{
    return index >= 0 && index < languageCount;
}

/// Returns the index of a short name, ignoring case; unknownLanguage for null, empty or unknown names.
std::int32_t findLanguage(const wchar_t* shortName);

} // namespace uinfo
