// An application's folder and the user's part of the registry: who the application would be, looked at
// without starting the library, which would remember it, ask in a message box, and knows the process's own
// folder alone.
#pragma once

#include "model/registry.h"
#include "model/session.h"
#include "program/language_choice.h"

#include <RkUInfo.h>

#include <optional>
#include <string>
#include <vector>

struct LanguageState
{
    const uinfo::Language& record;
    Text folder;
    uinfo::Installed installed = uinfo::Installed::noFolder;
    bool hasEntry = false;                        ///< of its installer, which the default product alone needs
    bool hasResources = false;                    ///< RkUInfoRes.dll can be read
    std::optional<Text> localName = std::nullopt; ///< in the language itself

    std::string name() const;
    bool isInstalled() const { return installed == uinfo::Installed::yes; }
    /// Empty for an installed language.
    std::string whyNot() const;
};

class Installation
{
public:
    /// Throws for a folder that is none, a name that is too long, and a registry that cannot be read.
    explicit Installation(const Session& session);

    Text folder; ///< with a backslash at its end
    Text company;
    Text product;
    bool needsEntries = false;            ///< the default product
    std::vector<LanguageState> languages; ///< all fifteen, by index
    Text wanted;                 ///< the language that start-up would take; empty when nothing names one
    std::string source;          ///< what names it
    std::int32_t preferred = -1; ///< the installed language that start-up would propose

    /// Why the wanted language cannot be taken; empty when it can, or when none is wanted.
    std::string whyNotWanted() const;
    /// The language that start-up takes; throws where it would ask, or end the process.
    const LanguageState& chosenLanguage() const;
    Text language() const;

    Text versionRoot() const;
    Text path(TarvoConfig::Path subtree) const;
    /// What the profiles root names, as start-up reads it; empty when it names none.
    Text storedProfile() const;
    /// The one that was asked for, else the stored one, else "Default".
    Text profile() const;

    /// An entry of an INI file in the folder, at most capacity - 2 characters.
    Text iniText(const char* file, const wchar_t* section, const Text& key, unsigned long capacity) const;
    Text iniFile(const char* file) const;

private:
    void findLanguage(const Session& session);

    Text m_profile;
};

bool exists(const Text& path);
