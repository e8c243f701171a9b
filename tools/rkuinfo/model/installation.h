// Finds the names that start-up would choose for an application. Reads the application's folder and the
// registry. Does not start the library, because start-up records the names, may show a message box, and reads
// only the process's own folder.
#pragma once

#include "installation/choices.h"
#include "installation/layout.h"
#include "model/registry.h"

#include <RkUInfo.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

/// A parsed command line.
struct Session
{
    std::map<std::string, std::string> given; ///< parameter values by name, such as "--file"
    int exitCode = 0;

    bool has(const std::string& name) const { return given.contains(name); }
    /// Returns the value of a parameter, or "" if the parameter is not given.
    std::string operator[](const std::string& name) const { return has(name) ? given.at(name) : ""; }
    /// Returns an rkuinfo command line for the same installation, such as "rkuinfo --company Acme doctor".
    /// `words` must already be quoted for a shell.
    std::string commandLine(const std::string& words) const;
    /// Returns the folder given by --program, otherwise rkuinfo's own folder. Appends a backslash.
    /// Throws if --program does not name a folder.
    Text programFolder() const;
    Layout layout() const;
};

struct LanguageState
{
    const uinfo::Language& record;
    Text folder;
    uinfo::Installed installed;
    bool hasEntry = false;     ///< whether the uninstall entry exists; only the default product needs it
    bool hasResources = false; ///< whether the resource library can be read
    std::optional<Text> localName = std::nullopt; ///< the language's native name
    std::string other = {};                       ///< if the library is for another language, that language

    std::string name() const { return utf8(record.shortName); }
    /// Returns the reason why the language is not installed; empty if it is installed.
    std::string whyNot() const;
};

/// The result of looking up a name in one source.
struct Origin
{
    std::string name; ///< company, product, language or profile
    std::string source;
    Text value;
    std::string problem; ///< empty for a name that start-up accepts
    bool isUsed;
};

class Installation
{
    const rkuinfo::Argument m_folder, m_companyName, m_productName, m_languageName, m_profileName;

public:
    /// Throws if the folder does not exist, a name is too long, or the registry cannot be read.
    explicit Installation(const Session& session);
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;

    /// Returns the path that compose() builds in a PathBuffer; throws if the path is too long.
    static Text composed(const auto& compose)
    {
        uinfo::PathBuffer path;
        if (!compose(path)) {
            throw Failure("the names are too long: a path may have at most 1023 characters", {}, exitUsage);
        }
        return rkuinfo::text(path.text());
    }

    const Text folder; ///< ends with a backslash
    const uinfo::Choice company;
    const Text companyRoot; ///< the company's key
    const uinfo::Choice product;
    const bool needsEntries; ///< true for the default product
    const uinfo::LanguageChoice wanted;
    const std::int32_t preferred;         ///< the installed language that start-up would propose
    std::vector<LanguageState> languages; ///< all known languages, by index

    /// Returns the reason why the requested language cannot be used, or an empty string if it can be used or
    /// no language is requested.
    std::string whyNotWanted() const;
    /// Returns the reason why no language is installed.
    std::string whyNone() const;
    /// Returns true if a language is installed and the requested language, if any, can be used.
    bool hasLanguage() const { return preferred != uinfo::unknownLanguage && whyNotWanted().empty(); }
    /// Returns the requested language. If no language is requested, returns the one that start-up would
    /// propose. Throws if no language is installed or the requested one cannot be used.
    const LanguageState& chosenLanguage() const;
    Text language() const { return rkuinfo::text(chosenLanguage().record.shortName); }
    uinfo::Choice profile() const;
    Text path(TarvoConfig::Path subtree) const;

    /// Returns the sources of each name, in the order in which start-up reads them.
    std::vector<Origin> origins() const;

    /// Returns the path stored in a setting: empty if no application can use the stored value, std::nullopt
    /// if the setting does not exist.
    std::optional<Text> storedPath(TarvoConfig::Path subtree, const wchar_t* valuePath) const;
    /// Returns at most the first 254 characters of an entry in TARVO.ini.
    Text iniText(const wchar_t* section, const wchar_t* key) const;
    /// Returns the prefix of architecture commands, such as S25_; empty unless product.ini contains both of
    /// the numbers that make up the prefix.
    Text commandPrefix() const;
};

bool exists(const Text& path);
