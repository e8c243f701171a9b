// The fixed names of the product's INI files, registry keys and values, folders and files.
#pragma once

#include "installation/build_facts.h"

namespace uinfo {

// Built-in names.
inline constexpr wchar_t defaultCompany[] = L"" RKUINFO_COMPANY; // chosen by start-up
inline constexpr wchar_t initialCompany[] = L"NORVIK";           // returned before start-up
inline constexpr wchar_t defaultProduct[] = L"" RKUINFO_PRODUCT;
inline constexpr wchar_t defaultProfile[] = L"Default";
inline constexpr wchar_t versionSegment[] = L"" RKUINFO_VERSION;

// INI files in the program folder, with their sections and keys.
inline constexpr wchar_t tarvoIni[] = L"TARVO.ini";
inline constexpr wchar_t productIni[] = L"product.ini";
inline constexpr wchar_t productSection[] = L"Product";
inline constexpr wchar_t companyNameKey[] = L"CompanyName";
inline constexpr wchar_t productNameKey[] = L"ProductName";
inline constexpr wchar_t localeIdKey[] = L"LocaleId";
inline constexpr wchar_t localeNamesSection[] = L"LocaleIdLangName"; // maps a LocaleId to a short name
inline constexpr wchar_t majorVersionKey[] = L"MajorVer";            // in product.ini
inline constexpr wchar_t productIdKey[] = L"ProductId";              // in product.ini

// Registry values.
inline constexpr wchar_t currentProductValue[] = L"CurProduct";                     // in the company's key
inline constexpr wchar_t currentLanguageValue[] = L"CurVer";                        // in the version's key
inline constexpr wchar_t currentVersionValue[] = L"CurVer";                         // in the product's key
inline constexpr wchar_t styleFileValue[] = L"Config\\UIStyle";                     // below eUserConfig
inline constexpr wchar_t customResourcesValue[] = L"CommonSettings\\CustomResFile"; // below eCurrentProfile

// Files and folders.
inline constexpr wchar_t helpViewer[] = L"RKHelp.exe";
inline constexpr wchar_t userDataCache[] = L"UserDataCache";
inline constexpr wchar_t languageLibrary[] = L"RkUInfoRes.dll";

} // namespace uinfo
