// SPDX-License-Identifier: MIT
// TarvoLanguage: one of the fifteen user-interface languages.
#pragma once

#include "RkUInfo/Export.h"

#include <cstdint>

#pragma pack(push, 8) // whatever /Zp says

/// Names one of the fifteen user-interface languages by its index 0..14, the position of its short name in
/// alphabetical order, or the unknown language by -1. Short names ("en-US") compare ignoring case.
///
/// Returned strings belong to the library or to the object. Distinct objects may be used from several threads
/// at once; so may localName() of one object.
class RKUINFO_API TarvoLanguage
{
public:
    /// Accepts an index of -1..14; any other value makes the unknown language.
    TarvoLanguage(long lang);
    /// Looks up a short name; null, empty or unknown names make the unknown language.
    TarvoLanguage(const wchar_t* shortName);
    /// Copies the index; the copy loads its local name again.
    TarvoLanguage(const TarvoLanguage& other);
    /// Copies the index and releases the target's local name, which must no longer be in use.
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
    /// Returns the name in the language of the resources in use, at most 62 characters, loaded once per
    /// object from "RkUInfoRes.dll"; null while that library or its string cannot be loaded. The library is
    /// loaded once per process, by the first call that finds it; until then each call searches again, as
    /// LoadResourceDll does. The string lives until the object is destroyed or assigned to.
    const wchar_t* localName() const;

    /// Returns the index of a short name; -1 for null, empty or unknown names.
    static long shortNameToLangId(const wchar_t* shortName);
    static bool isValidShortName(const wchar_t* shortName);

private:
    std::int32_t m_lang;
    mutable wchar_t* m_localName; // array-allocated
};

#pragma pack(pop)
