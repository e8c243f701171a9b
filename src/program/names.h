// The fixed names of the product's INI files, registry values and defaults.
#pragma once

namespace uinfo {

inline constexpr wchar_t tarvoIni[] = L"TARVO.ini";
inline constexpr wchar_t productIni[] = L"product.ini";
inline constexpr wchar_t productSection[] = L"Product";

inline constexpr wchar_t defaultCompany[] = L"Norvik"; // stored by start-up
inline constexpr wchar_t initialCompany[] = L"NORVIK"; // answered before start-up
inline constexpr wchar_t defaultProduct[] = L"TARVO";
inline constexpr wchar_t defaultProfile[] = L"Default";
inline constexpr wchar_t versionSegment[] = L"2018";

inline constexpr wchar_t softwareKey[] = L"Software\\";
inline constexpr wchar_t profilesKey[] = L"Profiles";
inline constexpr wchar_t currentProduct[] = L"CurProduct";
inline constexpr wchar_t currentVersion[] = L"CurVer";

} // namespace uinfo
