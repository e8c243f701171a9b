// rkuinfo doctor.
#include "commands/command.h"

#include "model/system.h"
#include "program/names.h"
#include "transfer/file.h"
#include "transfer/json_file.h"

#include <algorithm>

namespace {

bool doctorJson = false;

struct Finding
{
    std::string code;
    bool isError;
    std::vector<std::string> subjects; ///< what it is about; alike findings are one
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
            add("registry", true, "registry", trouble->problem, trouble->remedy);
            return m_findings; // nothing else can be told
        }
        const Installation installation(m_session);
        checkIni(installation);
        checkLanguages(installation);
        checkShellFolder("roaming", GetUserApplicationDataPath);
        checkShellFolder("local", GetUserLocalApplicationDataPath);
        if (installation.preferred >= 0 && installation.whyNotWanted().empty()) {
            checkTree(installation);
        }
        return m_findings;
    }

private:
    void add(std::string code, bool isError, const std::string& subject, std::string problem,
             std::string remedy)
    {
        const auto alike = std::ranges::find_if(m_findings, [&](const Finding& finding) {
            return finding.code == code && finding.problem == problem && finding.remedy == remedy;
        });
        if (alike != m_findings.end()) {
            alike->subjects.push_back(subject);
        } else {
            m_findings.push_back(
                {std::move(code), isError, {subject}, std::move(problem), std::move(remedy)});
        }
    }

    /// A command line that acts on the same installation, with another language where one is named.
    std::string command(const std::string& words, const std::string& language = {}) const
    {
        Session session = m_session;
        session.language = language.empty() ? session.language : language;
        return "rkuinfo" + session.repeated() + ' ' + words;
    }

    // ---- INI files

    /// Nothing when it is a folder, or may not be read.
    static std::optional<std::string> contents(const Text& path)
    {
        try {
            return isBarred(path) ? std::nullopt : std::optional(readFile(nativePath(path)));
        } catch (const Failure&) {
            return std::nullopt;
        }
    }

    /// Whether the file can be read and has a section.
    bool checkIniFile(const Text& path)
    {
        const std::string subject = shown(path);
        const std::optional<std::string> bytes = contents(path);
        if (!bytes) {
            add("ini-unreadable", true, subject, "the file cannot be read",
                "make it a file that its users have the right to read");
            return false;
        }
        const bool isWide = bytes->starts_with("\xff\xfe") || bytes->starts_with("\xfe\xff");
        const bool isText = isWide || bytes->find('\0') == std::string::npos;
        if (!isText || bytes->find('[') == std::string::npos) {
            add("ini-garbled", true, subject, "the file is no INI file: it has no section",
                "write it again, in plain text, with a section [" + utf8(uinfo::productSection) + ']');
            return false;
        }
        return true;
    }

    void checkIni(const Installation& installation)
    {
        const Text tarvo = installation.iniFile(uinfo::tarvoIni);
        if (!exists(tarvo)) {
            add("ini-missing", false, shown(tarvo),
                "there is no such file: names come from the registry and defaults",
                "write one when the application has names of its own");
        } else if (checkIniFile(tarvo)) {
            checkLanguageIni(installation);
        }
        const Text product = installation.iniFile(uinfo::productIni);
        if (exists(product) && checkIniFile(product) && installation.commandPrefix().empty()) {
            add("command-prefix", true, shown(product), "the file gives commands no prefix",
                "write numbers for " + utf8(uinfo::majorVersionKey) + " and " + utf8(uinfo::productIdKey) +
                    " into its section [" + utf8(uinfo::productSection) + ']');
        }
    }

    void checkLanguageIni(const Installation& installation)
    {
        constexpr unsigned long capacity = 256;
        const std::string file = utf8(uinfo::tarvoIni) + ": ";
        const std::string names = '[' + utf8(uinfo::localeNamesSection) + ']';
        const auto mapped = [&](const Text& id) {
            return installation.iniText(uinfo::tarvoIni, uinfo::localeNamesSection, rkuinfo::Argument(id),
                                        capacity);
        };
        const Text wantedId =
            installation.iniText(uinfo::tarvoIni, uinfo::productSection, uinfo::localeIdKey, capacity);
        if (!wantedId.empty() && mapped(wantedId).empty()) {
            add("locale-unmapped", true,
                file + '[' + utf8(uinfo::productSection) + "] " + utf8(uinfo::localeIdKey) + '=' +
                    shown(wantedId),
                "the number is not mapped to a language",
                "add " + shown(wantedId) + "=xx-XX to its section " + names);
        }
        std::vector<Text> ids = {wantedId};
        for (const LanguageState& state : installation.languages) {
            const Text id = utf16(std::to_string(state.record.lcid));
            if (id != wantedId) {
                ids.push_back(id);
            }
        }
        for (const Text& id : ids) {
            const Text name = mapped(id);
            if (!name.empty() && !TarvoLanguage::isValidShortName(rkuinfo::Argument(name))) {
                add("locale-mapping", true, file + names + ' ' + shown(id) + '=' + shown(name),
                    "the name is no language's",
                    "write the short name of one of the fifteen languages there");
            }
        }
    }

    // ---- Languages

    /// A folder without an uninstall entry is no fault: packages bring all languages, installers choose.
    void checkLanguages(const Installation& installation)
    {
        for (const LanguageState& state : installation.languages) {
            if (state.installed == uinfo::Installed::emptyFolder) {
                add("language-empty", true, state.name(), "the language's folder holds no library",
                    "install it again, or remove the folder");
            } else if (state.installed != uinfo::Installed::noFolder && !state.hasResources) {
                add("language-library", true, state.name(),
                    "the language's " + utf8(uinfo::languageLibrary) + " cannot be loaded",
                    "install it again");
            } else if (state.installed == uinfo::Installed::noFolder && state.hasEntry &&
                       installation.needsEntries) {
                add("language-folder", true, state.name(),
                    "the language has an uninstall entry and no folder",
                    "install it again, or remove the entry");
            }
        }
        const std::string why = installation.whyNotWanted();
        if (installation.preferred < 0) {
            const bool isEntryAll =
                std::ranges::any_of(installation.languages, [](const LanguageState& state) {
                    return state.installed == uinfo::Installed::noEntry;
                });
            add("no-language", true, shown(installation.folder),
                isEntryAll ? "no language is installed: none with a folder has an uninstall entry"
                           : "no language is installed: none has a folder with a library",
                "run a language's installer: no application can start");
        } else if (!why.empty()) {
            const std::string instead =
                installation.languages[static_cast<std::size_t>(installation.preferred)].name();
            add("language-not-installed", true, shown(installation.wanted()), why,
                "install it, or choose another: " + command("use", instead));
        }
    }

    // ---- The user's folders and tree

    void checkShellFolder(const char* name, unsigned long (*function)(wchar_t*))
    {
        if (rkuinfo::text(function).empty()) {
            add("user-folder", true, name,
                std::string("the user has no ") + name + " application data folder",
                "create it: ~/.config or ~/.local/share on Linux, else the user's profile is broken");
        }
    }

    /// The default profile's key comes with its first setting.
    void checkTree(const Installation& installation)
    {
        const Text root = installation.path(TarvoConfig::eProfilesRoot);
        if (!Key::find(root)) {
            add("no-tree", true, shown(root), "the user has no such key",
                m_session.program.empty() ? "create the user's tree: " + command("provision")
                                          : "start the application once, which creates the user's tree");
            return;
        }
        const Text profile = installation.profile();
        const uinfo::Finding decision = installation.profileChoice().decision();
        if (decision.source == uinfo::Source::builtIn) {
            add("no-profile", true, shown(root), "no profile is the current one",
                "choose one: " + command("use"));
        } else if (!equalIgnoringCase(profile, rkuinfo::text(uinfo::defaultProfile)) &&
                   !Key::find(joinedKey(root, profile))) {
            add("profile-missing", true, shown(profile), "the current profile has no key",
                "create it: " + command("profiles create \"" + shown(profile) + '"') +
                    ", or select another with profiles select");
        }
    }

    const Session& m_session;
    std::vector<Finding> m_findings;
};

std::string joined(const std::vector<std::string>& words)
{
    std::string out;
    for (const std::string& word : words) {
        out += (out.empty() ? "" : ", ") + word;
    }
    return out;
}

void printFindings(const std::vector<Finding>& findings, const Layout& layout)
{
    Table table;
    for (const Finding& finding : findings) {
        const Cell severity = {finding.isError ? "error" : "note",
                               finding.isError ? Style::bad : Style::quiet};
        if (layout.columns) {
            const std::string subjects = joined(finding.subjects);
            table.addRow({severity,
                          {finding.problem.starts_with(subjects) ? finding.problem
                                                                 : subjects + ": " + finding.problem}});
            table.addRow({{"remedy", Style::good}, {finding.remedy}});
        } else {
            table.addRow(
                {severity, {finding.code}, {joined(finding.subjects)}, {finding.problem}, {finding.remedy}});
        }
    }
    table.print(layout);
}

void doctor(Session& session)
{
    const std::vector<Finding> findings = Doctor(session).examine();
    if (doctorJson) {
        Json list = Json::array();
        for (const Finding& finding : findings) {
            list.push_back({{"code", finding.code},
                            {"severity", finding.isError ? "error" : "note"},
                            {"subjects", finding.subjects},
                            {"problem", finding.problem},
                            {"remedy", finding.remedy}});
        }
        printJson({{"findings", list}});
    } else if (findings.empty()) {
        print("nothing is wrong");
    } else {
        printFindings(findings, session.layout());
    }
    session.exitCode = std::ranges::any_of(findings, &Finding::isError) ? exitFailed : 0;
}

} // namespace

Command doctorCommand()
{
    return {
        "doctor",
        "Tell what is wrong with the installation, and how to mend it",
        {jsonFlag(doctorJson)},
        "Looks at the registry, the INI files, the languages, the user's folders and tree. Exit code 1 when "
        "there is an error; a note alone is none.",
        doctor};
}
