// What start-up would find, looked at without starting: the library starts once per process, asks in a
// message box when a language is not installed, and ends the process when none is.
#pragma once

#include "session.h"
#include "text.h"

#include "program/language_choice.h"

#include <RkUInfo.h>

#include <optional>
#include <string>
#include <vector>

struct LanguageState
{
    TarvoLanguage language;
    Text folder;
    uinfo::Installed installed = uinfo::Installed::noFolder;
    bool hasEntry = false;                        ///< of its installer, which the default product alone needs
    bool hasResources = false;                    ///< RkUInfoRes.dll can be read
    std::optional<Text> localName = std::nullopt; ///< in the language itself

    bool isInstalled() const { return installed == uinfo::Installed::yes; }
    bool hasFolder() const { return installed != uinfo::Installed::noFolder; }
    /// Empty for an installed language.
    std::string whyNot() const;
};

struct Installation
{
    Text company;
    Text product;
    bool needsEntries = false;            ///< the default product
    std::vector<LanguageState> languages; ///< all fifteen, by index

    std::string versionRoot; ///< its key path

    Text wanted;        ///< the language that start-up would take; empty when nothing names one
    std::string source; ///< what names it
    bool canBeTaken = false;
    std::int32_t preferred = uinfo::unknownLanguage; ///< the installed language that start-up would propose
};

/// Writes nothing. Throws for a company or product name that is too long.
Installation examine(const Session& session);

/// Why the wanted language cannot be taken; empty when it can, or when none is wanted.
std::string whyNotWanted(const Installation& installation);

/// Start-up; throws where it would ask the user or end the process.
void startUp(const Session& session);
