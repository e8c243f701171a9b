// Makes the library's system calls fail, one at a time, each with every error that the call can return. The
// library must then return a correct result or report the failure, and the registry must match the result.
#include "store/store.h"

#include <io.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <map>
#include <new>
#include <set>

namespace {

// ---- Faults

constexpr DWORD noMemory = ERROR_OUTOFMEMORY; // for a failed allocation, which may make the library throw

/// The fault of the current run. The list of faults contains all errors of the first call, then all errors of
/// the second call, and so on. `function` is null if no call fails.
struct Fault
{
    std::size_t place = SIZE_MAX; ///< the fault's index in the list
    std::size_t passed = 0;       ///< the index at which the errors of the next call begin
    const char* function = nullptr;
    DWORD error = 0;
} fault;

std::map<std::string, int> injected; ///< the number of times that a function has failed
std::vector<Patch> patches;

/// Patches a function: fail(error, real, arguments...) replaces the call that the current fault selects.
template <Name name, typename Signature, typename Fail>
void breakable(const std::vector<DWORD>& errors, Fail fail, const char* module = libraryModule)
{
    injected[name.text] = 0;
    const auto failOnce = [errors, fail](auto real, auto... arguments) {
        const std::size_t index = fault.place - fault.passed;
        fault.passed += errors.size();
        if (index >= errors.size()) {
            return real(arguments...);
        }
        fault.function = name.text;
        fault.error = errors[index];
        ++injected[name.text];
        SetLastError(fault.error);
        return static_cast<decltype(real(arguments...))>(fail(fault.error, real, arguments...));
    };
    patches.push_back(intercept<name, Signature>(failOnce, module));
}

/// Patches every function that the library calls between being loaded and being unloaded.
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
    const auto closeAndAnswer = [](DWORD error, auto real, auto handle) { return real(handle), error; };
    breakable<"RegOpenKeyExW", decltype(RegOpenKeyExW)>(registry, answer);
    breakable<"RegCreateKeyExW", decltype(RegCreateKeyExW)>(registry, answer);
    breakable<"RegSetValueExW", decltype(RegSetValueExW)>(registry, answer);
    breakable<"RegDeleteKeyW", decltype(RegDeleteKeyW)>(registry, answer);
    breakable<"RegDeleteValueW", decltype(RegDeleteValueW)>(registry, answer);
    breakable<"RegDeleteTreeW", decltype(RegDeleteTreeW)>(registry, answer, programModule);
    breakable<"RegQueryInfoKeyW", decltype(RegQueryInfoKeyW)>(walk, answer);
    breakable<"RegEnumKeyExW", decltype(RegEnumKeyExW)>(walk, answer);
    breakable<"RegEnumValueW", decltype(RegEnumValueW)>(walk, answer);
    breakable<"RegQueryValueExW", decltype(RegQueryValueExW)>(walk, [](DWORD error, auto real, HKEY key,
                                                                       LPCWSTR name, auto* reserved,
                                                                       auto* type, BYTE* data, DWORD* size) {
        const DWORD room = data != nullptr ? *size : 0;
        real(key, name, reserved, type, data, size); // a failed call may set type and size
        std::fill_n(data, room, BYTE{'?'});          // a failed call may overwrite the buffer
        return error;
    });
    breakable<"RegCloseKey", decltype(RegCloseKey)>({ERROR_INVALID_HANDLE}, closeAndAnswer);
    breakable<"FindFirstFileW", decltype(FindFirstFileW)>(file, [](auto...) { return INVALID_HANDLE_VALUE; });
    breakable<"FindClose", decltype(FindClose)>({FALSE}, closeAndAnswer);
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
    if constexpr (!hasOwnHeapOperators) {
        breakable<arrayNew, Allocate>({noMemory}, [](auto...) -> void* { throw std::bad_alloc(); });
    }
}

// ---- Scenarios

/// How a scenario changes the registry.
enum Writing
{
    eAtOnce,     ///< makes no changes if it fails
    eInSteps,    ///< if it fails, some changes may have been made
    eAsAllowable ///< may omit some changes, even if it succeeds
};

struct Scenario
{
    std::string name;
    std::function<std::string()> run;
    std::string allowed; ///< the outcomes that a fault may cause, separated by "|"; "*" allows any
    Writing writing = eAtOnce;
    bool isInTree = true; ///< if true, each run starts with the tree of makeTree()
};

void makeTree()
{
    const std::tuple<std::string, const char*, RawValue> values[] = {
        {acmeKey, "CurProduct", text("Widget")},
        {acmeKey + "\\Widget\\2018", "CurVer", text("en-US")},
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

/// Calls every function of both iterators, and returns the results.
std::string walk()
{
    TarvoConfig& config = *velaConfig();
    TarvoConfig::ItemIterator foundItems;
    TarvoConfig::ValueIterator foundValues;
    VelaVariant two;
    two.setInt(2);
    std::string codes = std::to_string(config.findItem(eSettings, L"Inner", foundItems)) +
                        std::to_string(config.findItem(eSettings, L"Inner", foundValues));
    TarvoConfig::ItemIterator items = foundItems;
    TarvoConfig::ValueIterator values = foundValues;
    for (int i = 0; i < 5; ++i) {
        wchar_t name[1024];
        long length = 1024;
        VelaVariant value;
        for (const int error :
             {items.name(name, length), config.getValue(items, L"n", value), values.value(value),
              config.setValue(items, L"n", two), values.setValue(two), items.step(), values.step()}) {
            codes += std::to_string(error);
        }
    }
    EXPECT_EQ(codes.find_first_not_of("012456"), std::string::npos) << codes;
    return codes;
}

/// Returns what a function writes to a buffer, or "failed".
std::string said(const std::function<unsigned long(wchar_t*)>& function)
{
    const std::string text = textOf(function);
    return text.starts_with("failed") ? "failed" : text;
}

std::string said(HMODULE module)
{
    return FreeLibrary(module) ? "loaded" : "failed";
}

// ---- Runs

std::string outcomeOf(const Scenario& scenario)
{
    try {
        return scenario.run();
    } catch (RkErrorStatus* exception) {
        const std::unique_ptr<RkErrorStatus> owned(exception);
        return owned->code() == 6 ? "no memory" : "thrown";
    } catch (const std::bad_alloc&) {
        return "no memory";
    } catch (UINT exitCode) {
        return "ended by " + std::to_string(exitCode);
    }
}

using Entries = std::set<std::string>;

/// Splits the result of tree() into one entry for each key and each value. Each entry begins with its key.
/// Start-up may store the profile "Default" if it cannot read "Work", so "Default" is replaced with "Work".
Entries entries(const std::string& tree)
{
    const std::string standard = '=' + print(text("Default"));
    std::istringstream in(tree);
    Entries all;
    std::string key;
    for (std::string line; std::getline(in, line);) {
        key = line[0] == '[' ? line : key;
        all.insert(key + (line == standard ? '=' + print(text("Work")) : line));
    }
    return all;
}

/// Returns true if `now` is `before` with any subset of the changes that lead to `after`.
bool isBetween(const Entries& now, const Entries& before, const Entries& after)
{
    const auto isKnown = [&](auto& entry) { return before.contains(entry) || after.contains(entry); };
    const auto isKept = [&](auto& entry) { return now.contains(entry) || !after.contains(entry); };
    return std::ranges::all_of(now, isKnown) && std::ranges::all_of(before, isKept);
}

class Faults : public ApplicationTest
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
        removeKey(HKEY_CURRENT_USER, acmeKey);
        if (scenario.isInTree) {
            makeTree();
        }
    }

    /// Runs a scenario once with each fault, then once without a fault. Compares each run with
    /// the run without a fault.
    void inject(const Scenario& scenario)
    {
        struct Run
        {
            std::string outcome;
            Fault fault;
            Entries entries;
            int stillOpen;
        };
        std::vector<Run> runs;
        fault = {};
        prepare(scenario);
        const std::string prepared = tree(HKEY_CURRENT_USER, "Software");
        const Entries before = entries(prepared);
        for (std::string left = prepared; runs.empty() || fault.function != nullptr;) {
            if (left != prepared) {
                prepare(scenario); // no call fails here, because each fault is injected only once
            }
            *velaConfig() = m_started;
            fault = {runs.size()};
            const std::string outcome = outcomeOf(scenario);
            left = tree(HKEY_CURRENT_USER, "Software");
            const Entries after = left == prepared ? before : entries(left);
            runs.push_back({outcome, fault, after, m_keys.stillOpen() + m_searches});
        }
        const Run& right = runs.back();
        EXPECT_NE(right.outcome, "") << scenario.name;
        for (const Run& run : runs) {
            SCOPED_TRACE(scenario.name + ", " + (run.fault.function != nullptr ? run.fault.function : "no") +
                         " error " + std::to_string(run.fault.error) + ": " + run.outcome);
            const bool isRight = run.outcome == right.outcome;
            const std::string allowed =
                '|' + scenario.allowed + (run.fault.error == noMemory ? "|no memory|" : "|");
            EXPECT_TRUE(isRight || allowed.starts_with("|*|") ||
                        allowed.find('|' + run.outcome + '|') != std::string::npos);
            EXPECT_EQ(run.stillOpen, 0);
            // The library takes ERROR_FILE_NOT_FOUND to mean that nothing is left to remove, so it may
            // report success after a partial removal.
            const bool mayBeInPart = !isRight || run.fault.error == ERROR_FILE_NOT_FOUND;
            if (scenario.writing == eAsAllowable || (scenario.writing == eInSteps && mayBeInPart)) {
                EXPECT_PRED3(isBetween, run.entries, before, right.entries);
            } else {
                EXPECT_EQ(run.entries, isRight ? right.entries : before);
            }
        }
    }

    void injectIntoLocations()
    {
        const std::string executable = windowsPath(m_application.program());
        const std::string profile = profilesKey + "\\Default"; // used if no profile can be read
        const std::string allowed = "failed||-5|RKHelp.exe|" + profile + '|' + profile + "\\Config|" +
                                    executable +
                                    "\\en-US|C:\\Folder\\Acme\\Widget\\2018\\en-US\\Support\\Style.tus";
        int number = 0;
        const auto add = [&](const std::function<std::string()>& run) {
            inject({"location " + std::to_string(++number), run, allowed});
        };
        // GetVelaProgramPath caches its result. GetUserLocalApplicationDataTemplatePath shares its code
        // with the functions for the parent folders, which are not tested separately.
        for (auto* const function :
             {GetVelaProgramPath, GetVelaProgramName, GetVelaRegistryCurrentProfileRootKey,
              GetVelaRegistryCurrentProfileConfigRootKey, GetCustomResFileName, GetVelaUIStyleConfigFilePath,
              GetVelaUserDataCacheLanPath, GetUserApplicationDataPrintstylePath,
              GetUserLocalApplicationDataTemplatePath}) {
            add([function] { return said(function); });
        }
        for (int call = 0; call < 2; ++call) { // only the first scenario loads the language library
            add([] { return utf8(GetCurrentLanguageLocalName()); });
        }
        add([] { return said([](wchar_t* path) { return GetResourceDllPath(path, 1024); }); });
        add([] { return said([](wchar_t* path) { return GetHelpFilePath(path, 1024); }); });
        add([] { return said(LoadResourceDll(L"RkUInfoRes.dll")); });
        add([] { return said(LoadResourceDllEx(L"RkUInfoRes.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE)); });
        add([] { return utf8(velaGetProduct()->helpFilePath()); });
        add([] { return utf8(GetVelaArchitectrueCommandNamePrefix()); });
        add([] { return std::to_string(GetVelaIniOEMMergeTitleValue(-5)); });
    }

    void injectIntoStartUps()
    {
        const auto start = [](auto... names) {
            return [=] {
                *velaConfig() = Config();
                return std::to_string(InitVelaConfig(names..., L"Work"));
            };
        };
        const std::string startErrors = "5|7|ended by 1";
        const auto provision = [] { return std::to_string(CreateConfigReg()); };
        inject({"start-up by arguments", start(L"Acme", L"Widget", L"en-US"), startErrors});
        inject({"start-up from the registry", start(L"Acme", nullptr, nullptr), startErrors});
        inject({"start-up from the INI file", start(nullptr, nullptr, nullptr), startErrors, eAtOnce, false});
        inject(
            {"start-up with a question", start(L"Norvik", L"TARVO", L"ja-JP"), startErrors, eAtOnce, false});
        inject({"provisioning", provision, "5", eAsAllowable, false});
        inject({"provisioning again", provision, "5", eAsAllowable});
    }

    void injectIntoOperations()
    {
        inject({"walk", walk, "*", eInSteps});
        using Paths = std::initializer_list<const wchar_t*>;
        const auto add = [this](int index, Paths paths, const std::string& errors, int version = 7) {
            const Patch pretended = pretendVersion(version);
            for (const wchar_t* const path : paths) {
                const Operation& operation = operations[index];
                const auto run = [&operation, path] {
                    VelaVariant value;
                    value.setString(L"kept");
                    const int error = operation.call(*velaConfig(), eSettings, path, value);
                    EXPECT_TRUE(error == eOk || utf8(value.getString()) == "kept");
                    return std::to_string(error) + (error == eOk ? describe(value) : "");
                };
                const bool inSteps = utf8(path) == "New/n" || (index == eRemoveItem && version < 8);
                inject({operation.name + ' ' + utf8(path), run, errors, inSteps ? eInSteps : eAtOnce});
            }
        };
        int index = 0;
        for (const char* const errors : {"7", "1|2", "1|5", "5", "1|5", "1|5", "1|5", "1|5", "1|5"}) {
            add(index++, {L"Inner/n", L"Inner", L"New/n"}, errors);
        }
        add(eRemoveItem, {L"Inner/n", L"Inner"}, "1|5", 10); // the first call caches RegDeleteTreeW's address
        add(eGet, {L"Inner/long", L"Inner/bytes", L"Inner/text"}, "1|2");
    }

    int m_searches = 0;
    TarvoConfig m_started = Config();
};

TEST_F(Faults, AreReportedAndLeaveNothingHalfDone)
{
    // GetProcAddress returns this function for RegDeleteTreeW. Its call to RegDeleteTreeW can be patched.
    decltype(&RegDeleteTreeW) deleteTree = [](HKEY key, LPCWSTR path) { return RegDeleteTreeW(key, path); };
    // These functions are called if no fault is injected. They count open searches, and replace calls that
    // must not reach the system.
    const Patch below[] = {
        intercept<"ExitProcess", void(UINT)>([](auto, UINT exitCode) { throw exitCode; }),
        intercept<"MessageBoxW", decltype(MessageBoxW)>([](auto...) { return IDYES; }),
        intercept<"FindFirstFileW", decltype(FindFirstFileW)>([&](auto real, auto... rest) {
            auto* const search = real(rest...);
            m_searches += search != INVALID_HANDLE_VALUE ? 1 : 0;
            return search;
        }),
        intercept<"FindClose", decltype(FindClose)>(
            [&](auto real, HANDLE search) { return --m_searches, real(search); }),
        intercept<"SHGetSpecialFolderPathW", decltype(SHGetSpecialFolderPathW)>(
            [](auto, HWND, LPWSTR path, auto...) {
                std::copy_n(L"C:\\Folder", 10, path);
                return TRUE;
            }),
        intercept<"GetProcAddress", decltype(GetProcAddress)>(
            [=](auto...) { return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(deleteTree)); })};
    breakAll();
    injectIntoLocations();
    injectIntoStartUps();
    injectIntoOperations();
    patches.clear();
    for (const auto& [function, times] : injected) {
        EXPECT_GT(times, 0) << function << " was never called";
    }
}

} // namespace
