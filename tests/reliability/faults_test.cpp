// Every call that the library makes of the system fails, one at a time, in each error that it can answer.
#include "store/store.h"

#include "support/scratch.h"

#include <RkUInfo.h>

#include <io.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <deque>
#include <iostream>
#include <new>
#include <optional>
#include <set>
#include <vector>

namespace {

using namespace testing_support;

struct Function
{
    const char* name;
    std::vector<DWORD> errors;
    std::vector<std::string> thrown; ///< what the library may throw when it fails
    int injected = 0;
};

/// The fault of the present run: which call of all fails, and by which of its function's errors.
struct Fault
{
    int call = 0;
    std::size_t error = 0;
    int callsMade = 0;
    const Function* hit = nullptr;
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
void breakable(std::vector<DWORD> errors, Fail fail, std::vector<std::string> thrown = {})
{
    Function& function = functions.emplace_back(Function{name.text, std::move(errors), std::move(thrown)});
    patches.push_back(intercept<name, Signature>([&function, fail](auto real, auto... arguments) {
        const std::optional<DWORD> error = failsNow(function);
        return error ? static_cast<decltype(real(arguments...))>(fail(*error, real, arguments...))
                     : real(arguments...);
    }));
}

/// The library finds RegDeleteTreeW by its name.
LSTATUS WINAPI deleteTree(HKEY key, LPCWSTR path)
{
    static Function& function = functions.emplace_back(Function{"RegDeleteTreeW", {5, 8, 1016, 1018}, {}});
    const std::optional<DWORD> error = failsNow(function);
    return error ? static_cast<LSTATUS>(*error) : RegDeleteTreeW(key, path);
}

// The calls that are made at load and unload alone are not among them.
void breakAll()
{
    const auto with = [](std::vector<DWORD> more) {
        more.insert(more.end(), {ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_NOT_ENOUGH_MEMORY,
                                 ERROR_REGISTRY_CORRUPT, ERROR_REGISTRY_IO_FAILED, ERROR_KEY_DELETED,
                                 ERROR_NO_SYSTEM_RESOURCES});
        return more;
    };
    const std::vector<DWORD> file = {ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_NOT_ENOUGH_MEMORY};
    const std::vector<DWORD> endOfNames = {ERROR_MORE_DATA, ERROR_NO_MORE_ITEMS};
    const auto answer = [](DWORD error, auto...) { return error; };
    const auto zero = [](auto...) { return 0; };
    const auto null = [](auto...) { return nullptr; };
    const auto closesAll = [](DWORD error, auto real, auto handle) {
        real(handle);
        return std::is_same_v<decltype(real(handle)), BOOL> ? DWORD{FALSE} : error;
    };
    breakable<"RegOpenKeyExW", decltype(RegOpenKeyExW)>(with({}), answer);
    breakable<"RegCreateKeyExW", decltype(RegCreateKeyExW)>(with({ERROR_DISK_FULL}), answer);
    breakable<"RegSetValueExW", decltype(RegSetValueExW)>(with({ERROR_DISK_FULL}), answer);
    breakable<"RegDeleteKeyW", decltype(RegDeleteKeyW)>(with({}), answer);
    breakable<"RegDeleteValueW", decltype(RegDeleteValueW)>(with({}), answer);
    breakable<"RegQueryInfoKeyW", decltype(RegQueryInfoKeyW)>(with({ERROR_INSUFFICIENT_BUFFER}), answer);
    breakable<"RegEnumKeyExW", decltype(RegEnumKeyExW)>(with(endOfNames), answer);
    breakable<"RegEnumValueW", decltype(RegEnumValueW)>(with(endOfNames), answer);
    breakable<"RegQueryValueExW", decltype(RegQueryValueExW)>(
        with({ERROR_MORE_DATA}), [](DWORD error, auto real, HKEY key, LPCWSTR name, LPDWORD reserved,
                                    LPDWORD type, LPBYTE data, LPDWORD size) {
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
        file, [](DWORD, auto, LPCWSTR, LPCWSTR, LPCWSTR, LPWSTR out, auto...) {
            *out = 0;
            return 0;
        });
    breakable<"GetPrivateProfileIntW", decltype(GetPrivateProfileIntW)>(
        file, [](DWORD, auto, LPCWSTR, LPCWSTR, INT fallback, LPCWSTR) { return fallback; });
    breakable<"MessageBoxW", decltype(MessageBoxW)>({0, IDNO}, answer);
    const auto noMemory = [](auto...) -> void* { throw std::bad_alloc(); };
    using Allocate = void*(std::size_t);
    constexpr bool isLong = std::is_same_v<std::size_t, unsigned long>; // as names are mangled
    std::vector<std::string> withoutMemory = {"thrown 6"};
    if (hasOwnHeapOperators) { // which call malloc
        withoutMemory.emplace_back("no memory");
    } else {
        breakable<isLong ? Name("_Znam") : Name("_Znay"), Allocate>({ERROR_NOT_ENOUGH_MEMORY}, noMemory,
                                                                    {"no memory"});
    }
    breakable<"malloc", Allocate>({ERROR_NOT_ENOUGH_MEMORY}, null, withoutMemory);
}

/// Starts with a started configuration or not, in a tree or in nothing.
struct Scenario
{
    std::string name;
    bool started;
    bool inTree;
    std::vector<std::string> allowed; ///< outcomes, beside that without a fault
    std::function<std::string()> run;
};

const std::string company = "Software\\Acme";
const std::string settingsKey = company + "\\Widget\\2018\\en-US\\Settings";
const std::string profilesKey = company + "\\Widget\\2018\\en-US\\Profiles";

void makeTree()
{
    const auto set = [](const std::string& path, const std::string& name, const RawValue& value) {
        if (getRaw(HKEY_CURRENT_USER, path, name) != value) {
            setRaw(HKEY_CURRENT_USER, path, name, value);
        }
    };
    set(company, "CurProduct", text("Widget"));
    set(company + "\\Widget\\2018", "CurVer", text("en-US"));
    set(profilesKey, "", text("Work"));
    set(profilesKey + "\\Work\\CommonSettings", "CustomResFile", text("custom.res"));
    set(settingsKey + "\\UserConfig\\Config", "UIStyle", text("dark.tus"));
    set(settingsKey + "\\Inner", "n", dword(1));
    set(settingsKey + "\\Inner", "long", {REG_QWORD, "12345678"});
    set(settingsKey + "\\Inner", "bytes", {REG_BINARY, "bytes"});
    set(settingsKey + "\\Inner", "text", text("a text"));
    set(settingsKey + "\\Inner\\n\\Deep", "n", dword(1));
}

std::string code(int error)
{
    return std::to_string(error);
}

std::vector<Scenario> startUps()
{
    const auto start = [](const wchar_t* given, const wchar_t* product, const wchar_t* language) {
        return [=] { return code(InitVelaConfig(given, product, language, L"Work")); };
    };
    const std::vector<std::string> allowed = {code(TarvoConfig::eRegistryError),
                                              code(TarvoConfig::eInvalidInput), "ended"};
    const auto provision = [] { return code(CreateConfigReg()); };
    return {
        {"start-up by arguments", false, true, allowed, start(L"Acme", L"Widget", L"en-US")},
        {"start-up from the registry", false, true, allowed, start(L"Acme", nullptr, nullptr)},
        {"start-up from the INI file", false, false, allowed, start(nullptr, nullptr, nullptr)},
        {"start-up with a question", false, false, allowed, start(L"Norvik", L"TARVO", L"ja-JP")},
        {"provisioning", true, false, {code(TarvoConfig::eRegistryError)}, provision},
        {"provisioning again", true, true, {code(TarvoConfig::eRegistryError)}, provision},
    };
}

/// Walks sub-keys or values; tells the results that no iterator may give.
template <typename Iterator, typename Use>
std::string walk(Use use)
{
    std::string wrong;
    const auto check = [&](int error, const std::string& allowed) {
        wrong += allowed.find(code(error)) == std::string::npos ? code(error) + ' ' : "";
    };
    Iterator found;
    check(velaConfig()->findItem(eSettings, L"Inner", found), "015");
    Iterator it;
    it = found;
    for (int i = 0; i < 5; ++i) {
        use(it, check);
        check(it.step(), "04");
    }
    return wrong.empty() ? "whole" : wrong;
}

std::vector<Scenario> storeOperations()
{
    std::vector<Scenario> all;
    const auto add = [&](std::size_t index, const wchar_t* path, int version) {
        const Operation& operation = operations[index];
        const auto run = [&operation, path, version] {
            const Patch pretended = pretendVersion(version);
            VelaVariant value;
            value.setString(L"kept");
            const int error = operation.call(*velaConfig(), eSettings, path, value);
            return code(error) + ' ' + describe(value);
        };
        const char* const codes[] = {"7", "12", "15", "5", "15", "15", "15", "15", "15"};
        std::vector<std::string> allowed;
        for (const char* each = codes[index]; *each != 0; ++each) {
            allowed.push_back(*each + std::string(" 5/14 0 0 0 'kept' -"));
        }
        all.push_back({operation.name + ' ' + utf8(path), true, true, allowed, run});
    };
    for (std::size_t index = 0; index < std::size(operations); ++index) {
        for (const wchar_t* const path : {L"Inner/n", L"Inner", L"New/n"}) {
            add(index, path, 7);
        }
        for (const wchar_t* const path : {L"Inner/n", L"Inner"}) { // RegDeleteTreeW is looked for, then known
            add(index, path, 10);
        }
    }
    for (const wchar_t* const path : {L"Inner/long", L"Inner/bytes", L"Inner/text"}) {
        add(1, path, 7);
    }
    const auto walkItems = [](auto& it, auto check) {
        wchar_t name[1024];
        long length = 1024;
        VelaVariant value;
        value.setInt(2);
        check(it.name(name, length), "046");
        check(velaConfig()->setValue(it, L"n", value), "01456");
        check(velaConfig()->getValue(it, L"n", value), "012456");
    };
    const auto walkValues = [](auto& it, auto check) {
        VelaVariant value;
        check(it.value(value), "01246");
        value.setInt(2);
        check(it.setValue(value), "0456");
    };
    all.push_back(
        {"walk of items", true, true, {}, [=] { return walk<TarvoConfig::ItemIterator>(walkItems); }});
    all.push_back(
        {"walk of values", true, true, {}, [=] { return walk<TarvoConfig::ValueIterator>(walkValues); }});
    return all;
}

std::vector<Scenario> locations(const std::string& executable)
{
    std::vector<Scenario> all;
    const auto add = [&](std::function<std::string()> run, std::vector<std::string> also = {}) {
        also.emplace_back(); // none
        all.push_back({"location " + std::to_string(all.size()), true, true, also, std::move(run)});
    };
    const auto addSized = [&](auto function, const std::vector<std::string>& also = {}) {
        const auto run = [function] {
            wchar_t buffer[1024] = {};
            const auto length = static_cast<std::size_t>(function(buffer));
            EXPECT_TRUE(length == 0 || length == Wide(utf8(buffer)).length());
            return length == 0 ? "" : utf8(buffer);
        };
        add(run, also);
    };
    addSized(GetVelaProgramPath); // first: later ones find it filled
    addSized(GetVelaProgramName);
    for (const auto function :
         {GetUserApplicationDataPath, GetUserApplicationDataSupportPath, GetUserApplicationDataPlottersPath,
          GetUserApplicationDataCrashReportPath, GetUserApplicationDataPrintstylePath,
          GetUserLocalApplicationDataTemplatePath}) { // and by them every level in between
        addSized(function);
    }
    const std::string standard = profilesKey + "\\Default"; // stored where none can be read
    addSized(GetVelaRegistryCurrentProfileRootKey, {standard});
    addSized(GetVelaRegistryCurrentProfileConfigRootKey, {standard + "\\Config"});
    addSized(GetCustomResFileName);
    addSized(GetVelaUIStyleConfigFilePath, {"C:\\Folder\\Acme\\Widget\\2018\\en-US\\Support\\Style.tus"});
    addSized(GetVelaUserDataCacheLanPath);
    addSized([](wchar_t* buffer) {
        unsigned long size = 1024;
        return GetCurrentProfileName(buffer, size);
    });
    addSized([](wchar_t* buffer) { return GetResourceDllPath(buffer, 1024); },
             {executable + "\\en-US"}); // from an executable without a folder
    addSized([](wchar_t* buffer) { return GetHelpFilePath(buffer, 1024); });
    const auto loaded = [](HMODULE module) {
        return module != nullptr && FreeLibrary(module) ? "loaded" : "";
    };
    add([=] { return loaded(LoadResourceDll(L"RkUInfoRes.dll")); });
    add([=] { return loaded(LoadResourceDllEx(L"RkUInfoRes.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE)); });
    add([] { return utf8(GetCurrentLanguageLocalName()); }); // from a library that is not loaded, then is
    add([] { return utf8(GetCurrentLanguageLocalName()); });
    add([] { return utf8(velaGetProduct()->helpFilePath()); }, {"RKHelp.exe"});
    add([] { return utf8(GetVelaArchitectrueCommandNamePrefix()); });
    add([] { return std::to_string(GetVelaIniOEMMergeTitleValue(-5)); }, {"-5"});
    add([] {
        VelaVariant value;
        GetVelaIniConfigValue(L"Product", L"ProductName", value, VelaVariant::eString);
        return utf8(value.getString());
    });
    return all;
}

struct Ended
{
};

std::string outcomeOf(const Scenario& scenario)
{
    try {
        return scenario.run();
    } catch (RkErrorStatus* exception) {
        const std::unique_ptr<RkErrorStatus> owned(exception);
        return "thrown " + code(exception->code());
    } catch (const std::bad_alloc&) {
        return "no memory";
    } catch (const Ended&) {
        return "ended";
    }
}

std::set<std::string> lines(const std::string& text)
{
    std::istringstream in(text);
    std::set<std::string> all;
    for (std::string line; std::getline(in, line);) {
        all.insert(line);
    }
    return all;
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
        EXPECT_EQ(startAcme(L"Work"), TarvoConfig::eOk);
        m_started = *velaConfig();
    }

    void prepare(const Scenario& scenario)
    {
        *velaConfig() = scenario.started ? m_started : m_unstarted;
        if (scenario.inTree && m_inTree && m_now != m_before) { // what differs is little
            removeKey(HKEY_CURRENT_USER, settingsKey + "\\New");
            makeTree();
            m_now = userTree();
        }
        if (scenario.inTree != m_inTree || m_now != m_before) {
            removeKey(HKEY_CURRENT_USER, company);
            if (scenario.inTree) {
                makeTree();
            }
            m_before = userTree();
            m_inTree = scenario.inTree;
        }
    }

    static std::string userTree() { return tree(HKEY_CURRENT_USER, "Software"); }

    /// Runs a scenario with one fault after the other; the last run, to which no fault came, tells what is
    /// right.
    int inject(const Scenario& scenario)
    {
        struct Run
        {
            std::string fault, outcome, tree;
            std::vector<std::string> thrown;
        };
        std::vector<Run> runs;
        for (fault = {1}; runs.empty() || fault.hit != nullptr;) {
            fault.callsMade = fault.call; // past it
            prepare(scenario);
            fault.callsMade = 0;
            fault.hit = nullptr;
            const std::string outcome = outcomeOf(scenario);
            const Function* const hit = fault.hit;
            const std::string what =
                hit == nullptr ? "no fault" : hit->name + (' ' + std::to_string(hit->errors[fault.error]));
            m_now = userTree();
            runs.push_back({what + " in call " + std::to_string(fault.call), outcome, m_now,
                            hit == nullptr ? std::vector<std::string>() : hit->thrown});
            EXPECT_EQ(m_keys.stillOpen(), 0) << scenario.name << ", " << runs.back().fault;
            EXPECT_EQ(m_searches, 0) << scenario.name << ", " << runs.back().fault;
            if (hit != nullptr && ++fault.error == hit->errors.size()) {
                fault.error = 0;
                ++fault.call;
            }
        }
        const std::string right = runs.back().outcome;
        EXPECT_NE(right, "") << scenario.name;
        std::set<std::string> whole = lines(m_before + runs.back().tree);
        whole.merge(lines("=" + testing::PrintToString(text("Default")))); // a profile that cannot be read
        for (const Run& run : runs) {
            SCOPED_TRACE(scenario.name + ", " + run.fault);
            const auto isIn = [&run](const auto& all) {
                return std::ranges::find(all, run.outcome) != all.end();
            };
            EXPECT_TRUE(run.outcome == right || isIn(run.thrown) || isIn(scenario.allowed)) << run.outcome;
            for (const std::string& line : lines(run.tree)) {
                EXPECT_TRUE(whole.contains(line)) << line;
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
    std::cout << injected << " faults injected\n";
    for (const Function& function : functions) {
        EXPECT_GT(function.injected, 0) << function.name << " was never called";
    }
    patches.clear();
}

} // namespace
