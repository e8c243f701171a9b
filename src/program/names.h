// The fixed names of the product's INI files, registry values and defaults.
#pragma once

#include "program/build_facts.h"

namespace uinfo {

inline constexpr wchar_t tarvoIni[] = L"TARVO.ini";
inline constexpr wchar_t productIni[] = L"product.ini";
inline constexpr wchar_t productSection[] = L"Product";

inline constexpr wchar_t defaultCompany[] = L"" RKUINFO_COMPANY; // stored by start-up
inline constexpr wchar_t initialCompany[] = L"NORVIK";           // answered before start-up
inline constexpr wchar_t defaultProduct[] = L"" RKUINFO_PRODUCT;
inline constexpr wchar_t defaultProfile[] = L"Default";
inline constexpr wchar_t versionSegment[] = L"" RKUINFO_VERSION;

inline constexpr wchar_t softwareKey[] = L"Software\\";
inline constexpr wchar_t profilesKey[] = L"Profiles";
inline constexpr wchar_t currentProductValue[] = L"CurProduct"; // of the company's key
inline constexpr wchar_t currentLanguageValue[] = L"CurVer";    // of the version's key
inline constexpr wchar_t currentVersionValue[] = L"CurVer";     // of the product's key

} // namespace uinfo
