// SPDX-License-Identifier: MIT
// RkUInfo: the product, company, language and profile of this process, the paths of its settings, folders and
// resource libraries, and its configuration store.
//
// Strings are UTF-16 with a terminator. Lengths count characters (code units). Unless a comment says
// otherwise, a returned length does not count the terminator, and 0 or null means failure. A buffer that is
// passed without a size must hold 1024 characters. Returned pointers belong to the library: never free them.
// After start-up every function may be called from any thread. On Linux, compile clients with -fshort-wchar
// and use std::u16string: the C++ runtime's std::wstring still has 32-bit characters and crashes without a
// warning.
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

/// Performs start-up: determines the company, product, language and profile. Call InitVelaConfig once per
/// process, before other threads use the library. A null or empty argument is replaced by the first of these
/// that is available:
/// - company: "TARVO.ini" [Product] CompanyName; "Norvik"
/// - product: "CurProduct" under Software\{company}; "TARVO.ini" [Product] ProductName; "TARVO"
/// - language (a short name such as "en-US"): "CurVer" under the version root; "TARVO.ini" [Product] LocaleId
///   mapped by [LocaleIdLangName]
/// - profile: the current profile, stored in the profiles key
///
/// If the first language name found is not an installed language, or if no name is found, a message box asks
/// whether to use the first installed language.
///
/// If a current profile is stored, a profile argument replaces it. Start-up records its choices only in keys
/// that exist; CreateConfigReg creates the keys. The process exits with code 1 after a message box if the
/// language argument is unknown, if no language is installed, or if the user declines the proposed language.
/// Once start-up has succeeded, further calls return eOk and ignore their arguments.
/// @return eOk; eInvalidInput if company or product has 255 or more characters, if a path does not fit, or
///         after an earlier failure; eRegistryError if the language's folder cannot be read, or if the search
///         for installed languages fails because too many files are open
RKUINFO_API TarvoConfig::Error InitVelaConfig(const wchar_t* company, const wchar_t* product,
                                              const wchar_t* language, const wchar_t* profile);

/// Creates the current user's product tree and records the version, language and profile in it. Call
/// CreateConfigReg after InitVelaConfig. A current profile that is already stored is not replaced. A start-up
/// profile of 127 characters or more is stored whole but cannot be read back: the next look-up of the current
/// profile replaces it with "Default". Throws an RkErrorStatus* if memory is exhausted.
/// @return eOk, or eRegistryError if the product key does not exist afterwards
RKUINFO_API TarvoConfig::Error CreateConfigReg();

/// Returns the product object; never null.
RKUINFO_API ITarvoProduct* velaGetProduct();

// ---- INI values ---------------------------------------------------------------------------------

/// Calls TarvoConfig::getIniValue for "TARVO.ini". Returns 1 if value was set, otherwise 0.
RKUINFO_API int GetVelaIniConfigValue(const wchar_t* section, const wchar_t* key, VelaVariant& value,
                                      VelaVariant::VarType type);
/// Returns "TARVO.ini" [PartnerOEM] MergeTitle, or defaultValue if the entry is missing or negative.
RKUINFO_API long GetVelaIniOEMMergeTitleValue(long defaultValue);
/// Returns "S{MajorVer}{ProductId}_" from "product.ini" [Product], cached after the first success; empty
/// until then.
RKUINFO_API const wchar_t* GetVelaArchitectrueCommandNamePrefix();

// ---- Version and identity -----------------------------------------------------------------------

/// Returns "2018".
RKUINFO_API const wchar_t* GetVelaProgramVersionString();
/// Returns the LCID of a short name: 1033 if the name is unknown, 0 if it is null or empty.
RKUINFO_API long GetVelaLanguageIdByShortName(const wchar_t* shortName);
/// Returns the LCID of the current language, or 1033 before start-up.
RKUINFO_API long GetCurrentVelaLanguageId();
/// Returns the product name, or "TARVO" before start-up; never null.
RKUINFO_API const wchar_t* GetCurrentProductName();
/// Writes the build stamp (21 characters) or, if withPrefix is true, VERNUM = "{stamp}" (32 characters). If
/// size, which includes the terminator, is too small, writes the empty string.
RKUINFO_API void GetVerNum(wchar_t* buffer, unsigned long size, bool withPrefix);
/// Works like GetVerNum with an empty stamp: writes the empty string or, if withPrefix is true, VERNUM = ""
/// (11 characters).
RKUINFO_API void GetResVerNum(wchar_t* buffer, unsigned long size, bool withPrefix);
/// Returns "SP2".
RKUINFO_API const wchar_t* GetServicePackageVersionString();

// ---- Program, language resources and help -------------------------------------------------------
// "The program" is the process's executable. Sizes include the terminator. No function here checks that a
// file exists. A joined path must fit in MAX_PATH (260).

/// Writes the program folder with its trailing backslash. buffer must have room for the path's length + 1
/// characters; a smaller buffer is left unchanged. The folder is cached after the first success.
RKUINFO_API unsigned long GetProgramPath(wchar_t* buffer, unsigned long size);
/// Calls GetProgramPath with a size of 1023.
RKUINFO_API unsigned long GetVelaProgramPath(wchar_t* const buffer);
/// Writes the executable's file name without its extension into buffer, which must hold 1023 characters.
/// Returns 0 if the executable's path cannot be read or does not fit.
RKUINFO_API unsigned long GetVelaProgramName(wchar_t* const buffer);
/// Returns TarvoLanguage::shortName of the current language, or "unknown" before start-up.
RKUINFO_API const wchar_t* GetCurrentLanguageShortName();
/// Returns TarvoLanguage::globalName of the current language, or "unknown" before start-up.
RKUINFO_API const wchar_t* GetCurrentLanguageGlobalName();
/// Returns TarvoLanguage::localName of the current language; null while the language cannot be loaded.
RKUINFO_API const wchar_t* GetCurrentLanguageLocalName();
/// Writes the current language's resource folder, without a trailing backslash. size must be at least the
/// path's length + 3. It must also be large enough for the executable's path, because the function first
/// writes that path to buffer. After a failure, buffer may contain part of a path.
RKUINFO_API unsigned long GetResourceDllPath(wchar_t* buffer, unsigned long size);
/// Writes the path of folderName in the program folder; buffer and size are as for the function above.
RKUINFO_API unsigned long GetResourceDllPath(const wchar_t* folderName, wchar_t* buffer, unsigned long size);
/// Loads a library from the current language's folder or, if that fails, by its bare name in the system's
/// search order. The search includes the working directory and PATH: an application should restrict the
/// search with SetDefaultDllDirectories before it does anything else (docs/LOADING.md). The caller frees the
/// handle.
RKUINFO_API HINSTANCE__* LoadResourceDll(const wchar_t* fileName);
/// Works like LoadResourceDll, but passes file and flags to LoadLibraryExW.
RKUINFO_API HINSTANCE__* LoadResourceDllEx(const wchar_t* fileName, void* file, unsigned long flags);
/// Writes the path of "RKHelp.exe" in the program folder. buffer must have room for the path's length + 2
/// characters; a smaller buffer is left unchanged.
RKUINFO_API long GetHelpFilePath(wchar_t* buffer, long size);

// ---- Per-user folders ---------------------------------------------------------------------------
// Each function writes a path of at most 1021 characters; none creates a folder. Every path except the last
// ends with a backslash. After a failure, buffer contains the path up to the last folder that fits. The odd
// spellings are part of the interface.

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
/// Writes {local language folder}\Template, without a trailing backslash.
RKUINFO_API unsigned long GetUserLocalApplicationDataTemplatePath(wchar_t* const buffer);

// ---- Registry key paths -------------------------------------------------------------------------
// Each function writes a key path relative to HKEY_CURRENT_USER, without a trailing backslash; see
// TarvoConfig::Path and getRegRootPath.

RKUINFO_API unsigned long GetRegistryProductNameRootKey(wchar_t* const buffer);
RKUINFO_API unsigned long GetRegistryVersionRootKey(wchar_t* const buffer);
RKUINFO_API unsigned long GetVelaRegistryLanguageRootKey(wchar_t* const buffer);
RKUINFO_API unsigned long GetRegistryProfilesRootKey(wchar_t* const buffer);
RKUINFO_API unsigned long GetVelaRegistryCurrentProfileRootKey(wchar_t* const buffer);
/// Writes {current profile}\Config. If the path has more than 1021 characters, writes only the profile's key
/// path and returns 0.
RKUINFO_API unsigned long GetVelaRegistryCurrentProfileConfigRootKey(wchar_t* const buffer);

// ---- Current profile ----------------------------------------------------------------------------

/// Copies the stored name of the current profile.
/// @param buffer may be null, to query the size needed; changed only if the name fits
/// @param size   in: the capacity of buffer, including the terminator; out: unchanged if the name was copied,
///               the size needed if buffer is null or too small, 0 if no name is stored
RKUINFO_API unsigned long GetCurrentProfileName(wchar_t* buffer, unsigned long& size);
/// Copies the value CommonSettings\CustomResFile of the current profile, at most 1022 characters.
RKUINFO_API unsigned long GetCustomResFileName(wchar_t* const buffer);

// ---- UI style and user data cache ---------------------------------------------------------------

/// Writes the value UIStyle of Settings\UserConfig\Config, at most 1022 characters. Returns 0 if the value is
/// empty, too long or not a string. If getValue cannot read the value, writes the path of Style.tus in the
/// roaming Support folder.
RKUINFO_API unsigned long GetVelaUIStyleConfigFilePath(wchar_t* const buffer);
/// Returns ITarvoProduct::userDataCachePath, which may be empty but is never null.
RKUINFO_API const wchar_t* GetVelaUserDataCachePath();
/// Writes the current language's folder in the user data cache folder, without a trailing backslash.
RKUINFO_API unsigned long GetVelaUserDataCacheLanPath(wchar_t* const buffer);
