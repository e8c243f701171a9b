// SPDX-License-Identifier: MIT
// TarvoLanguage: a user-interface language.
#pragma once

#include "RkUInfo/Export.h"

#include <cstdint>

#pragma pack(push, 8) // makes the layout independent of /Zp

/// Identifies a user-interface language by its index; -1 means the unknown language. The languages 0 to 14
/// are in alphabetical order of their short names; newer languages follow. Short names ("en-US") are compared
/// ignoring case.
///
/// Returned strings belong to the library or to the object. Different objects may be used from several
/// threads at once; localName() may also be called on one object from several threads.
class RKUINFO_API TarvoLanguage
{
public:
    /// If a value is not the index of a language, it stands for the unknown language.
    TarvoLanguage(long lang);
    /// Looks up a short name; a null, empty or unknown name means the unknown language.
    TarvoLanguage(const wchar_t* shortName);
    /// Copies the index, but not the cached local name.
    TarvoLanguage(const TarvoLanguage& other);
    /// Copies the index. Frees the old local name: pointers that localName() has returned become invalid.
    TarvoLanguage& operator=(const TarvoLanguage& other);
    ~TarvoLanguage();

    bool operator==(const TarvoLanguage& other) const;

    /// Returns the index, -1..14.
    long language() const;
    /// Returns the Windows LCID; 1033 for the unknown language.
    long velaLanguage() const;
    /// Returns the short name, such as "en-US"; "unknown" for the unknown language.
    const wchar_t* shortName() const;
    /// Returns the English name, such as "Simplified Chinese"; "unknown" for the unknown language.
    const wchar_t* globalName() const;
    /// Returns the language's name as the loaded "RkUInfoRes.dll" translates it, at most 62 characters; null
    /// if the library or its string cannot be loaded. The first call that finds the library loads it for
    /// the whole process. Until then, each call searches for it as LoadResourceDll does. The string is loaded
    /// once per object and remains valid until the object is destroyed or assigned to.
    const wchar_t* localName() const;

    /// Returns the index of a short name; -1 for null, empty or unknown names.
    static long shortNameToLangId(const wchar_t* shortName);
    static bool isValidShortName(const wchar_t* shortName);

private:
    std::int32_t m_lang;
    mutable wchar_t* m_localName; // allocated with new[]
};

#pragma pack(pop)
