#include "installation.h"

#include "user_registry.h"

#include <windows.h>

#include <io.h>

#include <memory>

namespace {

using rkuinfo::Argument;

constexpr int readAccess = 4;
constexpr int firstLocalName = 1001; // string id of the language with index 0
constexpr long languageCount = 15;
constexpr std::size_t longestName = 254;

/// A configuration of our own, for the steps of start-up that look without writing.
class Probe : public TarvoConfig
{
public:
    explicit Probe(const wchar_t* company) { initCompanyName(company); }

    using TarvoConfig::isInitTARVOProduct;
    using TarvoConfig::isLangFolderExist;
    using TarvoConfig::isLangGuidExist;
    using TarvoConfig::queryAInstalledLangInOrder;

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

bool canRead(const Text& path)
{
    return _waccess(Argument(path), readAccess) == 0;
}

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
    const auto id = static_cast<UINT>(firstLocalName + state.language.language());
    if (LoadStringW(module.get(), id, name, 63) > 0) {
        state.localName = rkuinfo::text(name);
    }
}

LanguageState examineLanguage(Probe& probe, const TarvoLanguage& language, bool needsEntries)
{
    LanguageState state = {language, {}};
    wchar_t folder[1024] = {};
    if (GetResourceDllPath(language.shortName(), folder, 1024) > 0) {
        state.folder = rkuinfo::text(folder);
    }
    if (!state.folder.empty() && canRead(state.folder)) {
        state.folderState =
            probe.isLangFolderExist(language.shortName()) ? FolderState::filled : FolderState::empty;
        readResources(state);
    }
    const std::string guid =
        "{5C3D71E0-B00F-" + std::to_string(language.velaLanguage()) + "-C10E-9E40B6D2F815}";
    state.hasEntry = probe.isLangGuidExist(Argument(utf16(guid)));
    state.installed = state.folderState == FolderState::filled && (state.hasEntry || !needsEntries);
    return state;
}

/// From the first of the places that names one: a refused name does not lead to the next.
void findWanted(const Session& session, Probe& probe, Installation& found)
{
    constexpr std::size_t shortNameBytes = 14;
    constexpr unsigned long shortNameCapacity = 7;
    if (!session.language.empty()) {
        found.wanted = utf16(session.language);
        found.source = "the command line";
    } else if (Text text = readUserText(found.versionRoot, L"CurVer", shortNameBytes); !text.empty()) {
        found.wanted = std::move(text);
        found.source = "the registry (CurVer)";
    } else {
        const Text localeId = probe.iniText(L"Product", L"LocaleId", shortNameCapacity);
        found.wanted = probe.iniText(L"LocaleIdLangName", localeId, shortNameCapacity);
        found.source = "TARVO.ini";
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
    switch (folderState) {
    case FolderState::missing:
        return "no folder";
    case FolderState::empty:
        return "empty folder";
    case FolderState::filled:
        break;
    }
    return installed ? "" : "no uninstall entry";
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
    for (long index = 0; index < languageCount; ++index) {
        found.languages.push_back(examineLanguage(probe, TarvoLanguage(index), found.needsEntries));
    }
    Probe rebranded(L"-");
    found.preferred = (found.needsEntries ? probe : rebranded).queryAInstalledLangInOrder();
    findWanted(session, probe, found);
    return found;
}

std::string whyNotWanted(const Installation& installation)
{
    const TarvoLanguage language{Argument(installation.wanted)};
    if (installation.wanted.empty()) {
        return {};
    }
    if (language.language() < 0) {
        return '\'' + shown(installation.wanted) + "', which " + installation.source +
               " names, is none of the fifteen languages";
    }
    const LanguageState& state = installation.languages[static_cast<std::size_t>(language.language())];
    if (state.installed) {
        return {};
    }
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
