#include "installation/choices.h"

#include "installation/ini_files.h"
#include "installation/names.h"

namespace {

using uinfo::Answer;
using uinfo::BoundedText;
using uinfo::Choice;
using uinfo::RegistryKey;
using uinfo::Source;

constexpr std::size_t longestName = uinfo::nameCapacity - 1; // the longest company or product argument
constexpr std::size_t storedNameCapacity = uinfo::nameCapacity + 1;
constexpr std::size_t storedLanguageCapacity = 8;
constexpr unsigned long iniNameCapacity = uinfo::nameCapacity; // reads at most 253 characters
constexpr unsigned long iniLanguageCapacity = 7;               // reads at most 5 characters

// Each function named try... reads one source, records the result, and returns whether it contains a name.

bool note(Choice& choice, Source source, const wchar_t* name, Answer answer)
{
    choice.found[choice.count++] = {source, name, answer};
    return answer == Answer::chosen;
}

bool tryArgument(Choice& choice, const wchar_t* argument, std::size_t longest)
{
    if (uinfo::isEmpty(argument)) {
        return note(choice, Source::argument, nullptr, Answer::absent);
    }
    choice.given = argument;
    note(choice, Source::argument, nullptr,
         uinfo::length(argument) <= longest ? Answer::chosen : Answer::tooLong);
    return true;
}

bool tryStored(Choice& choice, const wchar_t* key, const wchar_t* valueName, std::size_t capacity)
{
    BoundedText name(choice.text.data(), capacity);
    const RegistryKey opened = RegistryKey::open(HKEY_CURRENT_USER, key, KEY_READ);
    const Answer answer =
        valueName != nullptr ? uinfo::readName(opened, valueName, name) : uinfo::readProfile(opened, name);
    return note(choice, Source::registry, valueName, answer);
}

bool tryIniEntry(Choice& choice, const wchar_t* folder, const wchar_t* section, const wchar_t* key,
                 unsigned long capacity)
{
    const bool isFound = uinfo::readIniText(folder, section, key, choice.text.data(), capacity,
                                            uinfo::tarvoIni) == TarvoConfig::eOk;
    return note(choice, Source::iniFile, key, isFound ? Answer::chosen : Answer::absent);
}

bool tryBuiltIn(Choice& choice, const wchar_t* name)
{
    choice.given = name;
    return note(choice, Source::builtIn, nullptr, Answer::chosen);
}

Answer readStored(const RegistryKey& key, const wchar_t* valueName, BoundedText& name, bool ofAnyType)
{
    DWORD type = REG_NONE;
    const LSTATUS status = key ? key.queryText(valueName, name, type) : ERROR_FILE_NOT_FOUND;
    if (status == ERROR_FILE_NOT_FOUND) {
        return Answer::absent;
    }
    if (status == ERROR_MORE_DATA) {
        return Answer::tooLong;
    }
    if (status != ERROR_SUCCESS) {
        return Answer::unreadable;
    }
    if (!ofAnyType && type != REG_SZ) {
        name.cut(0);
        return Answer::otherType;
    }
    return name.empty() ? Answer::empty : Answer::chosen;
}

} // namespace

namespace uinfo {

Answer readProfile(const RegistryKey& profiles, BoundedText& name)
{
    return readStored(profiles, nullptr, name, true);
}

Answer readName(const RegistryKey& key, const wchar_t* valueName, BoundedText& name)
{
    return readStored(key, valueName, name, false);
}

Choice chooseCompany(const wchar_t* argument, const wchar_t* programFolder)
{
    Choice choice;
    if (!tryArgument(choice, argument, longestName) &&
        !tryIniEntry(choice, programFolder, productSection, companyNameKey, iniNameCapacity)) {
        tryBuiltIn(choice, defaultCompany);
    }
    return choice;
}

Choice chooseProduct(const wchar_t* argument, const wchar_t* companyRoot, const wchar_t* programFolder)
{
    Choice choice;
    if (!tryArgument(choice, argument, longestName) &&
        !tryStored(choice, companyRoot, currentProductValue, storedNameCapacity) &&
        !tryIniEntry(choice, programFolder, productSection, productNameKey, iniNameCapacity)) {
        tryBuiltIn(choice, defaultProduct);
    }
    return choice;
}

LanguageChoice chooseLanguage(const wchar_t* argument, const wchar_t* versionRoot,
                              const wchar_t* programFolder, bool needsEntry)
{
    LanguageChoice choice;
    if (!tryArgument(choice, argument, anyLength) &&
        !tryStored(choice, versionRoot, currentLanguageValue, storedLanguageCapacity) &&
        tryIniEntry(choice, programFolder, productSection, localeIdKey, iniLanguageCapacity)) {
        const auto localeId = choice.text;
        tryIniEntry(choice, programFolder, localeNamesSection, localeId.data(), iniLanguageCapacity);
        choice.found[choice.count - 1].name = localeNamesSection;
    }
    if (choice.isMade()) {
        choice.language = findLanguage(choice.value());
        Answer& answer = choice.found[choice.count - 1].answer;
        if (choice.language == unknownLanguage) {
            answer = Answer::notALanguage;
        } else {
            choice.installed = installed(programFolder, languages[choice.language], needsEntry);
            answer = choice.installed == Installed::yes ? Answer::chosen : Answer::notInstalled;
        }
    }
    return choice;
}

Choice chooseProfile(const wchar_t* argument, const wchar_t* profilesRoot)
{
    Choice choice;
    if (!tryArgument(choice, argument, anyLength) &&
        !tryStored(choice, profilesRoot, nullptr, profileCapacity)) {
        tryBuiltIn(choice, defaultProfile);
    }
    return choice;
}

bool isDefaultProduct(const wchar_t* company, const wchar_t* product)
{
    return equalIgnoringCase(company, initialCompany) && equalIgnoringCase(product, defaultProduct);
}

std::int32_t productType(const wchar_t* product)
{
    constexpr const wchar_t* byType[] = {L"TARVO", L"TARVOM", L"TARVOA"};
    std::int32_t type = 1;
    for (const wchar_t* const name : byType) {
        if (equalIgnoringCase(product, name)) {
            break;
        }
        ++type;
    }
    return type;
}

} // namespace uinfo
