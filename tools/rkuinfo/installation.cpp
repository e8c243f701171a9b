#include "installation.h"

#include "user_registry.h"

#include <windows.h>

#include <memory>

namespace {

using rkuinfo::Argument;

constexpr std::size_t longestName = 254;

/// A configuration of our own, for the steps of start-up that look without writing.
class Probe : public TarvoConfig
{
public:
    explicit Probe(const wchar_t* company) { initCompanyName(company); }

    using TarvoConfig::isInitTARVOProduct;

    Text iniText(const wchar_t* section, const Argument& key, unsigned long capacity)
    {
        wchar_t out[256] = {};
        return readIniString(section, key, out, capacity, L"TARVO.ini") == eOk ? rkuinfo::text(out) : Text();
    }
};

struct FreeModule
{
    void operator()(HINSTANCE module) const { FreeLibrary(module); }
};

void readResources(LanguageState& state)
{
    const Text file = state.folder + utf16("\\RkUInfoRes.dll");
    const std::unique_ptr<HINSTANCE__, FreeModule> module(
        LoadLibraryExW(Argument(file), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    if (!module) {
        return;
    }
    state.hasResources = true;
    wchar_t name[64] = {};
    const uinfo::Language& record = uinfo::languages[state.language.language()];
    if (LoadStringW(module.get(), record.localNameId, name, 63) > 0) {
        state.localName = rkuinfo::text(name);
    }
}

LanguageState examineLanguage(const uinfo::Language& record, bool needsEntries)
{
    LanguageState state = {TarvoLanguage(record.shortName), {}};
    wchar_t folder[1024] = {};
    if (GetResourceDllPath(record.shortName, folder, 1024) > 0) {
        state.folder = rkuinfo::text(folder);
    }
    state.installed = uinfo::installed(record, needsEntries);
    if (state.hasFolder()) {
        readResources(state);
    }
    state.hasEntry = uinfo::hasUninstallEntry(record);
    return state;
}

void findWanted(const Session& session, Installation& found)
{
    const Argument language(utf16(session.language));
    const Argument versionRoot(utf16(found.versionRoot));
    const uinfo::LanguageChoice choice(language, versionRoot, found.needsEntries);
    found.wanted = rkuinfo::text(choice.name());
    found.canBeTaken = choice.canBeTaken();
    switch (choice.source()) {
    case uinfo::LanguageChoice::Source::none:
        break;
    case uinfo::LanguageChoice::Source::argument:
        found.source = "the command line";
        break;
    case uinfo::LanguageChoice::Source::registry:
        found.source = "the registry (CurVer)";
        break;
    case uinfo::LanguageChoice::Source::iniFile:
        found.source = "TARVO.ini";
        break;
    }
}

Text productName(const Session& session, Probe& probe, const Text& company)
{
    if (!session.product.empty()) {
        return utf16(session.product);
    }
    Text name = readUserText("Software\\" + utf8(company), L"CurProduct", 510);
    if (name.empty()) {
        name = probe.iniText(L"Product", L"ProductName", 255);
    }
    return name.empty() ? utf16("TARVO") : name;
}

/// Null stands for a name that is not given.
const wchar_t* orNull(const Argument& text)
{
    const wchar_t* const name = text;
    return name == nullptr || *name == 0 ? nullptr : name;
}

} // namespace

std::string LanguageState::whyNot() const
{
    switch (installed) {
    case uinfo::Installed::yes:
        break;
    case uinfo::Installed::noFolder:
        return "no folder";
    case uinfo::Installed::emptyFolder:
        return "empty folder";
    case uinfo::Installed::noEntry:
        return "no uninstall entry";
    }
    return "";
}

Installation examine(const Session& session)
{
    const Argument company(utf16(session.company));
    if (utf16(session.company).size() > longestName || utf16(session.product).size() > longestName) {
        throw Failure("--company and --product take at most 254 characters", exitUsage);
    }
    Probe probe(orNull(company));
    Installation found;
    found.company = rkuinfo::text(probe.companyName());
    found.product = productName(session, probe, found.company);
    found.versionRoot = "Software\\" + utf8(found.company) + '\\' + utf8(found.product) + "\\2018";
    // The probe's own product is the default one.
    found.needsEntries =
        probe.isInitTARVOProduct() && equalIgnoringCase(found.product, rkuinfo::text(probe.productName()));
    for (const uinfo::Language& language : uinfo::languages) {
        found.languages.push_back(examineLanguage(language, found.needsEntries));
    }
    found.preferred = uinfo::preferredLanguage(found.needsEntries);
    findWanted(session, found);
    return found;
}

std::string whyNotWanted(const Installation& installation)
{
    const TarvoLanguage language{Argument(installation.wanted)};
    if (installation.wanted.empty() || installation.canBeTaken) {
        return {};
    }
    if (language.language() < 0) {
        return '\'' + shown(installation.wanted) + "', which " + installation.source +
               " names, is none of the fifteen languages";
    }
    const LanguageState& state = installation.languages[static_cast<std::size_t>(language.language())];
    return utf8(rkuinfo::text(language.shortName())) + ", which " + installation.source +
           " names, is not installed: " + state.whyNot();
}

void startUp(const Session& session)
{
    const Installation installation = examine(session);
    if (installation.preferred < 0) {
        throw Failure("no language is installed in " + shown(rkuinfo::text(GetVelaProgramPath)));
    }
    if (const std::string why = whyNotWanted(installation); !why.empty()) {
        throw Failure(why + "; name an installed language with --language");
    }
    const Argument company(utf16(session.company));
    const Argument product(utf16(session.product));
    const Argument profile(utf16(session.profile));
    const Argument wanted(installation.wanted);
    const wchar_t* const language = installation.wanted.empty()
                                        ? TarvoLanguage(installation.preferred).shortName()
                                        : static_cast<const wchar_t*>(wanted);
    require(InitVelaConfig(orNull(company), orNull(product), language, orNull(profile)), "start-up");
}
