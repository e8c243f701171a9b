// The start-up steps for company and product, and the registry roots that are built from the two names.
#include "installation/choices.h"
#include "installation/layout.h"
#include "installation/names.h"
#include "installation/program_files.h"
#include "platform/registry_key.h"
#include "platform/text.h"

#include <RkUInfo.h>

#include <algorithm>

namespace {

/// Copies a key path into a field. If the field is null, first allocates its buffer.
void store(wchar_t*& field, const uinfo::PathBuffer& path)
{
    if (field == nullptr) {
        field = new wchar_t[uinfo::pathCapacity];
    }
    std::copy_n(path.text(), path.length() + 1, field);
}

} // namespace

TarvoConfig::Error TarvoConfig::initCompanyName(const wchar_t* company)
{
    if (m_companyName != nullptr) {
        return eInvalidInput;
    }
    const uinfo::Choice choice = uinfo::chooseCompany(company, uinfo::programFolder());
    if (!choice.isMade()) {
        return eInvalidInput;
    }
    m_companyName = uinfo::duplicate(choice.value());
    return buildRootPathFromCompany();
}

TarvoConfig::Error TarvoConfig::buildRootPathFromCompany()
{
    uinfo::PathBuffer root;
    if (uinfo::isEmpty(m_companyName) || !uinfo::appendCompanyRoot(root, m_companyName)) {
        return eInvalidInput;
    }
    store(m_rootPath, root);
    return eOk;
}

TarvoConfig::Error TarvoConfig::initProductName(const wchar_t* product)
{
    if (m_productName != nullptr || uinfo::isEmpty(m_rootPath)) {
        return eInvalidInput;
    }
    const uinfo::Choice choice = uinfo::chooseProduct(product, m_rootPath, uinfo::programFolder());
    if (!choice.isMade()) {
        return eInvalidInput;
    }
    m_productName = uinfo::duplicate(choice.value());
    refreshProductName();
    return buildRootPathFromProduct();
}

int TarvoConfig::refreshProductName()
{
    if (uinfo::isEmpty(m_rootPath)) {
        return 0;
    }
    const auto root = uinfo::RegistryKey::open(HKEY_CURRENT_USER, m_rootPath, KEY_WRITE);
    return root && root.setString(uinfo::currentProductValue, productName()) ? 1 : 0;
}

TarvoConfig::Error TarvoConfig::buildRootPathFromProduct()
{
    uinfo::PathBuffer root;
    uinfo::PathBuffer versionRoot;
    if (uinfo::isEmpty(m_rootPath) || uinfo::isEmpty(m_productName) ||
        !uinfo::appendProductRoot(root, m_rootPath, m_productName) ||
        !uinfo::appendVersionRoot(versionRoot, root.text())) {
        return eInvalidInput;
    }
    store(m_rootPath, root);
    store(m_versionRootPath, versionRoot);
    return eOk;
}

bool TarvoConfig::isInitTARVOProduct()
{
    return uinfo::isDefaultProduct(companyName(), productName());
}
