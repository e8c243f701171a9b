// Modules. The handle of an ELF file that is loaded as code is its load address, even if LoadLibraryExW did
// not load it. The only parts of a PE file that can be read are its resources. The handle of the file is the
// address of its bytes in memory.
#include "modules.h"

#include "host_path.h"
#include "pe_resources.h"

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <link.h>
#include <mutex>
#include <sys/auxv.h>
#include <unistd.h>
#include <vector>

namespace winhost {

namespace {

struct CloseLibrary
{
    void operator()(void* library) const { dlclose(library); }
};
using Library = std::unique_ptr<void, CloseLibrary>;

/// A module that LoadLibraryExW loaded. `library` is set if the file contains code, and `bytes` is set if it
/// contains data.
struct Module
{
    HMODULE handle = nullptr;
    std::string file;
    Library library;
    std::shared_ptr<const std::string> bytes;
    unsigned references = 1;
};

// These variables are at namespace scope, so that they outlive every library that is linked with winhost.
std::mutex guard;
std::vector<Module> loaded;

HMODULE handleOf(const void* address)
{
    Dl_info info = {};
    return address != nullptr && dladdr(address, &info) != 0 ? static_cast<HMODULE>(info.dli_fbase) : nullptr;
}

HMODULE executable()
{
    return handleOf(reinterpret_cast<const void*>(getauxval(AT_PHDR)));
}

HMODULE thisLibrary()
{
    return handleOf(&guard);
}

/// Returns whether a handle is the load address of code.
bool isHostCode(HMODULE module)
{
    return module != nullptr && handleOf(module) == module;
}

/// Returns the full path. Resolves links in the folder's path but not in the file name: GetModuleHandleW must
/// find a module by the name under which it was loaded.
std::string absolute(const std::filesystem::path& file)
{
    std::error_code failure;
    const auto full = std::filesystem::absolute(file, failure);
    const auto folder = std::filesystem::canonical(full.parent_path(), failure);
    return (failure ? file : folder / full.filename()).native();
}

std::string hostCodeFile(HMODULE module)
{
    Dl_info info = {};
    return module == executable() || dladdr(module, &info) == 0 ? executableFile() : absolute(info.dli_fname);
}

// The caller must hold `guard`.
std::vector<Module>::iterator findLoaded(HMODULE module)
{
    return std::ranges::find(loaded, module, &Module::handle);
}

std::string fileOf(HMODULE module)
{
    {
        const std::lock_guard<std::mutex> lock(guard);
        const auto found = findLoaded(module);
        if (found != loaded.end()) {
            return found->file;
        }
    }
    return isHostCode(module) ? hostCodeFile(module) : std::string();
}

/// Removes a dot from the end of a name, or adds ".dll" to a name without an extension.
Text withExtension(TextView name)
{
    Text full(name);
    if (full.ends_with(L'.')) {
        full.pop_back();
    } else if (fileName(full).find(L'.') == TextView::npos) {
        full += L".dll";
    }
    return full;
}

bool isSystemName(TextView name)
{
    constexpr TextView systemNames[] = {L"kernel32.dll", L"advapi32.dll", L"user32.dll", L"shell32.dll",
                                        L"shlwapi.dll"};
    return std::ranges::any_of(systemNames, [name](auto system) { return equalIgnoringCase(system, name); });
}

bool hasFolder(TextView name)
{
    return fileName(name).size() != name.size() || name.find(L':') != TextView::npos;
}

/// Finds a loaded module by its file name or its full path; returns null if no module matches.
HMODULE findModule(TextView name)
{
    if (isSystemName(name)) {
        return thisLibrary();
    }
    const bool byPath = hasFolder(name);
    const std::optional<std::string> path = byPath ? findOnHost(name) : std::nullopt;
    const auto isIt = [&](const std::string& file) {
        return byPath ? path && absolute(*path) == file
                      : equalIgnoringCase(fileName(windowsPath(file)), name);
    };
    if (isIt(executableFile())) {
        return executable();
    }
    const std::lock_guard<std::mutex> lock(guard);
    const auto found = std::ranges::find_if(loaded, isIt, &Module::file);
    return found != loaded.end() ? found->handle : nullptr;
}

bool isFullPath(TextView name)
{
    const TextView path = name.substr(name.substr(0, 2).ends_with(L':') ? 2 : 0);
    return path.starts_with(L'\\') || path.starts_with(L'/');
}

std::string programFolder()
{
    return executableFile().substr(0, executableFile().rfind('/') + 1);
}

/// Returns the folders in search order: the executable's folder, the working directory, and the folders in
/// PATH.
std::vector<std::string> searchFolders()
{
    std::vector<std::string> folders = {programFolder(), "."};
    const char* const path = std::getenv("PATH");
    std::string_view rest = path == nullptr ? "" : path;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        folders.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return folders;
}

std::optional<std::string> findModuleFile(TextView name)
{
    if (isFullPath(name)) {
        return findOnHost(name);
    }
    for (const std::string& folder : searchFolders()) {
        Text path = folder == "." ? Text(L".") : windowsPath(folder);
        path.append(L"\\").append(name);
        if (std::optional<std::string> file = findOnHost(path)) {
            return file;
        }
    }
    return std::nullopt;
}

/// Adds a reference to a module. Returns false if the module has been unloaded. References are counted only
/// for modules that LoadLibraryExW loaded, because FreeLibrary never unloads any other module.
bool addReference(HMODULE module)
{
    {
        const std::lock_guard<std::mutex> lock(guard);
        const auto found = findLoaded(module);
        if (found != loaded.end()) {
            ++found->references;
            return true;
        }
    }
    return isHostCode(module);
}

/// Adds a module to the list. If the module is already listed, adds a reference to its entry instead.
HMODULE keep(Module module)
{
    const std::lock_guard<std::mutex> lock(guard);
    const auto found = std::ranges::find_if(loaded, [&module](const Module& m) {
        return m.bytes && module.bytes ? m.file == module.file : m.handle == module.handle;
    });
    if (found == loaded.end()) {
        loaded.push_back(std::move(module));
        return loaded.back().handle;
    }
    ++found->references;
    return found->handle;
}

HMODULE fail(DWORD error)
{
    SetLastError(error);
    return nullptr;
}

HMODULE loadCode(const std::string& file)
{
    Module module;
    module.library.reset(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL));
    struct link_map* map = nullptr;
    if (!module.library || dlinfo(module.library.get(), RTLD_DI_LINKMAP, &map) != 0) {
        return fail(ERROR_BAD_EXE_FORMAT);
    }
    module.handle = handleOf(map->l_ld);
    module.file = file;
    return keep(std::move(module));
}

HMODULE loadFile(const std::string& file, bool forDataOnly, bool mayRun)
{
    constexpr std::size_t largest = std::size_t{64} << 20;
    std::optional<std::string> bytes = readStart(file, 4);
    const bool isHostFile = bytes == "\177ELF";
    if (isHostFile && !forDataOnly) {
        return mayRun ? loadCode(file) : fail(ERROR_ACCESS_DENIED);
    }
    if (bytes && !isHostFile && !bytes->starts_with("MZ")) {
        return fail(ERROR_BAD_EXE_FORMAT);
    }
    if (bytes && !isHostFile) { // another process could truncate a mapped file
        bytes = readFile(file, largest);
    }
    if (!bytes) {
        return nullptr;
    }
    if (!isHostFile && !isPeImage(asBytes(*bytes))) {
        return fail(ERROR_BAD_EXE_FORMAT);
    }
    Module module;
    module.file = file;
    module.bytes = std::make_shared<const std::string>(std::move(*bytes));
    module.handle = reinterpret_cast<HMODULE>(const_cast<char*>(module.bytes->data()));
    return keep(std::move(module));
}

} // namespace

std::shared_ptr<const std::string> resourceFile(HMODULE module)
{
    const std::lock_guard<std::mutex> lock(guard);
    const auto found = findLoaded(module);
    return found != loaded.end() ? found->bytes : nullptr;
}

std::string executableFile()
{
    static const auto* const file = [] {
        std::error_code failure;
        return new std::string(std::filesystem::read_symlink("/proc/self/exe", failure).native());
    }();
    return *file;
}

} // namespace winhost

using namespace winhost;

HMODULE GetModuleHandleW(LPCWSTR name)
{
    if (name == nullptr) {
        return executable();
    }
    const HMODULE module = findModule(withExtension(name));
    if (module == nullptr) {
        SetLastError(ERROR_MOD_NOT_FOUND);
    }
    return module;
}

DWORD GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD size)
{
    const std::string file = fileOf(module == nullptr ? executable() : module);
    if (file.empty()) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return 0;
    }
    const Text full = windowsPath(file);
    if (path == nullptr || copyText(full, path, size) < full.size()) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return path == nullptr ? 0 : size;
    }
    SetLastError(ERROR_SUCCESS);
    return static_cast<DWORD>(full.size());
}

HMODULE LoadLibraryW(LPCWSTR name)
{
    return LoadLibraryExW(name, nullptr, 0);
}

HMODULE LoadLibraryExW(LPCWSTR name, HANDLE /*file*/, DWORD flags)
{
    constexpr DWORD dataFlags =
        LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE | DONT_RESOLVE_DLL_REFERENCES;
    if (name == nullptr) {
        return fail(ERROR_INVALID_PARAMETER);
    }
    const Text fullName = withExtension(name);
    const HMODULE present = hasFolder(fullName) ? nullptr : findModule(fullName);
    if (present != nullptr && addReference(present)) {
        return present;
    }
    const std::optional<std::string> file = findModuleFile(fullName);
    if (!file && GetLastError() == ERROR_TOO_MANY_OPEN_FILES) {
        return nullptr;
    }
    if (!file) {
        return fail((flags & LOAD_LIBRARY_AS_DATAFILE) != 0 ? ERROR_FILE_NOT_FOUND : ERROR_MOD_NOT_FOUND);
    }
    const bool mayRun = isFullPath(fullName) || file == findOnHost(windowsPath(programFolder()) + fullName);
    return loadFile(absolute(*file), (flags & dataFlags) != 0, mayRun);
}

BOOL FreeLibrary(HMODULE module)
{
    if (module == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    Module last; // outlives the lock, because the module's destructors may load modules
    {
        const std::lock_guard<std::mutex> lock(guard);
        const auto found = findLoaded(module);
        if (found != loaded.end()) {
            if (--found->references == 0) {
                last = std::move(*found);
                loaded.erase(found);
            }
            return TRUE;
        }
    }
    if (!isHostCode(module)) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return FALSE;
    }
    return TRUE;
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name)
{
    const HMODULE code = module == nullptr ? executable() : module;
    if (!isHostCode(code)) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    // A null name opens the executable. dlsym also finds functions in the module's dependencies; the
    // comparison of the handles rejects them.
    const std::string file = code == executable() ? std::string() : hostCodeFile(code);
    const Library library(dlopen(file.empty() ? nullptr : file.c_str(), RTLD_LAZY | RTLD_NOLOAD));
    void* const found = library && name != nullptr ? dlsym(library.get(), name) : nullptr;
    if (found == nullptr || handleOf(found) != code) {
        SetLastError(ERROR_PROC_NOT_FOUND);
        return nullptr;
    }
    return reinterpret_cast<FARPROC>(found);
}

BOOL DisableThreadLibraryCalls(HMODULE module)
{
    if (module == executable() || (!isHostCode(module) && !resourceFile(module))) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return FALSE;
    }
    return TRUE;
}
