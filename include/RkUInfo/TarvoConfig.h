// SPDX-License-Identifier: MIT
// TarvoConfig: the names that identify the process, and the typed configuration store in the registry.
#pragma once

#include "RkUInfo/Export.h"
#include "RkUInfo/TarvoLanguage.h"
#include "RkUInfo/VelaVariant.h"

#include <cstdint>

namespace uinfo {
class ConfigAccess;
}

#pragma pack(push, 8) // makes the layout independent of /Zp

/// The process-wide configuration object. Stores the company, product, language and user profile, and reads
/// and changes the user's configuration tree under HKEY_CURRENT_USER.
///
/// The launcher must call InitVelaConfig before any other thread uses the object; afterwards its fields are
/// only read, and every operation may be called from any thread. Before start-up, the names are the built-in
/// defaults. Until start-up succeeds, operations on the tree return eInvalidInput, and isItemExist returns 0.
///
/// An item is a registry key; a value is a registry value in an item. An operation addresses an item by a
/// Path and a sub-path with '/' or '\' as separators; a null or empty sub-path means the Path's own key. A
/// null or empty value name means the default value. For a path of 1024 characters or more, operations return
/// eInvalidInput, and isItemExist returns 0. Only the registry limits the length of a value name that is
/// passed as a separate argument.
class RKUINFO_API TarvoConfig
{
public:
    /// The result of every operation that can fail. The value 3 is not assigned.
    enum Error : std::int32_t
    {
        eOk = 0,
        eNotFound = 1,        ///< a name is missing, or a key, value, INI file or entry does not exist
        eWrongType = 2,       ///< the type is not supported, or the value has another type
        eInvalidIterator = 4, ///< the iterator holds no key or is past its end
        eRegistryError = 5,   ///< a registry operation failed; see InitVelaConfig for start-up
        eBufferTooSmall = 6,  ///< the required length is returned
        eInvalidInput = 7,    ///< a name or path exceeds its limit, or start-up has not succeeded
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

    /// Creates a deep copy, with copies of the strings.
    TarvoConfig(const TarvoConfig& other);
    TarvoConfig& operator=(const TarvoConfig& other);
    ~TarvoConfig();

    /// Runs start-up; see InitVelaConfig.
    Error initial(const wchar_t* company, const wchar_t* product, const wchar_t* language,
                  const wchar_t* profile);

    /// Returns 0 in every state, for binary compatibility: use the result of InitVelaConfig instead.
    int isInitialized() const;

    /// Returns the current language, or the unknown language before start-up.
    const TarvoLanguage& language() const;
    /// Returns the product name, or "TARVO" before start-up; never null.
    const wchar_t* productName() const;
    /// Returns the company name, or "NORVIK" before start-up; never null.
    const wchar_t* companyName() const;
    /// Returns the profile argument of start-up, or "Default" if there was none; never null.
    const wchar_t* profileNameCmdLineInfo() const;

    /// Writes the key path of a subtree into out, which holds 1024 characters. Writes the empty string for a
    /// value outside the enum, for a path of more than 1023 characters, for eCurrentProfile without a
    /// profiles key, and before start-up. For eCurrentProfile, stores "Default" as the current profile if no
    /// name is stored.
    void getRegRootPath(Path path, wchar_t* const out) const;

    /// Reads an entry of an INI file in the program folder.
    /// @param section,key the entry, written "[section] key"
    /// @param value       unchanged unless the result is eOk
    /// @param type        eInt (a negative number counts as missing) or eString (cut to 1021 characters)
    /// @param fileName    file name without folder, such as "TARVO.ini"
    /// @return eOk, eNotFound, eWrongType for any other type, eInvalidInput if the path is too long
    Error getIniValue(const wchar_t* section, const wchar_t* key, VelaVariant& value,
                      VelaVariant::VarType type, const wchar_t* fileName);

    /// Returns 1 if the key exists and can be opened for reading, otherwise 0. Ignores one leading separator
    /// and does not normalise the rest. The root and the sub-path together can have at most 1020 characters;
    /// a leading separator counts.
    int isItemExist(Path path, const wchar_t* item);

    /// Reads a value. The last component of valuePath is the value's name; the part before it is the
    /// sub-path. The root and the sub-path together can have at most 1020 characters. Converts REG_SZ to
    /// eString, REG_BINARY to eBinary, REG_DWORD to eInt, and REG_QWORD to eInt64. On failure, `value` is
    /// unchanged. If memory is exhausted, throws an RkErrorStatus* with code 6 and may leave `value` without
    /// a block (see VelaVariant's setters).
    /// @return eOk, eNotFound, eWrongType (another registry type), eInvalidInput
    Error getValue(Path path, const wchar_t* valuePath, VelaVariant& value) const;
    /// Writes a value as addValue does. Splits valuePath as getValue does.
    Error setValue(Path path, const wchar_t* valuePath, const VelaVariant& value);

    /// Reads a value of the iterator's current sub-key.
    /// @return the results of getValue(Path, ...), or an error of ItemIterator::name
    Error getValue(const ItemIterator& item, const wchar_t* valueName, VelaVariant& value) const;
    /// Writes a value of the iterator's current sub-key.
    /// @return eOk, eNotFound (the iterator has no key, or the sub-key cannot be opened for writing),
    ///         eRegistryError, or an error of ItemIterator::name
    Error setValue(ItemIterator& item, const wchar_t* valueName, const VelaVariant& value) const;

    /// Opens a key for writing, or creates it. The root and the sub-path together can have at most 1021
    /// characters.
    /// @return eOk, eInvalidInput, eRegistryError
    Error addItem(Path path, const wchar_t* item);
    /// Writes a value: eInt as REG_DWORD, eInt64 as REG_QWORD, eDouble and eBinary as REG_BINARY, eString as
    /// REG_SZ. Creates the key if it does not exist. Writes no value for an eNull or an empty eBinary. The
    /// root and the sub-path together can have at most 1021 characters.
    /// @return eOk, eInvalidInput, eNotFound (the key can be neither opened nor created), eRegistryError
    Error addValue(Path path, const wchar_t* item, const wchar_t* valueName, const VelaVariant& value);
    /// Removes a key and everything below it; a null or empty item means the subtree's own key. The root and
    /// the parent's path together can have at most 1021 characters. Before Windows 8, removes the keys one
    /// by one, children first, and returns eRegistryError if a key's path relative to the parent has more
    /// than 519 characters. Keys that have already been removed are not restored.
    /// @return eOk, eInvalidInput, eNotFound (no item name, or no parent), eRegistryError
    Error removeItem(Path path, const wchar_t* item);
    /// Removes a value. The root and the sub-path together can have at most 1021 characters.
    /// @return eOk, eInvalidInput, eNotFound (no key), eRegistryError (also if the value is missing)
    Error removeValue(Path path, const wchar_t* item, const wchar_t* valueName);

    /// Opens a key with full access and positions an iterator on its first sub-key or value. Does not close
    /// the iterator's old key: to reuse an iterator, first assign a default-constructed one to it. On
    /// failure, the iterator has no key. The root and the sub-path together can have at most 1021 characters.
    /// @return eOk, eInvalidInput, eNotFound (the key cannot be opened), eRegistryError
    Error findItem(Path path, const wchar_t* item, ItemIterator& it);
    Error findItem(Path path, const wchar_t* item, ValueIterator& it);

protected:
    TarvoConfig();

    // Company and product.
    Error initCompanyName(const wchar_t* company);
    Error initProductName(const wchar_t* product);
    Error buildRootPathFromCompany();
    Error buildRootPathFromProduct();
    /// Stores the name of the current product; returns non-zero on success.
    int refreshProductName();
    /// Writes an INI file's path into out, which holds 1024 characters.
    Error getIniFilePath(wchar_t* out, const wchar_t* fileName);
    /// Reads at most outChars - 2 characters. If the file cannot be read, out is unchanged.
    Error readIniString(const wchar_t* section, const wchar_t* key, wchar_t* out, unsigned long outChars,
                        const wchar_t* fileName);
    /// Reads a number into out; a missing key is read as -1. Returns eNotFound if the number is negative. If
    /// the file cannot be read, out is unchanged.
    Error readIniInt(const wchar_t* section, const wchar_t* key, long& out, const wchar_t* fileName);
    bool isInitTARVOProduct();

    // Language.
    Error initLanguageName(const wchar_t* language);
    /// Stores the name of the current language; returns non-zero on success.
    int refreshLanguageName();
    bool isLanguageExist(const wchar_t* shortName);
    bool isLangGuidExist(const wchar_t* guid);
    bool isLangFolderExist(const wchar_t* shortName);
    /// Returns the index of the first installed language in order of preference, or -1.
    long queryAInstalledLangInOrder();
    Error verifyResourcePath();

    // Profile.
    Error initProfileName(const wchar_t* profile);
    /// Writes the current profile name into out, which holds 128 characters. Reads the name from
    /// `profilesKey`, or from the profiles root if `profilesKey` is null or empty. If the key does not name a
    /// profile, stores and returns "Default".
    Error getCurrentProfileNameFromReg(wchar_t* const out, const wchar_t* profilesKey) const;

    /// The single instance.
    static TarvoConfig _sg_tarvo_config;

private:
    friend class uinfo::ConfigAccess;

    // The three names are allocated with new[], and are null until known.
    wchar_t* m_productName;
    wchar_t* m_companyName;
    wchar_t* m_profileNameCmdLineInfo;
    TarvoLanguage m_language;
    wchar_t* m_rootPath;        // a buffer of 1024 characters; null until the company is known
    wchar_t* m_versionRootPath; // a buffer of 1024 characters; null until the product is known
    std::int32_t m_initialized;
};

/// Walks the sub-keys of one key: call findItem, then name() and step() for as long as both return eOk.
///
/// The iterator does not copy the sub-keys: name() reads the sub-key that currently has the iterator's index.
/// The key stays open until the iterator is destroyed or assigned to. A copy has the same index and count,
/// and opens the key again. If the key cannot be opened (for example, because it has been removed), the copy
/// holds no key. Several threads may use iterators at once if no two of them use the same iterator.
class TarvoConfig::ItemIterator
{
public:
    RKUINFO_API ItemIterator();
    RKUINFO_API ~ItemIterator();
    ItemIterator(const ItemIterator& other) : ItemIterator() { *this = other; }
    RKUINFO_API ItemIterator& operator=(const ItemIterator& other);

    /// Copies the name of the current sub-key.
    /// @param buffer may be null, to query the capacity needed
    /// @param length in: the capacity of buffer, including the terminator; out: the capacity needed, set on
    ///               eOk and eBufferTooSmall; 8192 for a name of more than 1023 characters, which is never
    ///               copied
    /// @return eOk, eBufferTooSmall (buffer unchanged), eInvalidIterator (length unchanged)
    RKUINFO_API Error name(wchar_t* buffer, long& length) const;
    /// Moves to the next index. Returns eInvalidIterator if the index has reached the number of sub-keys that
    /// findItem found.
    RKUINFO_API Error step() const;
    /// Returns the number of sub-keys that findItem found.
    RKUINFO_API long getSubKeyCount() const;

private:
    friend class TarvoConfig;

    HKEY__* m_key;
    mutable std::int32_t m_index;
    std::int32_t m_subKeyCount;
    std::uint32_t m_maxSubKeyNameLength;
    std::uint32_t m_maxClassLength;
};

/// Walks the values of one key. Behaves like an ItemIterator, but has key() instead of name().
class TarvoConfig::ValueIterator
{
public:
    RKUINFO_API ValueIterator();
    RKUINFO_API ~ValueIterator();
    ValueIterator(const ValueIterator& other) : ValueIterator() { *this = other; }
    RKUINFO_API ValueIterator& operator=(const ValueIterator& other);

    /// Copies the name of the current value; see ItemIterator::name for the parameters and results.
    RKUINFO_API Error key(wchar_t* buffer, long& length) const;
    /// Reads the current value; TarvoConfig::getValue describes the types.
    /// @return eOk, eNotFound, eWrongType, or an error of key()
    RKUINFO_API Error value(VelaVariant& out) const;
    /// Overwrites the current value; TarvoConfig::addValue describes the types.
    /// @return eOk, eRegistryError, or an error of key()
    RKUINFO_API Error setValue(const VelaVariant& v);
    /// Moves to the next index; see ItemIterator::step.
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
