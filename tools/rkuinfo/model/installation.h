// An application's folder and the user's part of the registry: who the application would be, found out
// without starting the library, which would record it, ask in a message box, and knows the process's own
// folder only.
#pragma once

#include "model/registry.h"
#include "model/session.h"
#include "program/choices.h"
#include "program/layout.h"

#include <RkUInfo.h>

#include <optional>
#include <string>
#include <vector>

struct LanguageState
{
    const uinfo::Language& record;
    Text folder;
    uinfo::Installed installed = uinfo::Installed::noFolder;
    bool hasEntry = false;                        ///< of its installer, which only the default product needs
    bool hasResources = false;                    ///< its library can be read
    std::optional<Text> localName = std::nullopt; ///< in the language itself

    std::string name() const;
    bool isInstalled() const { return installed == uinfo::Installed::yes; }
    /// Empty for an installed language.
    std::string whyNot() const;
};

class Installation
{
    struct Names // as the command line has them, and what the choices point to
    {
        rkuinfo::Argument company, product, language, profile;
    };

public:
    /// Throws for a folder that does not exist, a name that is too long, and a registry that cannot be read.
    explicit Installation(const Session& session);
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;

    /// What a key path or a file path function of the library's composes; throws if the result does not fit.
    template <typename Compose>
    static Text composed(Compose compose)
    {
        uinfo::PathBuffer path;
        if (!compose(path)) {
            throwTooLong();
        }
        return rkuinfo::text(path.text());
    }

    const Text folder; ///< with a backslash at its end

private:
    const rkuinfo::Argument m_folder;
    const Names m_names;

public:
    const uinfo::Choice companyChoice;
    const Text company;
    const uinfo::Choice productChoice;
    const Text product;
    const bool needsEntries; ///< the default product
    const uinfo::LanguageChoice languageChoice;
    const std::int32_t preferred;         ///< the installed language that start-up would propose
    std::vector<LanguageState> languages; ///< all fifteen, by index

    /// The language that start-up would choose; empty if nothing names one.
    Text wanted() const { return rkuinfo::text(languageChoice.value()); }
    /// Why the wanted language cannot be chosen; empty if it can, or if none is wanted.
    std::string whyNotWanted() const;
    /// The language that start-up chooses; throws where it would ask, or terminate the process.
    const LanguageState& chosenLanguage() const;
    Text language() const;

    Text companyRoot() const;
    Text path(TarvoConfig::Path subtree) const;

    /// Throws where no language is chosen.
    uinfo::Choice profileChoice() const;
    /// The profile that the registry names; its source is the default if it names none.
    uinfo::Choice storedProfile() const;
    Text profile() const { return rkuinfo::text(profileChoice().value()); }

    /// A path that is stored as a setting, empty if an application cannot use it; nothing if none is stored.
    std::optional<Text> storedPath(TarvoConfig::Path subtree, const wchar_t* valuePath) const;

    /// An entry of an INI file in the folder, at most capacity - 2 characters.
    Text iniText(const wchar_t* file, const wchar_t* section, const wchar_t* key,
                 unsigned long capacity) const;
    Text iniFile(const wchar_t* file) const;
    /// Empty unless product.ini has both numbers.
    Text commandPrefix() const;

private:
    [[noreturn]] static void throwTooLong();
    Text productRoot() const;
    Text versionRoot() const;
};

bool exists(const Text& path);
