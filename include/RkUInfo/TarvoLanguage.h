// SPDX-License-Identifier: MIT
// TarvoLanguage: one of the fifteen user-interface languages.
#pragma once

#include "RkUInfo/Export.h"

#include <cstdint>

#pragma pack(push, 8) // whatever /Zp says

/// Names one of the fifteen user-interface languages by its index 0..14, the position of its short name in
/// alphabetical order, or the unknown language by -1. Short names ("en-US") compare ignoring case.
///
/// Returned texts belong to the library or to the object. Distinct objects may be used from several threads
/// at once; the first localName() of one object, too, is safe from several threads.
class RKUINFO_API TarvoLanguage
{
public:
    /// Keeps an index of -1..14; any other value gives the unknown language.
    TarvoLanguage(long lang);
    /// The language of that short name; null, empty or unmatched gives the unknown language.
    TarvoLanguage(const wchar_t* shortName);
    /// Copies the index; the copy asks for its local name afresh.
    TarvoLanguage(const TarvoLanguage& other);
    /// Copies the index and releases the target's local name, which must no longer be in use.
    TarvoLanguage& operator=(const TarvoLanguage& other);
    ~TarvoLanguage();

    bool operator==(const TarvoLanguage& other) const;

    /// The index, -1..14.
    long language() const;
    /// The Windows LCID; 1033 for the unknown language.
    long velaLanguage() const;
    /// The short name, such as "en-US"; "unknown" for the unknown language.
    const wchar_t* shortName() const;
    /// The English name, such as "Simplified Chinese"; "unknown" for the unknown language.
    const wchar_t* globalName() const;
    /// The name in the language of the resources in use, at most 62 characters, read once per object from
    /// "RkUInfoRes.dll"; null while that library or its text cannot be loaded. The library is loaded once per
    /// process, on the first request that finds it; until then each request searches anew, as LoadResourceDll
    /// does. Lives as long as the object keeps its language.
    const wchar_t* localName() const;

    /// The index of a short name; -1 for null, empty or unknown names.
    static long shortNameToLangId(const wchar_t* shortName);
    static bool isValidShortName(const wchar_t* shortName);

private:
    std::int32_t m_lang;
    mutable wchar_t* m_localName; // array-allocated
};

#pragma pack(pop)
