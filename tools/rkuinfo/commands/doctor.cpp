// rkuinfo doctor. Scripts rely on the codes and severities that the man page lists for findings.
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
    std::vector<std::string> subjects; ///< findings that differ only in the subject are merged
    std::string problem;
    std::string remedy;
};

class Doctor
{
public:
    explicit Doctor(const Session& session) : m_session(session) {}

    std::vector<Finding> examine()
    {
        if (!passes("registry", "registry", [] { keyExists(rkuinfo::text(L"Software")); })) {
            passes("tree-unwritable", "registry", [] { requireWritable({}); }); // reports a possible cause
            return m_findings; // all other checks need the registry
        }
        const std::string earlier = userFolder(false) + "/winhost/data.mdb"; // exists only on the host
        if (exists(utf16("Z:" + earlier))) {
            add(note, "earlier-registry", earlier, "written by an earlier version, so it is ignored",
                "export it with the rkuinfo of that version, import the exported file, and remove this one");
        }
        const Text folder = m_session.programFolder();
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
            add(error, "tree-damaged", "registry", loss,
                "save what can be read: " + command("export product-root --salvage --file saved.json") +
                    ", then remove the tree and restore it: " + command("rm product-root --all") + " and " +
                    command("import product-root --file saved.json"));
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
        } else if (alike->subjects.back() != subject) {
            alike->subjects.push_back(subject);
        }
    }

    /// Runs a check. If the check throws, adds a finding and returns false.
    template <typename Check>
    bool passes(const char* code, const std::string& subject, const Check& check)
    {
        try {
            check();
            return true;
        } catch (const Failure& failure) {
            add(error, code, subject, failure.problem, failure.remedy);
            return false;
        }
    }

    /// Returns an rkuinfo command line for the same installation. If `language` is not empty, the command
    /// line contains it as the value of --language.
    std::string command(const std::string& words, const std::string& language = {}) const
    {
        Session session = m_session;
        if (!language.empty()) {
            session.given["--language"] = language;
        }
        return session.commandLine(words);
    }

    // ---- INI files

    /// Adds a finding for each fault in the file. Returns false if the file exists but is not safe to read.
    bool checkIniFile(const Text& folder, const wchar_t* name)
    {
        const Text path = folder + rkuinfo::text(name);
        if (!exists(path)) {
            if (name == uinfo::tarvoIni) {
                add(note, "ini-missing", utf8(path), "the file is missing",
                    "create it if the application has its own company or product name");
            }
            return true;
        }
        const std::optional<std::string> bytes = readSmallFile(nativePath(path));
        if (!bytes) {
            add(error, "ini-unreadable", utf8(path),
                "it is not a regular file, cannot be read, or is larger than 1 MiB",
                "replace it, or allow the user to read it");
            return false;
        }
        if (bytes->starts_with("\xef\xbb\xbf")) {
            add(error, "ini-mark", utf8(path),
                "it begins with a UTF-8 byte order mark, so Windows ignores its first section",
                "save it without the mark, or as UTF-16");
        }
        return true;
    }

    void checkIni(const Installation& installation)
    {
        const std::string section = '[' + utf8(uinfo::productSection) + ']';
        const auto entry = [&](const wchar_t* key) {
            return installation.iniText(uinfo::productSection, key);
        };
        const Text id = entry(uinfo::localeIdKey);
        const Text path = installation.folder + rkuinfo::text(uinfo::tarvoIni);
        const bool isEmpty =
            id.empty() && entry(uinfo::companyNameKey).empty() && entry(uinfo::productNameKey).empty();
        for (const auto& [option, key] :
             {std::pair("--company", uinfo::companyNameKey), {"--product", uinfo::productNameKey}}) {
            if (exists(path) && entry(key).empty() && (isEmpty || !m_session.has(option))) {
                add(isEmpty ? error : note, "ini-names", utf8(path),
                    "it has no " + utf8(key) + " in a section " + section,
                    "write " + utf8(key) + "=<name> into that section");
            }
        }
        const Text language = installation.iniText(uinfo::localeNamesSection, rkuinfo::Argument(id));
        if (!id.empty() && !TarvoLanguage::isValidShortName(rkuinfo::Argument(language))) {
            add(error, "locale-unmapped", utf8(path),
                utf8(uinfo::localeIdKey) + '=' + utf8(id) + " is not mapped to a language",
                "write " + utf8(id) + "=xx-XX, such as en-US, into its section [" +
                    utf8(uinfo::localeNamesSection) + ']');
        }
        const Text product = installation.folder + rkuinfo::text(uinfo::productIni);
        if (exists(product) && installation.commandPrefix().empty()) {
            add(error, "command-prefix", utf8(product), "it does not define the command prefix",
                "write numbers for " + utf8(uinfo::majorVersionKey) + " and " + utf8(uinfo::productIdKey) +
                    " into its section " + section);
        }
    }

    // ---- Languages

    /// Accepts a folder without an uninstall entry: packages contain all languages, but an installer
    /// registers only some.
    void checkLanguages(const Installation& installation)
    {
        for (const LanguageState& state : installation.languages) {
            const auto addFault = [&](const char* code, const std::string& problem,
                                      const std::string& otherRemedy = "") {
                add(error, code, state.name(), problem, "install it again" + otherRemedy);
            };
            const bool hasFolder = state.installed != uinfo::Installed::noFolder;
            const std::string library = "the language's " + utf8(uinfo::languageLibrary);
            if (state.installed == uinfo::Installed::emptyFolder) {
                addFault("language-empty", "the language's folder has no library", ", or remove the folder");
            } else if (hasFolder && !state.hasResources) {
                addFault("language-library", library + " cannot be loaded");
            } else if (!state.other.empty()) {
                addFault("language-other", library + " is of " + state.other);
            } else if (!hasFolder && state.hasEntry && installation.needsEntries) {
                addFault("language-folder", "it has an uninstall entry but no folder",
                         ", or remove the entry");
            }
        }
        if (installation.preferred == uinfo::unknownLanguage) {
            add(error, "no-language", utf8(installation.folder), installation.whyNone(),
                "run a language's installer: no application can start without a language");
            return;
        }
        const std::string proposed =
            installation.languages[static_cast<std::size_t>(installation.preferred)].name();
        if (const std::string why = installation.whyNotWanted(); !why.empty()) {
            add(error, "language-not-installed", utf8(installation.wanted.value()), why,
                "install it, or choose another: " + command("use", proposed));
        } else if (!installation.wanted.isMade()) {
            add(note, "language-asked", proposed,
                "no language is chosen: start-up proposes this one, or exits if it "
                "cannot ask the user",
                "choose one: " + command("use", proposed));
        }
    }

    void checkOrigins(const Installation& installation)
    {
        const std::vector<Origin> origins = installation.origins();
        for (const Origin& used : origins) {
            if (used.problem == "unreadable") {
                add(error, "tree-damaged", used.name, used.source + " cannot be read",
                    "put a backup of the registry in its place" + registryPlace());
            }
            for (const Origin& other : origins) {
                if (used.isUsed && used.name == other.name && !other.value.empty() &&
                    other.source != "the default" && used.source != "the command line" &&
                    !equalIgnoringCase(used.value, other.value)) {
                    add(note, "sources-disagree", used.name,
                        used.source + " has " + utf8(used.value) + ", " + other.source + " has " +
                            utf8(other.value),
                        "the first value is used; see " + command("show --origin"));
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
                add(error, "user-folder", folder, "the user's application data folder does not exist",
                    "create it: mkdir " + shellWord(folder));
            }
        }
        const Text product = installation.path(TarvoConfig::eProductRoot);
        guard(&m_losses, [&] { readTree(product, true, &m_losses); });
        passes("tree-unwritable", utf8(product), [&] { requireWritable(product); });
        if (installation.hasLanguage() && m_losses.empty()) {
            checkProfile(installation);
        }
    }

    /// The key of the default profile may be missing: storing a setting creates the key.
    void checkProfile(const Installation& installation)
    {
        const Text root = installation.path(TarvoConfig::eProfilesRoot);
        const uinfo::Choice choice = installation.profile();
        const Text name = rkuinfo::text(choice.value());
        if (!keyExists(root)) {
            add(error, "no-tree", utf8(root), "this key does not exist",
                m_session.has("--program") ? "start the application once, which creates the user's tree"
                                           : "create the user's tree: " + command("provision"));
        } else if (choice.decision().source == uinfo::Source::builtIn) {
            add(error, "no-profile", utf8(root), "there is no current profile",
                "choose one: " + command("use"));
        } else if (!equalIgnoringCase(name, rkuinfo::text(uinfo::defaultProfile)) &&
                   !keyExists(joinedKey(root, name))) {
            add(error, "profile-missing", utf8(name), "the current profile has no key",
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
    Table table;
    Json list = Json::array();
    for (const auto& [code, isError, subjects, problem, remedy] : findings) {
        std::string all;
        for (const std::string& subject : subjects) {
            all += (all.empty() ? "" : ", ") + subject;
        }
        const Cell severity = {isError ? "error" : "note", isError ? Style::bad : Style::quiet};
        if (session.layout().columns) {
            all = problem.starts_with(all) ? problem : all.append(": ").append(problem);
            table.push_back({severity, {shown(all)}});
            table.push_back({{"remedy", Style::good}, {shown(remedy)}});
        } else {
            table.push_back({severity, {code}, {shown(all)}, {shown(problem)}, {shown(remedy)}});
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
                            "Exit code: 1 if there is an error, 0 if there are only notes.", doctor);

} // namespace
