// The item and value operations of the configuration object.
#include "platform/registry_key.h"
#include "platform/text.h"
#include "store/codec.h"
#include "store/key_path.h"
#include "store/key_tree.h"

#include <RkUInfo.h>

#include <windows.h>

namespace {

using uinfo::isEmpty;
using uinfo::KeyPath;
using uinfo::RegistryKey;

TarvoConfig::Error writeValue(const KeyPath& key, const wchar_t* valueName, const VelaVariant& value)
{
    const RegistryKey opened = RegistryKey::openOrCreate(HKEY_CURRENT_USER, key.text());
    return opened ? uinfo::writeValueToKey(opened.get(), valueName, value) : TarvoConfig::eNotFound;
}

} // namespace

int TarvoConfig::isItemExist(Path path, const wchar_t* item)
{
    KeyPath key;
    if (!key.assignRoot(*this, path)) {
        return 0;
    }
    if (!isEmpty(item)) {
        const std::size_t dropped = *item == L'\\' || *item == L'/' ? 1 : 0;
        if (!key.join(item + dropped, uinfo::longestReadPath - dropped)) {
            return 0;
        }
    }
    return RegistryKey::open(HKEY_CURRENT_USER, key.text(), KEY_READ) ? 1 : 0;
}

TarvoConfig::Error TarvoConfig::getValue(Path path, const wchar_t* valuePath, VelaVariant& value) const
{
    KeyPath key;
    uinfo::ClientPath client;
    if (!key.assignRoot(*this, path) || !client.assign(valuePath)) {
        return eInvalidInput;
    }
    const uinfo::ClientPath::Parts parts = client.split();
    if (!key.join(parts, uinfo::longestReadPath)) {
        return eInvalidInput;
    }
    const RegistryKey opened = RegistryKey::open(HKEY_CURRENT_USER, key.text(), KEY_READ);
    return opened ? uinfo::readValueFromKey(opened.get(), parts.name, value) : eNotFound;
}

TarvoConfig::Error TarvoConfig::setValue(Path path, const wchar_t* valuePath, const VelaVariant& value)
{
    KeyPath key;
    uinfo::ClientPath client;
    if (!key.assignRoot(*this, path) || !client.assign(valuePath)) {
        return eInvalidInput;
    }
    uinfo::ClientPath::Parts parts = client.split();
    while (parts.keyLength > 0 && parts.key[parts.keyLength - 1] == L'\\') {
        --parts.keyLength; // several separators may precede the name
    }
    return key.join(parts, uinfo::longestChangePath) ? writeValue(key, parts.name, value) : eInvalidInput;
}

TarvoConfig::Error TarvoConfig::getValue(const ItemIterator& item, const wchar_t* valueName,
                                         VelaVariant& value) const
{
    wchar_t name[uinfo::pathCapacity];
    long nameLength = uinfo::pathCapacity;
    if (const Error error = item.name(name, nameLength); error != eOk) {
        return error;
    }
    if (isEmpty(name)) {
        return eRegistryError;
    }
    const RegistryKey opened = RegistryKey::open(item.m_key, name, KEY_READ);
    return opened ? uinfo::readValueFromKey(opened.get(), valueName, value) : eNotFound;
}

TarvoConfig::Error TarvoConfig::setValue(ItemIterator& item, const wchar_t* valueName,
                                         const VelaVariant& value) const
{
    if (item.m_key == nullptr) {
        return eNotFound;
    }
    wchar_t name[uinfo::pathCapacity];
    long nameLength = uinfo::pathCapacity;
    if (const Error error = item.name(name, nameLength); error != eOk) {
        return error;
    }
    const RegistryKey opened = RegistryKey::open(item.m_key, name, KEY_WRITE);
    return opened ? uinfo::writeValueToKey(opened.get(), valueName, value) : eNotFound;
}

TarvoConfig::Error TarvoConfig::addItem(Path path, const wchar_t* item)
{
    KeyPath key;
    if (!key.assign(*this, path, item)) {
        return eInvalidInput;
    }
    return RegistryKey::openOrCreate(HKEY_CURRENT_USER, key.text()) ? eOk : eRegistryError;
}

TarvoConfig::Error TarvoConfig::addValue(Path path, const wchar_t* item, const wchar_t* valueName,
                                         const VelaVariant& value)
{
    KeyPath key;
    if (!key.assign(*this, path, item)) {
        return eInvalidInput;
    }
    return writeValue(key, valueName, value);
}

TarvoConfig::Error TarvoConfig::removeItem(Path path, const wchar_t* item)
{
    KeyPath key;
    uinfo::ClientPath client;
    if (!key.assignRoot(*this, path) || !client.assign(item)) {
        return eInvalidInput;
    }
    const bool removesRoot = client.empty();
    if (removesRoot && !client.assign(key.text())) {
        return eInvalidInput;
    }
    const uinfo::ClientPath::Parts parts = client.split();
    if (!removesRoot && !key.join(parts, uinfo::longestChangePath)) {
        return eInvalidInput;
    }
    if (isEmpty(parts.name)) {
        return eNotFound;
    }
    const wchar_t* const parent = removesRoot ? parts.key : key.text();
    const RegistryKey opened = RegistryKey::open(HKEY_CURRENT_USER, parent, KEY_ALL_ACCESS);
    if (!opened) {
        return eNotFound;
    }
    return uinfo::removeKeyTree(opened.get(), parts.name) ? eOk : eRegistryError;
}

TarvoConfig::Error TarvoConfig::removeValue(Path path, const wchar_t* item, const wchar_t* valueName)
{
    KeyPath key;
    if (!key.assign(*this, path, item)) {
        return eInvalidInput;
    }
    const RegistryKey opened = RegistryKey::open(HKEY_CURRENT_USER, key.text(), KEY_ALL_ACCESS);
    if (!opened) {
        return eNotFound;
    }
    return RegDeleteValueW(opened.get(), valueName) == ERROR_SUCCESS ? eOk : eRegistryError;
}
