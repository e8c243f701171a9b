// SPDX-License-Identifier: MIT
// RkUInfo: which product, company, language and profile this process belongs to, where its settings, folders
// and resource libraries are, and its configuration store.
//
// Strings are UTF-16 and terminated. Lengths count characters. Unless a comment says otherwise, a returned
// length does not count the terminator, and 0 or null means failure. A buffer without a size holds 1024
// characters. Returned pointers belong to the library: never free them. After start-up every function may be
// called from any thread. On Linux, clients are compiled with -fshort-wchar, but a std::wstring of the C++
// runtime still has 32-bit characters and crashes without a warning: use std::u16string.
#pragma once

#include "RkUInfo/Export.h"
#include "RkUInfo/ITarvoProduct.h"
#include "RkUInfo/TarvoConfig.h"
#include "RkUInfo/TarvoConfigException.h"
#include "RkUInfo/TarvoLanguage.h"
#include "RkUInfo/VelaVariant.h"

// ---- Start-up -----------------------------------------------------------------------------------

/// Returns the configuration object; never null.
RKUINFO_API TarvoConfig* velaConfig();

/// Runs start-up: once per process, before other threads use the library. For an argument that is null or
/// empty:
/// - company: "TARVO.ini" [Product] CompanyName, else "Norvik";
/// - product: "CurProduct" under Software\{company}, "TARVO.ini" [Product] ProductName, else "TARVO";
/// - language (a short name such as "en-US"): "CurVer" under the version root, "TARVO.ini" [Product] LocaleId
///   mapped by [LocaleIdLangName], else the first installed one, if the user agrees in a message box;
/// - profile: the one that the profiles key names. An argument replaces a different profile named there.
/// Start-up records its choices in keys that exist; CreateConfigReg creates them.
/// If the language argument is unknown, if no language is installed, or if the user declines the proposed
/// one, a message box is shown and the process exits with code 1.
/// @return eOk, at once after an earlier success; eInvalidInput for a company or product of 255 characters or
///         more, for paths that do not fit and after an earlier failure; eRegistryError when the language's
///         folder cannot be read
RKUINFO_API TarvoConfig::Error InitVelaConfig(const wchar_t* company, const wchar_t* product,
                                              const wchar_t* language, const wchar_t* profile);

/// Creates the current user's product tree and records version, language and profile in it. Call it after
/// InitVelaConfig, as often as you like: it does not change a current profile that is already named. A
/// start-up profile of any length is stored whole, but one of 127 characters or more cannot be read back: the
/// next look-up of the current profile stores "Default".
/// @return eOk, or eRegistryError if the product key does not exist afterwards. Throws a RkErrorStatus* if
/// memory
///         is exhausted.
RKUINFO_API TarvoConfig::Error CreateConfigReg();

/// Returns the product object; never null.
RKUINFO_API ITarvoProduct* velaGetProduct();

// ---- INI values ---------------------------------------------------------------------------------

/// Reads an entry of "TARVO.ini" like TarvoConfig::getIniValue. Returns 1 if value was set, else 0.
RKUINFO_API int GetVelaIniConfigValue(const wchar_t* section, const wchar_t* key, VelaVariant& value,
                                      VelaVariant::VarType type);
/// Returns "TARVO.ini" [PartnerOEM] MergeTitle, or defaultValue if it is missing or negative.
RKUINFO_API long GetVelaIniOEMMergeTitleValue(long defaultValue);
/// Returns "S{MajorVer}{ProductId}_" of "product.ini" [Product], cached once both could be read; empty until
/// then.
RKUINFO_API const wchar_t* GetVelaArchitectrueCommandNamePrefix();

// ---- Version and identity -----------------------------------------------------------------------

/// Returns "2018".
RKUINFO_API const wchar_t* GetVelaProgramVersionString();
/// Returns the LCID of a short name, 1033 for an unknown name, 0 for null or empty.
RKUINFO_API long GetVelaLanguageIdByShortName(const wchar_t* shortName);
/// Returns the LCID of the current language, 1033 before start-up.
RKUINFO_API long GetCurrentVelaLanguageId();
/// Returns the product name, "TARVO" before start-up; never null.
RKUINFO_API const wchar_t* GetCurrentProductName();
/// Writes the build stamp, bare (21 characters) or as VERNUM = "..." (32 characters). size includes the
/// terminator. If it is too small, buffer gets the empty string.
RKUINFO_API void GetVerNum(wchar_t* buffer, unsigned long size, bool withPrefix);
/// Writes the resource version number, which is empty: "" or VERNUM = "" (11 characters). See GetVerNum.
RKUINFO_API void GetResVerNum(wchar_t* buffer, unsigned long size, bool withPrefix);
/// Returns "SP2".
RKUINFO_API const wchar_t* GetServicePackageVersionString();

// ---- Program, language resources and help -------------------------------------------------------
// "The program" is the process's executable. Sizes include the terminator. No function here checks that a
// file exists. A joined path must fit MAX_PATH (260).

/// Writes the program folder with its trailing backslash. Needs its length + 1 characters; a smaller buffer
/// is unchanged. The folder is read once per process, also if several threads call first.
RKUINFO_API unsigned long GetProgramPath(wchar_t* buffer, unsigned long size);
/// Calls GetProgramPath with a size of 1023.
RKUINFO_API unsigned long GetVelaProgramPath(wchar_t* const buffer);
/// Writes the executable's file name without extension into buffer, which holds 1023 characters. Returns 0 if
/// the executable's path cannot be read or does not fit.
RKUINFO_API unsigned long GetVelaProgramName(wchar_t* const buffer);
/// Returns TarvoLanguage::shortName of the current language, "unknown" before start-up.
RKUINFO_API const wchar_t* GetCurrentLanguageShortName();
/// Returns TarvoLanguage::globalName of the current language, "unknown" before start-up.
RKUINFO_API const wchar_t* GetCurrentLanguageGlobalName();
/// Returns TarvoLanguage::localName of the current language; may be null.
RKUINFO_API const wchar_t* GetCurrentLanguageLocalName();
/// Writes the current language's resource folder, without trailing backslash. Needs its length + 3
/// characters, and enough for the executable's own path. A failed call may leave part of a path.
RKUINFO_API unsigned long GetResourceDllPath(wchar_t* buffer, unsigned long size);
/// Writes the path of another folder in the program folder, with the same limits.
RKUINFO_API unsigned long GetResourceDllPath(const wchar_t* folderName, wchar_t* buffer, unsigned long size);
/// Loads a library from the current language's folder or, if that fails, by its bare name in the system's
/// search order. That includes the working directory and PATH, so an application restricts it once, as its
/// first step, with SetDefaultDllDirectories (docs/LOADING.md). The caller frees the handle.
RKUINFO_API HINSTANCE__* LoadResourceDll(const wchar_t* fileName);
/// Does the same by LoadLibraryExW, to which file and flags are passed unchanged.
RKUINFO_API HINSTANCE__* LoadResourceDllEx(const wchar_t* fileName, void* file, unsigned long flags);
/// Writes the path of "RKHelp.exe" in the program folder. Needs its length + 2 characters; a smaller buffer
/// is unchanged.
RKUINFO_API long GetHelpFilePath(wchar_t* buffer, long size);

// ---- Per-user folders ---------------------------------------------------------------------------
// Each writes a path of at most 1021 characters and creates no folder. Every path but the last one's ends
// with a backslash. A failed call leaves the levels that fit. The odd spellings are part of the interface.

RKUINFO_API unsigned long GetUserApplicationDataPath(wchar_t* const buffer);             ///< {roaming}\ .
RKUINFO_API unsigned long GetUserApplicationDataComanyPath(wchar_t* const buffer);       ///< + {company}\ .
RKUINFO_API unsigned long GetUserApplicationDataProductPath(wchar_t* const buffer);      ///< + {product}\ .
RKUINFO_API unsigned long GetUserApplicationDataVersionPath(wchar_t* const buffer);      ///< + 2018\ .
RKUINFO_API unsigned long GetUserApplicationDataLanguagePath(wchar_t* const buffer);     ///< + {language}\ .
RKUINFO_API unsigned long GetUserApplicationDataSupportPath(wchar_t* const buffer);      ///< + Support\ .
RKUINFO_API unsigned long GetUserApplicationDataPlottersPath(wchar_t* const buffer);     ///< + Plotters\ .
RKUINFO_API unsigned long GetUserApplicationDataCrashReportPath(wchar_t* const buffer);  ///< + CrashReport\ .
RKUINFO_API unsigned long GetUserApplicationDataPrintstylePath(wchar_t* const buffer);   ///< + Printstyle\ .
RKUINFO_API unsigned long GetUserLocalApplicationDataPath(wchar_t* const buffer);        ///< {local}\ .
RKUINFO_API unsigned long GetUserLocalApplicationDataComanyPath(wchar_t* const buffer);  ///< + {company}\ .
RKUINFO_API unsigned long GetUserLocalApplicationDataProductPath(wchar_t* const buffer); ///< + {product}\ .
RKUINFO_API unsigned long GetUserLocalApplicationDataVersionPath(wchar_t* const buffer); ///< + 2018\ .
RKUINFO_API unsigned long GetUserLocalApplicationDataLanguagePath(wchar_t* const buffer); ///< + {language}\ .
/// {local language folder}Template, without trailing backslash.
RKUINFO_API unsigned long GetUserLocalApplicationDataTemplatePath(wchar_t* const buffer);

// ---- Registry key paths -------------------------------------------------------------------------
// Relative to HKEY_CURRENT_USER, without trailing backslash; see TarvoConfig::Path and getRegRootPath.

RKUINFO_API unsigned long GetRegistryProductNameRootKey(wchar_t* const buffer);
RKUINFO_API unsigned long GetRegistryVersionRootKey(wchar_t* const buffer);
RKUINFO_API unsigned long GetVelaRegistryLanguageRootKey(wchar_t* const buffer);
RKUINFO_API unsigned long GetRegistryProfilesRootKey(wchar_t* const buffer);
RKUINFO_API unsigned long GetVelaRegistryCurrentProfileRootKey(wchar_t* const buffer);
/// Writes {current profile}\Config. If that has more than 1021 characters, returns 0 and leaves the profile's
/// key path.
RKUINFO_API unsigned long GetVelaRegistryCurrentProfileConfigRootKey(wchar_t* const buffer);

// ---- Current profile ----------------------------------------------------------------------------

/// Copies the stored name of the current profile.
/// @param buffer may be null, to query the size needed; changed only if the name fits
/// @param size   in: the capacity of buffer, with the terminator; out: unchanged if the name was copied, the
///               size needed if buffer is null or too small, 0 if no name is stored
RKUINFO_API unsigned long GetCurrentProfileName(wchar_t* buffer, unsigned long& size);
/// Copies the current profile's CommonSettings\CustomResFile, at most 1022 characters.
RKUINFO_API unsigned long GetCustomResFileName(wchar_t* const buffer);

// ---- UI style and user data cache ---------------------------------------------------------------

/// Writes the user's Settings\UserConfig\Config value UIStyle, at most 1022 characters, or, if there is none,
/// the path of Style.tus in the roaming Support folder.
RKUINFO_API unsigned long GetVelaUIStyleConfigFilePath(wchar_t* const buffer);
/// Returns ITarvoProduct::userDataCachePath; may be empty, never null.
RKUINFO_API const wchar_t* GetVelaUserDataCachePath();
/// Writes the current language's folder in it, without trailing backslash.
RKUINFO_API unsigned long GetVelaUserDataCacheLanPath(wchar_t* const buffer);
