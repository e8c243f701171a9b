// SPDX-License-Identifier: MIT
// TarvoConfig: who the process is, and its typed, registry-backed configuration store.
#pragma once

#include "RkUInfo/Export.h"
#include "RkUInfo/TarvoLanguage.h"
#include "RkUInfo/VelaVariant.h"

#include <cstdint>

namespace uinfo {
class ConfigAccess;
}

#pragma pack(push, 8) // whatever /Zp says

/// The one process-wide object that knows company, product, language and user profile, and through which
/// clients read and change the per-user configuration tree under HKEY_CURRENT_USER.
///
/// The launcher starts it with InitVelaConfig before any other thread uses it; afterwards its fields are only
/// read, and every operation may be called from any thread. Until then the names are the built-in defaults
/// and every operation on the tree gives eInvalidInput (isItemExist: 0).
///
/// An item is a registry key, a value a named registry value in one. An operation names its key by a Path and
/// a sub-path below it, '/' and '\' alike as separators; null or empty names the Path's own key. A null or
/// empty value name is the key's default value. A path of 1024 characters or more gives eInvalidInput
/// (isItemExist: 0); a value name by itself has the registry's own limit.
class RKUINFO_API TarvoConfig
{
public:
    /// Result of every operation that can fail. The value 3 is not assigned.
    enum Error : std::int32_t
    {
        eOk = 0,
        eNotFound = 1,        ///< a name is missing, or a key, value, INI file or entry does not exist
        eWrongType = 2,       ///< the value has no supported type, or not the one asked for
        eInvalidIterator = 4, ///< the iterator holds no key or stands past its end
        eRegistryError = 5,   ///< the registry refused; at start-up: the language's folder cannot be read
        eBufferTooSmall = 6,  ///< the length needed is reported
        eInvalidInput = 7,    ///< a name or path exceeds its limit, or an earlier step is missing
    };

    /// The named subtrees of the registry tree, relative to HKEY_CURRENT_USER.
    enum Path : std::int32_t
    {
        eProductRoot = 0,    ///< Software\{company}\{product}
        eVersionRoot = 1,    ///< {product root}\2018
        eLanguageRoot = 2,   ///< {version root}\{language short name}
        eProfilesRoot = 3,   ///< {language root}\Profiles; its default value names the current profile
        eCurrentProfile = 4, ///< {profiles root}\{current profile}
        eApplications = 5,   ///< {language root}\Applications
        eRecentFileList = 6, ///< {language root}\Recent File List
        eSettings = 7,       ///< {language root}\Settings
        eUserConfig = 8,     ///< {settings}\UserConfig
    };

    class ItemIterator;
    class ValueIterator;

    /// Copies own their strings.
    TarvoConfig(const TarvoConfig& other);
    TarvoConfig& operator=(const TarvoConfig& other);
    ~TarvoConfig();

    /// Start-up, see InitVelaConfig.
    Error initial(const wchar_t* company, const wchar_t* product, const wchar_t* language,
                  const wchar_t* profile);

    /// 0 in every state, kept for binary compatibility: take the result of InitVelaConfig instead.
    int isInitialized() const;

    const TarvoLanguage& language() const;
    /// The product name, "TARVO" before start-up; never null.
    const wchar_t* productName() const;
    /// The company name, "NORVIK" before start-up; never null.
    const wchar_t* companyName() const;
    /// The profile name given at start-up, "Default" when none was; never null.
    const wchar_t* profileNameCmdLineInfo() const;

    /// Writes the key path of a subtree into out, which holds 1024 characters: at most 1023 and the
    /// terminator. The result is empty before start-up, for a value outside the enum, for a path that would
    /// pass 1023 characters and for eCurrentProfile without a profiles key. Asking for eCurrentProfile stores
    /// "Default" as the current profile where the profiles key names none.
    void getRegRootPath(Path path, wchar_t* const out) const;

    /// Reads an entry of an INI file in the program folder.
    /// @param section,key the entry, written "[section] key"
    /// @param value       changed only on eOk
    /// @param type        eInt (a negative number counts as missing) or eString (cut to 1021 characters)
    /// @param fileName    file name without folder, such as "TARVO.ini"
    /// @return eOk, eNotFound, eWrongType for any other type, eInvalidInput when the path is too long
    Error getIniValue(const wchar_t* section, const wchar_t* key, VelaVariant& value,
                      VelaVariant::VarType type, const wchar_t* fileName);

    /// 1 when the key exists and can be opened for reading, else 0. One leading separator is dropped, nothing
    /// else normalised. Root and sub-path together may have 1020 characters.
    int isItemExist(Path path, const wchar_t* item);

    /// Reads the value that the last component of valuePath names; what is before it is the sub-path. Root
    /// and sub-path together may have 1020 characters. The stored type decides what value becomes: REG_SZ
    /// eString, REG_BINARY eBinary, REG_DWORD eInt, REG_QWORD eInt64; on failure value keeps what it held.
    /// Throws a RkErrorStatus* of code 6 without memory: before the data has been read value keeps what it
    /// held, afterwards it may be left without a block, as VelaVariant's setters say.
    /// @return eOk, eNotFound, eWrongType (another registry type), eInvalidInput
    Error getValue(Path path, const wchar_t* valuePath, VelaVariant& value) const;
    /// Writes it and creates the key. As addValue, of the sub-path and name that valuePath is split into.
    Error setValue(Path path, const wchar_t* valuePath, const VelaVariant& value);

    /// Reads a value of the sub-key that the iterator stands on.
    /// @return as by path, or what ItemIterator::name answers
    Error getValue(const ItemIterator& item, const wchar_t* valueName, VelaVariant& value) const;
    /// Writes a value of the sub-key that the iterator stands on.
    /// @return eOk, eNotFound (no key, or it cannot be opened for writing), eRegistryError, or what
    ///         ItemIterator::name answers
    Error setValue(ItemIterator& item, const wchar_t* valueName, const VelaVariant& value) const;

    /// Makes sure that a key exists. Root and sub-path together may have 1021 characters.
    /// @return eOk, eInvalidInput, eRegistryError
    Error addItem(Path path, const wchar_t* item);
    /// Writes a value: eInt as REG_DWORD, eInt64 as REG_QWORD, eDouble and eBinary as REG_BINARY, eString as
    /// REG_SZ. The key is created; an eNull and an empty eBinary write no value. Limit as addItem.
    /// @return eOk, eInvalidInput, eNotFound (the key cannot be opened nor created), eRegistryError
    Error addValue(Path path, const wchar_t* item, const wchar_t* valueName, const VelaVariant& value);
    /// Removes a key with everything below it; null or empty removes the subtree's own root key. Root and
    /// parent part together may have 1021 characters. Where the system has no RegDeleteTreeW, keys are
    /// removed one by one, children first, as far as their paths below the parent have at most 519
    /// characters: a longer one gives eRegistryError, and what was removed until then stays removed.
    /// @return eOk, eInvalidInput, eNotFound (no item name, or no parent), eRegistryError
    Error removeItem(Path path, const wchar_t* item);
    /// Removes a value. Limit as addItem.
    /// @return eOk, eInvalidInput, eNotFound (no key), eRegistryError (a missing value included)
    Error removeValue(Path path, const wchar_t* item, const wchar_t* valueName);

    /// Positions an iterator on the first sub-key (or value) of a key, opened with full access. The iterator
    /// is cleared first; a key that it still holds is not closed: assign a default-made one before using it
    /// again. Root and sub-path together may have 1021 characters.
    /// @return eOk, eInvalidInput, eNotFound (the key cannot be opened), eRegistryError; cleared unless eOk
    Error findItem(Path path, const wchar_t* item, ItemIterator& it);
    Error findItem(Path path, const wchar_t* item, ValueIterator& it);

protected:
    TarvoConfig();

    // Company and product.
    Error initCompanyName(const wchar_t* company);
    Error initProductName(const wchar_t* product);
    Error buildRootPathFromCompany();
    Error buildRootPathFromProduct();
    /// Records the current product; non-zero when written.
    int refreshProductName();
    /// out holds 1024 characters.
    Error getIniFilePath(wchar_t* out, const wchar_t* fileName);
    /// At most outChars - 2 characters come back; out is untouched where there is no readable file.
    Error readIniString(const wchar_t* section, const wchar_t* key, wchar_t* out, unsigned long outChars,
                        const wchar_t* fileName);
    /// A missing key gives eNotFound and -1, a negative value eNotFound and that value.
    Error readIniInt(const wchar_t* section, const wchar_t* key, long& out, const wchar_t* fileName);
    bool isInitTARVOProduct();

    // Language.
    Error initLanguageName(const wchar_t* language);
    /// Records the current language; non-zero when written.
    int refreshLanguageName();
    bool isLanguageExist(const wchar_t* shortName);
    bool isLangGuidExist(const wchar_t* guid);
    bool isLangFolderExist(const wchar_t* shortName);
    /// The index of the first installed language in order of preference, or -1.
    long queryAInstalledLangInOrder();
    Error verifyResourcePath();

    // Profile.
    Error initProfileName(const wchar_t* profile);
    /// Reads the current profile name into out (128 characters) from a key path, or from the profiles root
    /// when that is null or empty; stores and gives "Default" where none is named.
    Error getCurrentProfileNameFromReg(wchar_t* const out, const wchar_t* profilesKey) const;

    /// The single instance.
    static TarvoConfig _sg_tarvo_config;

private:
    friend class uinfo::ConfigAccess;

    wchar_t* m_productName; // this and the next two: array-allocated, null until known
    wchar_t* m_companyName;
    wchar_t* m_profileNameCmdLineInfo;
    TarvoLanguage m_language;
    wchar_t* m_rootPath;        // 1024 characters, null until the company is known
    wchar_t* m_versionRootPath; // 1024 characters, null until the product is known
    std::int32_t m_initialized;
};

/// Walks the sub-keys of one key: findItem, then use the entry while name() gives eOk, until step() does not.
///
/// The walk is by index into the live key; the count is taken once, by findItem. The iterator holds the key
/// open until it goes or another is assigned to it. A copy has the other's index and figures and
/// opens the key for itself; where it cannot, as after the key's removal, it holds no key. Distinct iterators
/// may be used from several threads at once.
class TarvoConfig::ItemIterator
{
public:
    RKUINFO_API ItemIterator();
    RKUINFO_API ~ItemIterator();
    ItemIterator(const ItemIterator& other) : ItemIterator() { *this = other; }
    RKUINFO_API ItemIterator& operator=(const ItemIterator& other);

    /// The name of the current sub-key.
    /// @param buffer may be null, to ask for the capacity needed
    /// @param length in: capacity of buffer in characters, terminator counted; out, on eOk and
    ///               eBufferTooSmall: the characters needed, terminator counted (8192 for a name over 1023
    ///               characters, which no buffer receives)
    /// @return eOk, eBufferTooSmall (buffer untouched), eInvalidIterator (length untouched)
    RKUINFO_API Error name(wchar_t* buffer, long& length) const;
    /// Moves to the next index. eInvalidIterator at the end: the walk is over even if the key has grown.
    RKUINFO_API Error step() const;
    /// The number of sub-keys when findItem ran.
    RKUINFO_API long getSubKeyCount() const;

private:
    friend class TarvoConfig;

    HKEY__* m_key;
    mutable std::int32_t m_index;
    std::int32_t m_subKeyCount;
    std::uint32_t m_maxSubKeyNameLength;
    std::uint32_t m_maxClassLength;
};

/// Walks the values of one key. As ItemIterator, with key() for the value's name.
class TarvoConfig::ValueIterator
{
public:
    RKUINFO_API ValueIterator();
    RKUINFO_API ~ValueIterator();
    ValueIterator(const ValueIterator& other) : ValueIterator() { *this = other; }
    RKUINFO_API ValueIterator& operator=(const ValueIterator& other);

    /// The name of the current value, as ItemIterator::name.
    RKUINFO_API Error key(wchar_t* buffer, long& length) const;
    /// Reads the current value, as TarvoConfig::getValue.
    /// @return eOk, eNotFound, eWrongType, or what key() answers
    RKUINFO_API Error value(VelaVariant& out) const;
    /// Writes the current value and keeps its name, as TarvoConfig::addValue.
    /// @return eOk, eRegistryError, or what key() answers
    RKUINFO_API Error setValue(const VelaVariant& v);
    RKUINFO_API Error step() const;

private:
    friend class TarvoConfig;

    HKEY__* m_key;
    mutable std::int32_t m_index;
    std::int32_t m_valueCount;
    std::uint32_t m_maxValueNameLength;
    std::uint32_t m_maxValueDataLength;
};

#pragma pack(pop)
