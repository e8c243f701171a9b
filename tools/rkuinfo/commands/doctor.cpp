// rkuinfo doctor. Codes and severities are a contract, which the man page lists.
#include "commands/command.h"

#include "installation/names.h"
#include "model/system.h"

#include <algorithm>

namespace {

constexpr bool error = true; ///< a severity
constexpr bool note = false;

struct Finding
{
    std::string code;
    bool isError;
    std::vector<std::string> subjects; ///< findings that only differ in them are one
    std::string problem;
    std::string remedy;
};

class Doctor
{
public:
    explicit Doctor(const Session& session) : m_session(session) {}

    std::vector<Finding> examine()
    {
        if (const std::optional<Trouble> trouble = registryTrouble()) {
            add(error, "registry", "registry", trouble->problem, trouble->remedy);
            checkWritable({}); // its owner may be the cause
            return m_findings; // nothing else can be known
        }
        if (const std::string file = earlierRegistry(); !file.empty()) {
            add(note, "earlier-registry", file, "a registry of an earlier version, which is not read",
                "export it by the rkuinfo of that version, import the file, and remove it");
        }
        const Text folder = m_session.has("--program") ? fullFolder(m_session["--program"])
                                                       : rkuinfo::text(GetVelaProgramPath);
        if (checkIniFile(folder, uinfo::tarvoIni) && checkIniFile(folder, uinfo::productIni)) {
            guard(&m_losses, [this] {
                const Installation installation(m_session);
                checkIni(installation);
                checkLanguages(installation);
                checkOrigins(installation);
                checkUser(installation);
            });
        }
        for (const std::string& loss : m_losses) {
            add(error, "tree-damaged", "registry", loss, salvage());
        }
        return m_findings;
    }

private:
    void add(bool isError, const char* code, const std::string& subject, const std::string& problem,
             const std::string& remedy)
    {
        const auto alike = std::ranges::find_if(m_findings, [&](const Finding& finding) {
            return finding.code == code && finding.problem == problem && finding.remedy == remedy;
        });
        if (alike == m_findings.end()) {
            m_findings.push_back({code, isError, {subject}, problem, remedy});
        } else {
            alike->subjects.push_back(subject);
        }
    }

    /// A command line that acts on the same installation, in another language if one is named.
    std::string command(const std::string& words, const std::string& language = {}) const
    {
        Session session = m_session;
        if (!language.empty()) {
            session.given["--language"] = language;
        }
        return session.commandLine(words);
    }

    std::string salvage() const
    {
        return "save what can be read: " + command("export product-root --salvage --file saved.json") +
               ", then remove the tree and restore it: " + command("rm product-root --all") + " and " +
               command("import product-root --file saved.json");
    }

    // ---- INI files

    /// Returns whether the file can be read without danger, or does not exist.
    bool checkIniFile(const Text& folder, const wchar_t* name)
    {
        const Text path = folder + rkuinfo::text(name);
        if (!exists(path)) {
            if (name == uinfo::tarvoIni) {
                add(note, "ini-missing", utf8(path),
                    "there is no such file: names come from the registry and defaults",
                    "write one if the application has its own names");
            }
            return true;
        }
        const std::optional<std::string> bytes = readSmallFile(nativePath(path));
        if (!bytes) {
            add(error, "ini-unreadable", utf8(path), "not a file of at most 1 MiB that this user can read",
                "replace it, or allow the user to read it");
            return false;
        }
        const bool isWide = bytes->starts_with("\xff\xfe") || bytes->starts_with("\xfe\xff");
        if (bytes->find('[') == std::string::npos || (!isWide && bytes->find('\0') != std::string::npos)) {
            add(error, "ini-garbled", utf8(path), "not an INI file: it has no section",
                "write it again, as plain text with the section [" + utf8(uinfo::productSection) + ']');
        } else if (bytes->starts_with("\xef\xbb\xbf")) {
            add(error, "ini-mark", utf8(path),
                "it begins with a UTF-8 mark: Windows ignores its first section",
                "save it without the mark, or as UTF-16");
        }
        return true;
    }

    void checkIni(const Installation& installation)
    {
        const std::string section = '[' + utf8(uinfo::productSection) + ']';
        const std::string file = utf8(uinfo::tarvoIni) + ": ";
        const auto entry = [&](const wchar_t* key) {
            return installation.iniText(uinfo::tarvoIni, uinfo::productSection, key);
        };
        const Text id = entry(uinfo::localeIdKey);
        const bool hasCompany = !entry(uinfo::companyNameKey).empty();
        const bool hasProduct = !entry(uinfo::productNameKey).empty();
        const bool isEmpty = id.empty() && !hasCompany && !hasProduct;
        const Text path = installation.folder + rkuinfo::text(uinfo::tarvoIni);
        if (exists(path) && (isEmpty || (!hasCompany && !m_session.has("--company")) ||
                             (!hasProduct && !m_session.has("--product")))) {
            const std::string key = utf8(hasCompany ? uinfo::productNameKey : uinfo::companyNameKey);
            add(isEmpty ? error : note, "ini-names", utf8(path),
                isEmpty ? "it has no section " + section + " that names company or product"
                        : "it has no " + key + " in " + section + ": the default is used",
                "write " + key + "= and the name into its section " + section);
        }
        const std::string names = '[' + utf8(uinfo::localeNamesSection) + ']';
        std::vector<Text> ids = {id};
        for (const LanguageState& state : installation.languages) {
            ids.push_back(utf16(std::to_string(state.record.lcid)));
        }
        ids.erase(std::remove(ids.begin() + 1, ids.end(), id), ids.end());
        for (const Text& each : ids) {
            const Text name =
                installation.iniText(uinfo::tarvoIni, uinfo::localeNamesSection, rkuinfo::Argument(each));
            if (name.empty() && each == id && !id.empty()) {
                add(error, "locale-unmapped",
                    file + section + ' ' + utf8(uinfo::localeIdKey) + '=' + utf8(id),
                    "the number is not mapped to a language",
                    "add " + utf8(id) + "=xx-XX to its section " + names);
            } else if (!name.empty() && !TarvoLanguage::isValidShortName(rkuinfo::Argument(name))) {
                add(error, "locale-mapping", file + names + ' ' + utf8(each) + '=' + utf8(name),
                    "the name is not that of a language",
                    "write one of the fifteen short names, such as en-US");
            }
        }
        const Text product = installation.folder + rkuinfo::text(uinfo::productIni);
        if (exists(product) && installation.commandPrefix().empty()) {
            add(error, "command-prefix", utf8(product), "it has no prefix for commands",
                "write numbers for " + utf8(uinfo::majorVersionKey) + " and " + utf8(uinfo::productIdKey) +
                    " into its section " + section);
        }
    }

    // ---- Languages

    /// A folder without an uninstall entry is not a fault: packages contain all languages, installers choose.
    void checkLanguages(const Installation& installation)
    {
        for (const LanguageState& state : installation.languages) {
            const bool hasFolder = state.installed != uinfo::Installed::noFolder;
            const std::string library = "the language's " + utf8(uinfo::languageLibrary);
            if (state.installed == uinfo::Installed::emptyFolder) {
                add(error, "language-empty", state.name(), "the language's folder has no library",
                    "install it again, or remove the folder");
            } else if (hasFolder && !state.hasResources) {
                add(error, "language-library", state.name(), library + " cannot be loaded",
                    "install it again");
            } else if (!state.other.empty()) {
                add(error, "language-other", state.name(), library + " is of " + state.other,
                    "install it again");
            } else if (!hasFolder && state.hasEntry && installation.needsEntries) {
                add(error, "language-folder", state.name(),
                    "the language has an uninstall entry and no folder",
                    "install it again, or remove the entry");
            }
        }
        if (installation.preferred == uinfo::unknownLanguage) {
            add(error, "no-language", utf8(installation.folder), installation.whyNone(),
                "run a language's installer: no application can start");
            return;
        }
        const std::string proposed =
            installation.languages[static_cast<std::size_t>(installation.preferred)].name();
        if (const std::string why = installation.whyNotWanted(); !why.empty()) {
            add(error, "language-not-installed", utf8(installation.wanted.value()), why,
                "install it, or choose another: " + command("use", proposed));
        } else if (!installation.wanted.isMade()) {
            add(note, "language-asked", proposed,
                "nothing names a language: start-up proposes this one, and ends if it "
                "cannot ask the user",
                "choose one: " + command("use", proposed));
        }
    }

    void checkOrigins(const Installation& installation)
    {
        const std::vector<Origin> origins = installation.origins();
        for (const Origin& used : origins) {
            for (const Origin& other : origins) {
                if (used.isUsed && used.name == other.name && !other.value.empty() &&
                    other.source != "the default" && used.source != "the command line" &&
                    !equalIgnoringCase(used.value, other.value)) {
                    add(note, "sources-disagree", used.name,
                        used.source + " has " + utf8(used.value) + ", " + other.source + " has " +
                            utf8(other.value),
                        "the first is used; see " + command("show --origin"));
                }
            }
        }
    }

    // ---- The user's folders and tree

    void checkUser(const Installation& installation)
    {
        for (const bool isRoaming : {true, false}) {
            if (rkuinfo::text(isRoaming ? GetUserApplicationDataPath : GetUserLocalApplicationDataPath)
                    .empty()) {
                const std::string folder = userFolder(isRoaming);
                add(error, "user-folder", folder, "the user's folder for application data does not exist",
                    "create it: mkdir " + shellWord(folder));
            }
        }
        const Text product = installation.path(TarvoConfig::eProductRoot);
        guard(&m_losses, [&] {
            if (std::optional<Key> key = Key::find(product)) {
                readTree(std::move(*key), &m_losses);
            }
        });
        checkWritable(product);
        if (installation.preferred != uinfo::unknownLanguage && installation.whyNotWanted().empty() &&
            m_losses.empty()) {
            checkProfile(installation);
        }
    }

    void checkWritable(const Text& key)
    {
        if (const std::optional<Trouble> trouble = writeTrouble(key)) {
            add(error, "tree-unwritable", key.empty() ? "registry" : utf8(key), trouble->problem,
                trouble->remedy);
        }
    }

    /// The default profile's key comes with its first setting.
    void checkProfile(const Installation& installation)
    {
        const Text root = installation.path(TarvoConfig::eProfilesRoot);
        const uinfo::Choice choice = installation.profile();
        const std::string name = utf8(choice.value());
        if (!Key::find(root)) {
            add(error, "no-tree", utf8(root), "the user has no such key",
                m_session.has("--program") ? "start the application once, which creates the user's tree"
                                           : "create the user's tree: " + command("provision"));
        } else if (choice.decision().source == uinfo::Source::builtIn) {
            add(error, "no-profile", utf8(root), "no profile is the current one",
                "choose one: " + command("use"));
        } else if (!equalIgnoringCase(utf16(name), rkuinfo::text(uinfo::defaultProfile)) &&
                   !Key::find(joinedKey(root, utf16(name)))) {
            add(error, "profile-missing", name, "the current profile has no key",
                "create it: " + command("use"));
        }
    }

    const Session& m_session;
    std::vector<Finding> m_findings;
    Losses m_losses;
};

void doctor(Session& session)
{
    const std::vector<Finding> findings = Doctor(session).examine();
    const Layout layout = session.layout();
    Table table;
    Json list = Json::array();
    for (const auto& [code, isError, subjects, problem, remedy] : findings) {
        std::string all;
        for (const std::string& subject : subjects) {
            all += (all.empty() ? "" : ", ") + shown(subject);
        }
        const Cell severity = {isError ? "error" : "note", isError ? Style::bad : Style::quiet};
        if (layout.columns) {
            table.addRow(
                {severity, {problem.starts_with(all) ? shown(problem) : all + ": " + shown(problem)}});
            table.addRow({{"remedy", Style::good}, {shown(remedy)}});
        } else {
            table.addRow({severity, {code}, {all}, {shown(problem)}, {shown(remedy)}});
        }
        list.push_back({{"code", code},
                        {"severity", severity.text},
                        {"subjects", subjects},
                        {"problem", problem},
                        {"remedy", remedy}});
    }
    if (findings.empty() && !session.has("--json")) {
        print("nothing is wrong");
    }
    printEither(session, table, {{"findings", list}});
    session.exitCode = std::ranges::any_of(findings, &Finding::isError) ? exitFailed : 0;
}

const Command doctorCommand("doctor", "[--json]",
                            "Find what is wrong with the installation, and how to fix it",
                            "Exit code 1 when there is an error, 0 for notes.", doctor);

} // namespace
