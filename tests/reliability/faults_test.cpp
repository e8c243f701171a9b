// Every call that the library makes of the system fails, one at a time, in each error that it can answer.
// What then is answered is right or tells of the fault, and so does the registry.
#include "store/store.h"

#include <io.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <deque>
#include <iostream>
#include <new>
#include <set>

namespace {

using namespace testing_support;

// ---- Faults

constexpr DWORD noMemory = ERROR_OUTOFMEMORY; // of an allocation, which may be thrown on

struct Function
{
    const char* name;
    std::vector<DWORD> errors;
    int injected = 0;
};

/// The fault of the present run: which call of all fails, and by which of its function's errors.
struct Fault
{
    int call = 0;
    std::size_t error = 0;
    int callsMade = 0;
    Function* hit = nullptr;
} fault;

std::deque<Function> functions;
std::vector<Patch> patches;

std::optional<DWORD> failsNow(Function& function)
{
    if (++fault.callsMade != fault.call) {
        return std::nullopt;
    }
    ++function.injected;
    fault.hit = &function;
    const DWORD error = function.errors[fault.error];
    SetLastError(error);
    return error;
}

/// Lets fail(error, real, arguments...) answer in a function's place.
template <Name name, typename Signature, typename Fail>
void breakable(const std::vector<DWORD>& errors, Fail fail)
{
    Function& function = functions.emplace_back(Function{name.text, errors});
    patches.push_back(intercept<name, Signature>([&function, fail](auto real, auto... arguments) {
        const std::optional<DWORD> error = failsNow(function);
        return error ? static_cast<decltype(real(arguments...))>(fail(*error, real, arguments...))
                     : real(arguments...);
    }));
}

/// The library finds RegDeleteTreeW by its name.
LSTATUS WINAPI deleteTree(HKEY key, LPCWSTR path)
{
    static Function& function = functions.emplace_back(Function{"RegDeleteTreeW", {5, 8, 1016, 1018}});
    const std::optional<DWORD> error = failsNow(function);
    return error ? static_cast<LSTATUS>(*error) : RegDeleteTreeW(key, path);
}

// The calls that are made at load and unload alone are not among them.
void breakAll()
{
    const std::vector<DWORD> registry = {
        ERROR_FILE_NOT_FOUND,     ERROR_ACCESS_DENIED, ERROR_NOT_ENOUGH_MEMORY,   ERROR_REGISTRY_CORRUPT,
        ERROR_REGISTRY_IO_FAILED, ERROR_KEY_DELETED,   ERROR_NO_SYSTEM_RESOURCES, ERROR_DISK_FULL};
    std::vector<DWORD> walk = registry;
    walk.insert(walk.end(), {ERROR_MORE_DATA, ERROR_NO_MORE_ITEMS, ERROR_INSUFFICIENT_BUFFER});
    const std::vector<DWORD> file = {ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_NOT_ENOUGH_MEMORY};
    const auto answer = [](DWORD error, auto...) { return error; };
    const auto zero = [](auto...) { return 0; };
    const auto null = [](auto...) { return nullptr; };
    const auto closesAll = [](DWORD error, auto real, auto handle) {
        real(handle);
        return std::is_same_v<decltype(real(handle)), BOOL> ? DWORD{FALSE} : error;
    };
    breakable<"RegOpenKeyExW", decltype(RegOpenKeyExW)>(registry, answer);
    breakable<"RegCreateKeyExW", decltype(RegCreateKeyExW)>(registry, answer);
    breakable<"RegSetValueExW", decltype(RegSetValueExW)>(registry, answer);
    breakable<"RegDeleteKeyW", decltype(RegDeleteKeyW)>(registry, answer);
    breakable<"RegDeleteValueW", decltype(RegDeleteValueW)>(registry, answer);
    breakable<"RegQueryInfoKeyW", decltype(RegQueryInfoKeyW)>(walk, answer);
    breakable<"RegEnumKeyExW", decltype(RegEnumKeyExW)>(walk, answer);
    breakable<"RegEnumValueW", decltype(RegEnumValueW)>(walk, answer);
    breakable<"RegQueryValueExW", decltype(RegQueryValueExW)>(walk, [](DWORD error, auto real, HKEY key,
                                                                       LPCWSTR name, auto* reserved,
                                                                       auto* type, BYTE* data, DWORD* size) {
        const DWORD room = data != nullptr ? *size : 0;
        real(key, name, reserved, type, data, size); // type and size may be told all the same
        std::fill_n(data, room, BYTE{'?'});          // and anything be in the buffer
        return error;
    });
    breakable<"RegCloseKey", decltype(RegCloseKey)>({ERROR_INVALID_HANDLE}, closesAll);
    breakable<"FindFirstFileW", decltype(FindFirstFileW)>(file, [](auto...) { return INVALID_HANDLE_VALUE; });
    breakable<"FindClose", decltype(FindClose)>({ERROR_INVALID_HANDLE}, closesAll);
    breakable<"_waccess", decltype(_waccess)>(file, [](auto...) { return -1; });
    breakable<"GetModuleFileNameW", decltype(GetModuleFileNameW)>(file, zero);
    breakable<"GetModuleHandleW", decltype(GetModuleHandleW)>({ERROR_MOD_NOT_FOUND}, null);
    breakable<"GetProcAddress", decltype(GetProcAddress)>({ERROR_PROC_NOT_FOUND}, null);
    breakable<"LoadLibraryW", decltype(LoadLibraryW)>(file, null);
    breakable<"LoadLibraryExW", decltype(LoadLibraryExW)>(file, null);
    breakable<"LoadStringW", decltype(LoadStringW)>({ERROR_RESOURCE_NAME_NOT_FOUND}, zero);
    breakable<"PathAppendW", decltype(PathAppendW)>({ERROR_FILENAME_EXCED_RANGE}, zero);
    breakable<"PathRemoveFileSpecW", decltype(PathRemoveFileSpecW)>({ERROR_INVALID_PARAMETER}, zero);
    breakable<"SHGetSpecialFolderPathW", decltype(SHGetSpecialFolderPathW)>(file, zero);
    breakable<"CompareStringOrdinal", decltype(CompareStringOrdinal)>({ERROR_INVALID_PARAMETER}, zero);
    breakable<"GetPrivateProfileStringW", decltype(GetPrivateProfileStringW)>(
        file, [](DWORD, auto, auto, auto, auto, LPWSTR out, auto...) { return *out = 0; });
    breakable<"GetPrivateProfileIntW", decltype(GetPrivateProfileIntW)>(
        file, [](DWORD, auto, auto, auto, INT fallback, auto) { return fallback; });
    breakable<"MessageBoxW", decltype(MessageBoxW)>({0, IDNO}, answer);
    using Allocate = void*(std::size_t);
    breakable<"malloc", Allocate>({noMemory}, null);
    if (!hasOwnHeapOperators) {
        constexpr bool isLong = std::is_same_v<std::size_t, unsigned long>; // as names are mangled
        breakable<isLong ? Name("_Znam") : Name("_Znay"), Allocate>(
            {noMemory}, [](auto...) -> void* { throw std::bad_alloc(); });
    }
}

// ---- Scenarios

/// What a scenario makes of the registry.
enum Writing
{
    eAtOnce,     ///< all or, where it fails, nothing
    eInSteps,    ///< all or, where it fails, some
    eAsAllowable ///< what can be written, and fails for some of it only
};

struct Scenario
{
    std::string name;
    std::function<std::string()> run;
    std::string allowed; ///< outcomes with a fault, such as "5|7"; "*": any
    Writing writing = eAtOnce;
    bool isStarted = true; ///< with a started configuration
    bool isInTree = true;  ///< with a tree, or with nothing
};

const std::string company = "Software\\Acme";
const std::string profilesKey = languageRoot + "\\Profiles";

void makeTree()
{
    const std::tuple<std::string, const char*, RawValue> values[] = {
        {company, "CurProduct", text("Widget")},
        {company + "\\Widget\\2018", "CurVer", text("en-US")},
        {profilesKey, "", text("Work")},
        {profilesKey + "\\Work\\CommonSettings", "CustomResFile", text("custom.res")},
        {settings + "\\UserConfig\\Config", "UIStyle", text("dark.tus")},
        {settings + "\\Inner", "n", dword(1)},
        {settings + "\\Inner", "long", {REG_QWORD, "12345678"}},
        {settings + "\\Inner", "bytes", {REG_BINARY, "bytes"}},
        {settings + "\\Inner", "text", text("a text")},
        {settings + "\\Inner\\n\\Deep", "n", dword(1)}};
    for (const auto& [path, name, value] : values) {
        setRaw(HKEY_CURRENT_USER, path, name, value);
    }
}

std::vector<Scenario> startUps()
{
    const auto start = [](const wchar_t* given, const wchar_t* product, const wchar_t* language) {
        return [=] { return std::to_string(InitVelaConfig(given, product, language, L"Work")); };
    };
    const auto provision = [] { return std::to_string(CreateConfigReg()); };
    return {
        {"start-up by arguments", start(L"Acme", L"Widget", L"en-US"), "5|7|ended", eAtOnce, false},
        {"start-up from the registry", start(L"Acme", nullptr, nullptr), "5|7|ended", eAtOnce, false},
        {"start-up from the INI file", start(nullptr, nullptr, nullptr), "5|7|ended", eAtOnce, false, false},
        {"start-up with a question", start(L"Norvik", L"TARVO", L"ja-JP"), "5|7|ended", eAtOnce, false,
         false},
        {"provisioning", provision, "5", eAsAllowable, true, false},
        {"provisioning again", provision, "5", eAsAllowable},
    };
}

/// What the calls of a walk of both kinds give.
std::string walk()
{
    std::string codes;
    const auto note = [&codes](int error) { codes += std::to_string(error); };
    TarvoConfig& config = *velaConfig();
    TarvoConfig::ItemIterator items, allItems;
    TarvoConfig::ValueIterator values, allValues;
    note(config.findItem(eSettings, L"Inner", allItems));
    note(config.findItem(eSettings, L"Inner", allValues));
    items = allItems;
    values = allValues;
    for (int i = 0; i < 5; ++i) {
        wchar_t name[1024];
        long length = 1024;
        VelaVariant value;
        note(items.name(name, length));
        note(config.getValue(items, L"n", value));
        note(values.value(value));
        value.setInt(2);
        note(config.setValue(items, L"n", value));
        note(values.setValue(value));
        note(items.step());
        note(values.step());
    }
    EXPECT_EQ(codes.find_first_not_of("012456"), std::string::npos) << codes;
    return codes;
}

std::vector<Scenario> storeOperations()
{
    std::vector<Scenario> all;
    const auto add = [&](OperationIndex index, const wchar_t* path, int version = 7) {
        const Operation& operation = operations[index];
        const auto run = [&operation, path, version] {
            const Patch pretended = pretendVersion(version);
            VelaVariant value;
            value.setString(L"kept");
            const int error = operation.call(*velaConfig(), eSettings, path, value);
            EXPECT_TRUE(error == eOk || utf8(value.getString()) == "kept");
            return std::to_string(error) + (error == eOk ? describe(value) : "");
        };
        const char* const codes[] = {"7", "1|2", "1|5", "5", "1|5", "1|5", "1|5", "1|5", "1|5"};
        const bool inSteps = utf8(path) == "New/n" || (index == eRemoveItem && version < 8);
        all.push_back({operation.name + ' ' + utf8(path), run, codes[index], inSteps ? eInSteps : eAtOnce});
    };
    for (const auto index :
         {eExists, eGet, eSet, eAddItem, eAddValue, eRemoveItem, eRemoveValue, eFindItems, eFindValues}) {
        for (const wchar_t* const path : {L"Inner/n", L"Inner", L"New/n"}) {
            add(index, path);
        }
    }
    for (const wchar_t* const path : {L"Inner/n", L"Inner"}) { // RegDeleteTreeW is looked for, then known
        add(eRemoveItem, path, 10);
    }
    for (const wchar_t* const path : {L"Inner/long", L"Inner/bytes", L"Inner/text"}) {
        add(eGet, path);
    }
    all.push_back({"walk", walk, "*", eInSteps});
    return all;
}

/// What a function says that fills a buffer and gives the length.
auto sized(auto function)
{
    return [function] {
        const std::string text = textOf(function);
        return text.starts_with("failed") ? "failed" : text;
    };
}

std::string loaded(HMODULE module)
{
    return module != nullptr && FreeLibrary(module) ? "loaded" : "failed";
}

std::vector<Scenario> locations(const std::string& executable)
{
    const std::string standard = profilesKey + "\\Default"; // stored where none can be read
    const struct
    {
        std::function<std::string()> run;
        std::string also = {};
    } rows[] = {
        {sized(GetVelaProgramPath)}, // first: later ones find it filled
        {sized(GetVelaProgramName)},
        {sized(GetUserApplicationDataPath)},
        {sized(GetUserApplicationDataSupportPath)},
        {sized(GetUserApplicationDataPlottersPath)},
        {sized(GetUserApplicationDataCrashReportPath)},
        {sized(GetUserApplicationDataPrintstylePath)},
        {sized(GetUserLocalApplicationDataTemplatePath)}, // and by them every level in between
        {sized(GetVelaRegistryCurrentProfileRootKey), standard},
        {sized(GetVelaRegistryCurrentProfileConfigRootKey), standard + "\\Config"},
        {sized(GetCustomResFileName)},
        {sized(GetVelaUIStyleConfigFilePath), "C:\\Folder\\Acme\\Widget\\2018\\en-US\\Support\\Style.tus"},
        {sized(GetVelaUserDataCacheLanPath)},
        {sized([](wchar_t* name) {
            unsigned long size = 1024;
            return GetCurrentProfileName(name, size);
        })},
        {sized([](wchar_t* path) { return GetResourceDllPath(path, 1024); }),
         executable + "\\en-US"}, // no folder
        {sized([](wchar_t* path) { return GetHelpFilePath(path, 1024); })},
        {[] { return loaded(LoadResourceDll(L"RkUInfoRes.dll")); }},
        {[] { return loaded(LoadResourceDllEx(L"RkUInfoRes.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE)); }},
        {[] { return utf8(GetCurrentLanguageLocalName()); }}, // from a library that is not loaded, then is
        {[] { return utf8(GetCurrentLanguageLocalName()); }},
        {[] { return utf8(velaGetProduct()->helpFilePath()); }, "RKHelp.exe"},
        {[] { return utf8(GetVelaArchitectrueCommandNamePrefix()); }},
        {[] { return std::to_string(GetVelaIniOEMMergeTitleValue(-5)); }, "-5"},
        {[] {
            VelaVariant value;
            GetVelaIniConfigValue(L"Product", L"ProductName", value, VelaVariant::eString);
            return utf8(value.getString());
        }},
    };
    std::vector<Scenario> all;
    for (const auto& [run, also] : rows) {
        all.push_back({"location " + std::to_string(all.size()), run, "failed||" + also});
    }
    return all;
}

// ---- Runs

struct Ended
{
};

std::string outcomeOf(const Scenario& scenario)
{
    try {
        return scenario.run();
    } catch (RkErrorStatus* exception) {
        const std::unique_ptr<RkErrorStatus> owned(exception);
        return "thrown " + std::to_string(exception->code());
    } catch (const std::bad_alloc&) {
        return "no memory";
    } catch (const Ended&) {
        return "ended";
    }
}

/// The keys of a tree and, behind their key, its values. A profile that cannot be read counts as the default
/// one, which may then be stored.
std::set<std::string> entries(const std::string& tree)
{
    const std::string standard = '=' + testing::PrintToString(text("Default"));
    std::istringstream in(tree);
    std::set<std::string> all;
    std::string key;
    for (std::string line; std::getline(in, line);) {
        key = line[0] == '[' ? line : key;
        all.insert(key + (line == standard ? '=' + testing::PrintToString(text("Work")) : line));
    }
    return all;
}

/// Whether a tree keeps what is in both others, and has nothing that is in none of them.
bool isBetween(const std::string& tree, const std::string& before, const std::string& after)
{
    const auto now = entries(tree), first = entries(before), last = entries(after);
    const auto isKnown = [&](auto& entry) { return first.contains(entry) || last.contains(entry); };
    const auto isKept = [&](auto& entry) { return now.contains(entry) || !last.contains(entry); };
    return std::ranges::all_of(now, isKnown) && std::ranges::all_of(first, isKept);
}

class Faults : public testing::Test
{
protected:
    Faults()
    {
        m_application.addLanguage("en-US");
        m_application.writeIni("[Product]\nCompanyName=Acme\nProductName=Widget\nLocaleId=1033\n"
                               "[LocaleIdLangName]\n1033=en-US\n[PartnerOEM]\nMergeTitle=1\n");
        m_application.writeIni("[Product]\nMajorVer=2\nProductId=5\n", "product.ini");
        addUninstallEntry(1033);
        EXPECT_EQ(startAcme(L"Work"), eOk);
        m_started = *velaConfig();
    }

    void prepare(const Scenario& scenario)
    {
        *velaConfig() = scenario.isStarted ? m_started : m_unstarted;
        if (scenario.isInTree != m_inTree || m_now != m_before) {
            removeKey(HKEY_CURRENT_USER, company);
            if (scenario.isInTree) {
                makeTree();
            }
            m_inTree = scenario.isInTree;
            m_before = tree(HKEY_CURRENT_USER, "Software");
        }
    }

    /// Runs a scenario with one fault after the other; the last run, to which no fault came, tells what is
    /// right.
    int inject(const Scenario& scenario)
    {
        struct Run
        {
            std::string fault, outcome, tree;
            DWORD error = 0;
        };
        std::vector<Run> runs;
        for (fault = {1}; runs.empty() || fault.hit != nullptr;) {
            fault.callsMade = fault.call; // past it
            prepare(scenario);
            fault.callsMade = 0;
            fault.hit = nullptr;
            Run& run = runs.emplace_back(Run{"no fault", outcomeOf(scenario), ""});
            run.tree = m_now = tree(HKEY_CURRENT_USER, "Software");
            if (const Function* const hit = fault.hit) {
                run.error = hit->errors[fault.error];
                run.fault =
                    hit->name + (' ' + std::to_string(run.error)) + " in call " + std::to_string(fault.call);
                fault.error = (fault.error + 1) % hit->errors.size();
                fault.call += fault.error == 0 ? 1 : 0;
            }
            EXPECT_TRUE(m_keys.stillOpen() == 0 && m_searches == 0) << scenario.name << ", " << run.fault;
        }
        const Run& right = runs.back();
        EXPECT_NE(right.outcome, "") << scenario.name;
        for (const Run& run : runs) {
            SCOPED_TRACE(scenario.name + ", " + run.fault + ": " + run.outcome);
            const bool isRight = run.outcome == right.outcome;
            const bool isThrown = run.outcome == "thrown 6" || run.outcome == "no memory";
            const bool isAllowed =
                ('|' + scenario.allowed + '|').find('|' + run.outcome + '|') != std::string::npos;
            EXPECT_TRUE(isRight || isAllowed || scenario.allowed == "*" ||
                        (isThrown && run.error == noMemory));
            // Who is told that a key is not there has nothing to remove.
            const bool mayBeInPart = !isRight || run.error == ERROR_FILE_NOT_FOUND;
            if (scenario.writing == eAsAllowable || (scenario.writing == eInSteps && mayBeInPart)) {
                EXPECT_TRUE(isBetween(run.tree, m_before, right.tree)) << run.tree;
            } else {
                EXPECT_EQ(entries(run.tree), entries(isRight ? right.tree : m_before));
            }
        }
        return static_cast<int>(runs.size()) - 1;
    }

    Application m_application;
    Patch m_executable = pretendExecutable(windowsPath(m_application.program()));
    int m_searches = 0;
    KeyCounter m_keys;
    const TarvoConfig m_unstarted{*velaConfig()};
    TarvoConfig m_started{m_unstarted};
    bool m_inTree = false;
    std::string m_before; // the tree before each run
    std::string m_now;    // and after the last
};

TEST_F(Faults, LeaveEverythingWhole)
{
    // Below the faults: what must not happen really, and what is to be balanced.
    const Patch below[] = {
        intercept<"ExitProcess", void(UINT)>([](auto, UINT) { throw Ended(); }),
        intercept<"MessageBoxW", decltype(MessageBoxW)>([](auto...) { return IDYES; }),
        intercept<"FindFirstFileW", decltype(FindFirstFileW)>([&](auto real, auto... rest) {
            auto* const search = real(rest...);
            m_searches += search != INVALID_HANDLE_VALUE ? 1 : 0;
            return search;
        }),
        intercept<"FindClose", decltype(FindClose)>([&](auto real, HANDLE search) {
            --m_searches;
            return real(search);
        }),
        intercept<"SHGetSpecialFolderPathW", decltype(SHGetSpecialFolderPathW)>(
            [](auto, HWND, LPWSTR path, auto...) {
                std::copy_n(L"C:\\Folder", 10, path);
                return TRUE;
            }),
        intercept<"GetProcAddress", decltype(GetProcAddress)>(
            [](auto...) { return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(deleteTree)); })};
    breakAll();
    int injected = 0;
    for (const auto& scenarios :
         {locations(windowsPath(m_application.program())), startUps(), storeOperations()}) {
        for (const Scenario& scenario : scenarios) {
            injected += inject(scenario);
        }
    }
    patches.clear();
    std::cout << injected << " faults injected\n";
    for (const Function& function : functions) {
        EXPECT_GT(function.injected, 0) << function.name << " was never called";
    }
}

} // namespace
