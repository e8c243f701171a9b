// SPDX-License-Identifier: MIT
// RkUInfo: which product, company, language and profile this process belongs to, where its settings, folders
// and resource libraries are, and its configuration store.
//
// Texts are UTF-16, terminated. Lengths count characters; unless said otherwise a returned length does not
// count the terminator and 0 or null means failure. Functions that take a buffer without a size need 1024
// characters. Returned pointers belong to the library: never free them. After start-up every function may be
// called from any thread. On Linux clients are compiled with -fshort-wchar: there a std::wstring of the C++
// runtime still has 32-bit characters and crashes without a warning; take std::u16string.
#pragma once

#include "RkUInfo/Export.h"
#include "RkUInfo/ITarvoProduct.h"
#include "RkUInfo/TarvoConfig.h"
#include "RkUInfo/TarvoConfigException.h"
#include "RkUInfo/TarvoLanguage.h"
#include "RkUInfo/VelaVariant.h"

// ---- Start-up -----------------------------------------------------------------------------------

/// The configuration object; never null.
RKUINFO_API TarvoConfig* velaConfig();

/// Start-up, once per process, before other threads use the library. Each argument may be null or empty:
/// - company: "TARVO.ini" [Product] CompanyName, else "Norvik";
/// - product: "CurProduct" under Software\{company}, "TARVO.ini" [Product] ProductName, else "TARVO";
/// - language (a short name such as "en-US"): "CurVer" under the version root, "TARVO.ini" [Product] LocaleId
///   mapped by [LocaleIdLangName], else the first installed one, if the user agrees in a message box;
/// - profile: what the profiles key names. One given here replaces another one named there.
/// What was chosen is remembered in keys that exist already; CreateConfigReg makes them.
/// An unknown language argument, no installed language or a declined one shows a message box and ends the
/// process with exit code 1.
/// @return eOk, at once after an earlier success; eInvalidInput for a company or product of 255 characters or
///         more, for paths that do not fit and after an earlier failure; eRegistryError when the language's
///         folder cannot be read
RKUINFO_API TarvoConfig::Error InitVelaConfig(const wchar_t* company, const wchar_t* product,
                                              const wchar_t* language, const wchar_t* profile);

/// Creates the current user's product tree and records version, language and profile in it. Call it after
/// InitVelaConfig, as often as you like: a current profile that is named already stays. A start-up profile
/// name of any length is stored whole; one of 127 characters or more is read back as unnamed, so that the
/// next lookup of the current profile stores "Default".
/// @return eOk, or eRegistryError when the product key does not exist afterwards. Throws a RkErrorStatus*
///         without memory.
RKUINFO_API TarvoConfig::Error CreateConfigReg();

/// The product object; never null.
RKUINFO_API ITarvoProduct* velaGetProduct();

// ---- INI values ---------------------------------------------------------------------------------

/// Reads an entry of "TARVO.ini", as TarvoConfig::getIniValue. 1 when value was set, else 0.
RKUINFO_API int GetVelaIniConfigValue(const wchar_t* section, const wchar_t* key, VelaVariant& value,
                                      VelaVariant::VarType type);
/// "TARVO.ini" [PartnerOEM] MergeTitle, or defaultValue when it is missing or negative.
RKUINFO_API long GetVelaIniOEMMergeTitleValue(long defaultValue);
/// "S{MajorVer}{ProductId}_" of "product.ini" [Product], kept once both could be read; empty until then.
RKUINFO_API const wchar_t* GetVelaArchitectrueCommandNamePrefix();

// ---- Version and identity -----------------------------------------------------------------------

/// "2018".
RKUINFO_API const wchar_t* GetVelaProgramVersionString();
/// As GetProgramPath with a size of 1023.
RKUINFO_API unsigned long GetVelaProgramPath(wchar_t* const buffer);
/// The executable's file name without extension. buffer holds 1023 characters. 0 when the executable's path
/// cannot be read or does not fit.
RKUINFO_API unsigned long GetVelaProgramName(wchar_t* const buffer);
/// The LCID of a short name, 1033 for one that names no language, 0 for null or empty.
RKUINFO_API long GetVelaLanguageIdByShortName(const wchar_t* shortName);
/// The LCID of the current language, 1033 before start-up.
RKUINFO_API long GetCurrentVelaLanguageId();
RKUINFO_API const wchar_t* GetCurrentProductName();
/// The build stamp, bare (21 characters) or as VERNUM = "..." (32 characters). size counts characters with
/// the terminator; one that is too small leaves an empty text.
RKUINFO_API void GetVerNum(wchar_t* buffer, unsigned long size, bool withPrefix);
/// The resource version number, which is empty: "" or VERNUM = "" (11 characters). As GetVerNum.
RKUINFO_API void GetResVerNum(wchar_t* buffer, unsigned long size, bool withPrefix);
/// "SP2".
RKUINFO_API const wchar_t* GetServicePackageVersionString();

// ---- Program, language resources and help -------------------------------------------------------
// "The program" is the process's executable. Sizes count characters with the terminator. No function here
// checks that a file exists; joined paths follow MAX_PATH (260).

/// The program folder with its trailing backslash. Needs its length + 1 characters; buffer is untouched when
/// it is smaller. Read once per process; safe from several threads.
RKUINFO_API unsigned long GetProgramPath(wchar_t* buffer, unsigned long size);
/// "unknown" before start-up.
RKUINFO_API const wchar_t* GetCurrentLanguageShortName();
/// "unknown" before start-up.
RKUINFO_API const wchar_t* GetCurrentLanguageGlobalName();
/// See TarvoLanguage::localName; may be null.
RKUINFO_API const wchar_t* GetCurrentLanguageLocalName();
/// The current language's resource folder, without trailing backslash. Needs its length + 3 characters, and
/// room for the executable's own path and its terminator; a failed call may leave part of a path.
RKUINFO_API unsigned long GetResourceDllPath(wchar_t* buffer, unsigned long size);
/// The same with a folder name of the caller's in place of the language.
RKUINFO_API unsigned long GetResourceDllPath(const wchar_t* folderName, wchar_t* buffer, unsigned long size);
/// Loads a library of the current language's folder or, when that fails, by its bare name in the system's
/// search order, which has the working directory and PATH in it: an application restricts that order once,
/// as its first step, with SetDefaultDllDirectories (docs/LOADING.md). The caller frees the handle.
RKUINFO_API HINSTANCE__* LoadResourceDll(const wchar_t* fileName);
/// The same with LoadLibraryExW, which gets file and flags unchanged.
RKUINFO_API HINSTANCE__* LoadResourceDllEx(const wchar_t* fileName, void* file, unsigned long flags);
/// The path of "RKHelp.exe" in the program folder. Needs its length + 2 characters; buffer is untouched when
/// it is smaller.
RKUINFO_API long GetHelpFilePath(wchar_t* buffer, long size);

// ---- Per-user folders ---------------------------------------------------------------------------
// Each writes a path of at most 1021 characters, which ends with a backslash except where said, and creates
// nothing. A failed call leaves the part that fitted. The odd spellings are part of the interface.

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
/// {current profile}\Config; at most 1021 characters, else 0 with the profile's key path left in buffer.
RKUINFO_API unsigned long GetVelaRegistryCurrentProfileConfigRootKey(wchar_t* const buffer);

/// The current profile's name as stored.
/// @param buffer may be null, to ask for the size needed; written only when the name fits
/// @param size   in: characters, terminator counted; out: unchanged when the name was copied, the size needed
///               when buffer is null or too small, 0 when no name is stored
RKUINFO_API unsigned long GetCurrentProfileName(wchar_t* buffer, unsigned long& size);
/// The current profile's CommonSettings\CustomResFile, at most 1022 characters.
RKUINFO_API unsigned long GetCustomResFileName(wchar_t* const buffer);

// ---- UI style and user data cache ---------------------------------------------------------------

/// The user's Settings\UserConfig\Config value UIStyle, at most 1022 characters, or, when there is none,
/// Style.tus in the roaming Support folder.
RKUINFO_API unsigned long GetVelaUIStyleConfigFilePath(wchar_t* const buffer);
/// See ITarvoProduct::userDataCachePath; may be empty, never null.
RKUINFO_API const wchar_t* GetVelaUserDataCachePath();
/// The current language's folder in it, without trailing backslash.
RKUINFO_API unsigned long GetVelaUserDataCacheLanPath(wchar_t* const buffer);
