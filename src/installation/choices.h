// Which company, product, language and profile start-up chooses, and why. These functions read the registry
// and the INI files of the program folder that they are given. They write nothing, show nothing and cache
// nothing.
#pragma once

#include "installation/installed.h"
#include "platform/registry_key.h"
#include "platform/text.h"

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
    absent,  ///< no argument, key, value, file or entry; an empty argument or INI entry counts as absent
    empty,   ///< a registry value without text
    tooLong, ///< an argument or a registry value
    otherType,
    unreadable,   ///< the system refuses to read the registry value
    notALanguage, ///< the name is not one of the fifteen short names
    notInstalled, ///< LanguageChoice::installed says what is missing
};

/// What one source said.
struct Finding
{
    Source source;
    const wchar_t* name; ///< of the registry value, INI key or INI section; null for any other source
    Answer answer;
};

/// A name, and the sources that were looked at until one of them decided.
struct Choice
{
    /// The deciding source's name, even if it was refused; empty if no source has one.
    const wchar_t* value() const { return given != nullptr ? given : text.text(); }
    bool isMade() const { return decision().answer == Answer::chosen; }
    /// The last source that was looked at.
    const Finding& decision() const { return found[count - 1]; }
    std::span<const Finding> findings() const { return {found, count}; }

    const wchar_t* given = nullptr; ///< an argument or a built-in name, which is not copied
    TextBuffer<nameCapacity + 1> text;
    Finding found[4];
    std::size_t count = 0;
};

/// From the argument, else TARVO.ini, else built in. An argument of 255 characters or more is refused. Here
/// and below the choice points to the argument.
Choice chooseCompany(const wchar_t* argument, const wchar_t* programFolder);

/// From the argument, else the registry, else TARVO.ini, else built in. Refuses as chooseCompany.
Choice chooseProduct(const wchar_t* argument, const wchar_t* companyRoot, const wchar_t* programFolder);

struct LanguageChoice : Choice
{
    std::int32_t language = unknownLanguage;
    Installed installed = Installed::noFolder; ///< of a known language
};

/// From the argument, else the registry, else TARVO.ini. The first source that has a name decides: a name
/// that is refused does not lead to the next source. None is built in: see preferredLanguage.
LanguageChoice chooseLanguage(const wchar_t* argument, const wchar_t* versionRoot,
                              const wchar_t* programFolder, bool needsEntry);

/// From the argument, else the registry, else built in.
Choice chooseProfile(const wchar_t* argument, const wchar_t* profilesRoot);

/// Reads the current profile's name as every look-up does: whatever the registry value's type is.
Answer readProfile(const RegistryKey& profiles, BoundedText& name);

/// Reads a registry value that must be a REG_SZ. No key counts as an absent value.
Answer readName(const RegistryKey& key, const wchar_t* valueName, BoundedText& name);

/// Whether these name the default product, whose languages need an uninstall entry.
bool isDefaultProduct(const wchar_t* company, const wchar_t* product);

/// See ITarvoProduct::productType.
std::int32_t productType(const wchar_t* product);

} // namespace uinfo
