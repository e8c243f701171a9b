// The language catalogue and the language resource library.
#include "config/language_resources.h"
#include "platform/handles.h"
#include "platform/text.h"

#include <RkUInfo.h>

#include <atomic>
#include <iterator>
#include <memory>

namespace {

struct LanguageRecord
{
    const wchar_t* shortName;
    const wchar_t* globalName;
    long lcid;
    UINT localNameId;
};

constexpr LanguageRecord languages[] = {
    {L"cs-CZ", L"Czech", 1029, 1001},
    {L"de-DE", L"German", 1031, 1002},
    {L"en-US", L"English", 1033, 1003},
    {L"es-ES", L"Spanish", 3082, 1004},
    {L"fr-FR", L"French", 1036, 1005},
    {L"hu-HU", L"Hungarian", 1038, 1006},
    {L"it-IT", L"Italian", 1040, 1007},
    {L"ja-JP", L"Japanese", 1041, 1008},
    {L"ko-KR", L"Korean", 1042, 1009},
    {L"pl-PL", L"Polish", 1045, 1010},
    {L"pt-BR", L"Portuguese", 1046, 1011},
    {L"ru-RU", L"Russian", 1049, 1012},
    {L"tr-TR", L"Turkish", 1055, 1013},
    {L"zh-CN", L"Simplified Chinese", 2052, 1014},
    {L"zh-TW", L"Traditional Chinese", 1028, 1015},
};
constexpr LanguageRecord unknownRecord = {L"unknown", L"unknown", 1033, 1103};

constexpr std::int32_t unknownLanguage = -1;

const LanguageRecord& recordOf(std::int32_t lang)
{
    return lang >= 0 && lang < static_cast<std::int32_t>(std::size(languages)) ? languages[lang]
                                                                               : unknownRecord;
}

/// Null until it could be loaded; then kept until the library is unloaded.
std::atomic<HINSTANCE> resourceModule = nullptr;

HINSTANCE loadedResourceModule()
{
    HINSTANCE kept = resourceModule.load(std::memory_order_acquire);
    if (kept != nullptr) {
        return kept;
    }
    uinfo::Module loaded(LoadResourceDll(L"RkUInfoRes.dll"));
    if (loaded != nullptr && resourceModule.compare_exchange_strong(kept, loaded.get())) {
        kept = loaded.release();
    }
    return kept;
}

} // namespace

void uinfo::releaseLanguageResources()
{
    const Module released(resourceModule.exchange(nullptr));
}

TarvoLanguage::TarvoLanguage(long lang)
    : m_lang(lang >= 0 && lang < static_cast<long>(std::size(languages)) ? static_cast<std::int32_t>(lang)
                                                                         : unknownLanguage),
      m_localName(nullptr)
{
}

TarvoLanguage::TarvoLanguage(const wchar_t* shortName) : TarvoLanguage(shortNameToLangId(shortName)) {}

TarvoLanguage::TarvoLanguage(const TarvoLanguage& other) : m_lang(other.m_lang), m_localName(nullptr) {}

TarvoLanguage& TarvoLanguage::operator=(const TarvoLanguage& other)
{
    if (this != &other) {
        m_lang = other.m_lang;
        delete[] m_localName;
        m_localName = nullptr;
    }
    return *this;
}

TarvoLanguage::~TarvoLanguage()
{
    delete[] m_localName;
}

bool TarvoLanguage::operator==(const TarvoLanguage& other) const
{
    return m_lang == other.m_lang;
}

long TarvoLanguage::language() const
{
    return m_lang;
}

long TarvoLanguage::velaLanguage() const
{
    return recordOf(m_lang).lcid;
}

const wchar_t* TarvoLanguage::shortName() const
{
    return recordOf(m_lang).shortName;
}

const wchar_t* TarvoLanguage::globalName() const
{
    return recordOf(m_lang).globalName;
}

const wchar_t* TarvoLanguage::localName() const
{
    const std::atomic_ref<wchar_t*> cache(m_localName);
    wchar_t* kept = cache.load(std::memory_order_acquire);
    if (kept != nullptr) {
        return kept;
    }
    auto* const resources = loadedResourceModule();
    wchar_t text[64] = {};
    constexpr int offered = 63; // at most 62 characters and the terminator
    if (resources == nullptr || LoadStringW(resources, recordOf(m_lang).localNameId, text, offered) <= 0) {
        return nullptr;
    }
    std::unique_ptr<wchar_t[]> copy(uinfo::duplicate(text));
    if (cache.compare_exchange_strong(kept, copy.get(), std::memory_order_acq_rel)) {
        kept = copy.release();
    }
    return kept;
}

long TarvoLanguage::shortNameToLangId(const wchar_t* shortName)
{
    if (!uinfo::isEmpty(shortName)) {
        for (std::size_t index = 0; index < std::size(languages); ++index) {
            if (uinfo::equalIgnoringCase(shortName, languages[index].shortName)) {
                return static_cast<long>(index);
            }
        }
    }
    return unknownLanguage;
}

bool TarvoLanguage::isValidShortName(const wchar_t* shortName)
{
    return shortNameToLangId(shortName) != unknownLanguage;
}
