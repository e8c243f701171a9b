#include "config/language_resources.h"

#include "config/access.h"
#include "installation/names.h"
#include "installation/program_files.h"

#include <atomic>
#include <memory>
#include <type_traits>

namespace {

struct FreeModule
{
    void operator()(HMODULE module) const { FreeLibrary(module); }
};
using Module = std::unique_ptr<std::remove_pointer_t<HMODULE>, FreeModule>;

std::atomic<HINSTANCE> resources = nullptr;

} // namespace

HINSTANCE uinfo::languageResources()
{
    HINSTANCE kept = resources.load(std::memory_order_acquire);
    if (kept != nullptr) {
        return kept;
    }
    Module loaded(loadResourceLibrary(ConfigAccess::instance().language().shortName(), languageLibrary,
                                      [](const wchar_t* path) { return LoadLibraryW(path); }));
    if (loaded != nullptr && resources.compare_exchange_strong(kept, loaded.get())) {
        kept = loaded.release();
    }
    return kept;
}

void uinfo::releaseLanguageResources()
{
    const Module released(resources.exchange(nullptr));
}
