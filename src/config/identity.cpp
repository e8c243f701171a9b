// Which company and product the process runs as, and the registry roots that follow from them.
#include "platform/registry_key.h"
#include "platform/text.h"
#include "program/names.h"

#include <RkUInfo.h>

#include <utility>

namespace {

using uinfo::BoundedText;
using uinfo::isEmpty;
using uinfo::nameCapacity;
using uinfo::pathCapacity;
using uinfo::RegistryKey;

bool readCurrentProduct(const wchar_t* companyRoot, BoundedText& product)
{
    const RegistryKey root = RegistryKey::open(HKEY_CURRENT_USER, companyRoot, KEY_READ);
    return root && root.queryString(uinfo::currentProductValue, product);
}

} // namespace

TarvoConfig::Error TarvoConfig::initCompanyName(const wchar_t* company)
{
    if (m_companyName != nullptr) {
        return eInvalidInput;
    }
    wchar_t fromIni[nameCapacity];
    if (!isEmpty(company)) {
        if (uinfo::length(company) >= nameCapacity) {
            return eInvalidInput;
        }
    } else if (readIniString(uinfo::productSection, L"CompanyName", fromIni, nameCapacity, uinfo::tarvoIni) ==
               eOk) {
        company = fromIni;
    } else {
        company = uinfo::defaultCompany;
    }
    m_companyName = uinfo::duplicate(company);
    return buildRootPathFromCompany();
}

TarvoConfig::Error TarvoConfig::buildRootPathFromCompany()
{
    if (isEmpty(m_companyName) || uinfo::length(m_companyName) > uinfo::longestCompany) {
        return eInvalidInput;
    }
    delete[] std::exchange(m_rootPath, new wchar_t[pathCapacity]);
    BoundedText root(m_rootPath, pathCapacity);
    root.append(uinfo::softwareKey);
    root.append(m_companyName);
    return eOk;
}

TarvoConfig::Error TarvoConfig::initProductName(const wchar_t* product)
{
    if (m_productName != nullptr || isEmpty(m_rootPath)) {
        return eInvalidInput;
    }
    uinfo::TextBuffer<nameCapacity + 1> fromRegistry;
    wchar_t fromIni[nameCapacity];
    if (!isEmpty(product)) {
        if (uinfo::length(product) >= nameCapacity) {
            return eInvalidInput;
        }
    } else if (readCurrentProduct(m_rootPath, fromRegistry)) {
        product = fromRegistry.text();
    } else if (readIniString(uinfo::productSection, L"ProductName", fromIni, nameCapacity, uinfo::tarvoIni) ==
               eOk) {
        product = fromIni;
    } else {
        product = uinfo::defaultProduct;
    }
    m_productName = uinfo::duplicate(product);
    refreshProductName();
    return buildRootPathFromProduct();
}

int TarvoConfig::refreshProductName()
{
    if (isEmpty(m_rootPath)) {
        return 0;
    }
    const RegistryKey root = RegistryKey::open(HKEY_CURRENT_USER, m_rootPath, KEY_WRITE);
    return root && root.setString(uinfo::currentProductValue, productName()) ? 1 : 0;
}

TarvoConfig::Error TarvoConfig::buildRootPathFromProduct()
{
    constexpr std::size_t versionAndSeparators = 6; // two backslashes and "2018"
    if (isEmpty(m_rootPath) || isEmpty(m_productName) ||
        uinfo::length(m_rootPath) + uinfo::length(m_productName) + versionAndSeparators >= pathCapacity) {
        return eInvalidInput;
    }
    BoundedText root = BoundedText::behind(m_rootPath, pathCapacity);
    root.appendComponent(m_productName);
    delete[] std::exchange(m_versionRootPath, new wchar_t[pathCapacity]);
    BoundedText versionRoot(m_versionRootPath, pathCapacity);
    versionRoot.append(m_rootPath);
    versionRoot.appendComponent(uinfo::versionSegment);
    return eOk;
}

bool TarvoConfig::isInitTARVOProduct()
{
    return uinfo::equalIgnoringCase(companyName(), uinfo::initialCompany) &&
           uinfo::equalIgnoringCase(productName(), uinfo::defaultProduct);
}
