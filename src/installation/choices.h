// Chooses the company, product, language and profile for start-up, and reports the reason for each choice.
// The functions read the registry and the INI files in the given program folder; they write nothing, show
// nothing and cache nothing.
#pragma once

#include "installation/installed.h"
#include "platform/registry_key.h"
#include "platform/text.h"

#include <array>
#include <cstdint>
#include <span>

namespace uinfo {

enum class Source
{
    argument,
    registry,
    iniFile,
    builtIn,
};

enum class Answer
{
    chosen,
    absent,  ///< the argument, key, value, file or entry is missing, or the argument or INI entry is empty
    empty,   ///< an empty registry value
    tooLong, ///< the argument or registry value exceeds its limit
    otherType,
    unreadable,   ///< the registry value cannot be read
    notALanguage, ///< the name is not the short name of a language
    notInstalled, ///< see LanguageChoice::installed
};

/// The result of reading one source.
struct Finding
{
    Source source;
    const wchar_t* name; ///< of the registry value, INI key or INI section; null for any other source
    Answer answer;
};

/// The name that was chosen, if any, and the result of each source that was read. The last source that
/// was read determines the result.
struct Choice
{
    /// Returns the name in the last source that was read, even if that name was rejected. Returns the empty
    /// string if no source contains a name.
    const wchar_t* value() const { return given != nullptr ? given : text.data(); }
    bool isMade() const { return decision().answer == Answer::chosen; }
    /// Returns the result of the last source that was read.
    const Finding& decision() const { return found[count - 1]; }
    std::span<const Finding> findings() const { return {found, count}; }

    /// An argument or a built-in name, which is not copied; null if `text` contains the name.
    const wchar_t* given = nullptr;
    std::array<wchar_t, nameCapacity + 1> text = {};
    Finding found[4];
    std::size_t count = 0;
};

/// Chooses the first name that exists: the argument, the name in TARVO.ini, or the built-in name. Rejects an
/// argument of 255 characters or more.
Choice chooseCompany(const wchar_t* argument, const wchar_t* programFolder);

/// Works like chooseCompany, but tries the registry before TARVO.ini.
Choice chooseProduct(const wchar_t* argument, const wchar_t* companyRoot, const wchar_t* programFolder);

struct LanguageChoice : Choice
{
    std::int32_t language = unknownLanguage;
    Installed installed = Installed::noFolder; ///< set if the language is known
};

/// Reads the argument, the registry and TARVO.ini, in that order. The first source that contains a name
/// determines the language, even if no language of that name is installed. A registry value does not count as
/// a name if it is empty, is longer than 6 characters, or is not a REG_SZ. If no language is chosen, the
/// caller should propose preferredLanguage(). If needsEntry is true, a language counts as installed only if
/// it has an uninstall entry.
LanguageChoice chooseLanguage(const wchar_t* argument, const wchar_t* versionRoot,
                              const wchar_t* programFolder, bool needsEntry);

/// Chooses the first profile that exists: the argument, the one in the registry, or the built-in one.
Choice chooseProfile(const wchar_t* argument, const wchar_t* profilesRoot);

/// Reads the current profile's name, whatever the type of the registry value.
Answer readProfile(const RegistryKey& profiles, BoundedText& name);

/// Reads a registry value, which must be a REG_SZ. Returns Answer::absent if key is not open.
Answer readName(const RegistryKey& key, const wchar_t* valueName, BoundedText& name);

/// Returns whether both the company and the product are the defaults. Only languages of the default product
/// need an uninstall entry.
bool isDefaultProduct(const wchar_t* company, const wchar_t* product);

/// Returns the product type of a product name, as ITarvoProduct::productType does.
std::int32_t productType(const wchar_t* product);

} // namespace uinfo
