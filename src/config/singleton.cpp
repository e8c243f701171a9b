// The configuration object: construction, copies, the start-up sequence and the accessors.
#include "platform/text.h"
#include "program/names.h"

#include <RkUInfo.h>

#include <algorithm>
#include <memory>
#include <utility>

TarvoConfig TarvoConfig::_sg_tarvo_config;

TarvoConfig* velaConfig()
{
    return &TarvoConfig::_sg_tarvo_config;
}

namespace {

using OwnedText = std::unique_ptr<wchar_t[]>;

OwnedText copyOfText(const wchar_t* text)
{
    return OwnedText(uinfo::duplicate(text));
}

OwnedText copyOfPath(const wchar_t* path)
{
    if (path == nullptr) {
        return nullptr;
    }
    OwnedText copy(new wchar_t[uinfo::pathCapacity]);
    std::copy_n(path, uinfo::length(path) + 1, copy.get());
    return copy;
}

void replace(wchar_t*& owned, OwnedText text)
{
    delete[] std::exchange(owned, text.release());
}

} // namespace

TarvoConfig::TarvoConfig()
    : m_productName(nullptr),
      m_companyName(nullptr),
      m_profileNameCmdLineInfo(nullptr),
      m_language(-1L),
      m_rootPath(nullptr),
      m_versionRootPath(nullptr),
      m_initialized(0)
{
}

TarvoConfig::TarvoConfig(const TarvoConfig& other) : TarvoConfig()
{
    *this = other;
}

TarvoConfig& TarvoConfig::operator=(const TarvoConfig& other)
{
    if (this == &other) {
        return *this;
    }
    // All copies are made before the first field changes.
    OwnedText product = copyOfText(other.m_productName);
    OwnedText company = copyOfText(other.m_companyName);
    OwnedText profile = copyOfText(other.m_profileNameCmdLineInfo);
    OwnedText root = copyOfPath(other.m_rootPath);
    OwnedText versionRoot = copyOfPath(other.m_versionRootPath);
    replace(m_productName, std::move(product));
    replace(m_companyName, std::move(company));
    replace(m_profileNameCmdLineInfo, std::move(profile));
    replace(m_rootPath, std::move(root));
    replace(m_versionRootPath, std::move(versionRoot));
    m_language = other.m_language;
    m_initialized = other.m_initialized;
    return *this;
}

TarvoConfig::~TarvoConfig()
{
    for (wchar_t** owned :
         {&m_productName, &m_companyName, &m_profileNameCmdLineInfo, &m_rootPath, &m_versionRootPath}) {
        replace(*owned, nullptr);
    }
}

TarvoConfig::Error TarvoConfig::initial(const wchar_t* company, const wchar_t* product,
                                        const wchar_t* language, const wchar_t* profile)
{
    if (m_initialized != 0) {
        return eOk;
    }
    if (const Error error = initCompanyName(company); error != eOk) {
        return error;
    }
    if (const Error error = initProductName(product); error != eOk) {
        return error;
    }
    if (const Error error = initLanguageName(language); error != eOk) {
        return error;
    }
    if (const Error error = initProfileName(profile); error != eOk) {
        return error;
    }
    if (const Error error = verifyResourcePath(); error != eOk) {
        return error;
    }
    m_initialized = 1;
    return eOk;
}

int TarvoConfig::isInitialized() const
{
    return 0;
}

const TarvoLanguage& TarvoConfig::language() const
{
    return m_language;
}

const wchar_t* TarvoConfig::productName() const
{
    return m_productName != nullptr ? m_productName : uinfo::defaultProduct;
}

const wchar_t* TarvoConfig::companyName() const
{
    return m_companyName != nullptr ? m_companyName : uinfo::initialCompany;
}

const wchar_t* TarvoConfig::profileNameCmdLineInfo() const
{
    return m_profileNameCmdLineInfo != nullptr ? m_profileNameCmdLineInfo : uinfo::defaultProfile;
}

TarvoConfig::Error InitVelaConfig(const wchar_t* company, const wchar_t* product, const wchar_t* language,
                                  const wchar_t* profile)
{
    return velaConfig()->initial(company, product, language, profile);
}
