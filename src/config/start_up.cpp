// The configuration object: construction, copies, the start-up sequence and the accessors.
#include "installation/names.h"
#include "platform/text.h"

#include <RkUInfo/TarvoConfig.h>

#include <algorithm>
#include <utility>

TarvoConfig TarvoConfig::_sg_tarvo_config;

namespace {

wchar_t* copyOfPath(const wchar_t* path)
{
    if (path == nullptr) {
        return nullptr;
    }
    auto* const copy = new wchar_t[uinfo::pathCapacity];
    std::copy_n(path, uinfo::length(path) + 1, copy);
    return copy;
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
    m_productName = uinfo::duplicate(other.m_productName);
    m_companyName = uinfo::duplicate(other.m_companyName);
    m_profileNameCmdLineInfo = uinfo::duplicate(other.m_profileNameCmdLineInfo);
    m_language = other.m_language;
    m_rootPath = copyOfPath(other.m_rootPath);
    m_versionRootPath = copyOfPath(other.m_versionRootPath);
    m_initialized = other.m_initialized;
}

TarvoConfig& TarvoConfig::operator=(const TarvoConfig& other)
{
    if (this != &other) {
        TarvoConfig copy(other); // if this throws, no field of this object has changed
        std::swap(m_productName, copy.m_productName);
        std::swap(m_companyName, copy.m_companyName);
        std::swap(m_profileNameCmdLineInfo, copy.m_profileNameCmdLineInfo);
        std::swap(m_rootPath, copy.m_rootPath);
        std::swap(m_versionRootPath, copy.m_versionRootPath);
        m_language = copy.m_language;
        m_initialized = copy.m_initialized;
    }
    return *this;
}

TarvoConfig::~TarvoConfig()
{
    for (wchar_t** owned :
         {&m_productName, &m_companyName, &m_profileNameCmdLineInfo, &m_rootPath, &m_versionRootPath}) {
        delete[] std::exchange(*owned, nullptr);
    }
}

TarvoConfig::Error TarvoConfig::initial(const wchar_t* company, const wchar_t* product,
                                        const wchar_t* language, const wchar_t* profile)
{
    if (m_initialized != 0) {
        return eOk;
    }
    Error error = initCompanyName(company);
    error = error == eOk ? initProductName(product) : error;
    error = error == eOk ? initLanguageName(language) : error;
    error = error == eOk ? initProfileName(profile) : error;
    error = error == eOk ? verifyResourcePath() : error;
    m_initialized = error == eOk ? 1 : 0;
    return error;
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
