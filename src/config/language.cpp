// TarvoLanguage.
#include "config/language_resources.h"
#include "installation/languages.h"
#include "platform/text.h"

#include <RkUInfo.h>

#include <atomic>
#include <memory>

namespace {

using uinfo::isLanguage;
using uinfo::unknownLanguage;

const uinfo::Language& recordOf(std::int32_t index)
{
    return isLanguage(index) ? uinfo::languages[index] : uinfo::unknownRecord;
}

} // namespace

TarvoLanguage::TarvoLanguage(long lang)
    : m_lang(isLanguage(lang) ? static_cast<std::int32_t>(lang) : unknownLanguage), m_localName(nullptr)
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
    auto* const resources = uinfo::languageResources();
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
    return uinfo::findLanguage(shortName);
}

bool TarvoLanguage::isValidShortName(const wchar_t* shortName)
{
    return shortNameToLangId(shortName) != unknownLanguage;
}
