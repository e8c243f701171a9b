// SPDX-License-Identifier: MIT
// ITarvoProduct: the product object's interface.
#pragma once

class TarvoLanguage;

#pragma pack(push, 8) // makes the layout independent of /Zp

/// The object that velaGetProduct() returns. The order of the virtual functions is fixed. Clients must never
/// delete the object. Returned strings belong to the library. Every function may be called from any thread.
class ITarvoProduct
{
public:
    /// Returns TarvoConfig::productName.
    virtual const wchar_t* productName() = 0;
    /// Returns "TARVO".
    virtual const wchar_t* defaultProductName() = 0;
    /// Returns TarvoConfig::companyName.
    virtual const wchar_t* companyName() = 0;
    /// Returns "2018".
    virtual const wchar_t* programVersionString() = 0;
    /// Returns the help viewer's full path, cached after the first success; "RKHelp.exe" until then.
    virtual const wchar_t* helpFilePath() = 0;
    /// Returns TarvoConfig::language.
    virtual const TarvoLanguage& language() = 0;
    /// Returns 1 for the product name TARVO, 2 for TARVOM, 3 for TARVOA, 4 for any other, ignoring case.
    virtual long productType() = 0;
    /// Returns 27.
    virtual long productNumber() = 0;
    /// Returns 1.
    virtual long productFlagA() = 0;
    /// Returns 1.
    virtual long productFlagB() = 0;
    /// Returns "4.0".
    virtual const wchar_t* productVersionTag() = 0;
    /// Returns the path of "UserDataCache" in the program folder, without a trailing backslash. The path is
    /// cached after the first success. Returns the empty string on failure, for example if the path has more
    /// than 259 characters.
    virtual const wchar_t* userDataCachePath() = 0;

    // Three 32-bit integers that client modules share; initially -1, 0 and 1. If long has 64 bits, a setter
    // stores the low 32 bits.
    virtual long getSharedValueA() = 0;
    virtual void setSharedValueA(long value) = 0;
    virtual long getSharedValueB() = 0;
    virtual void setSharedValueB(long value) = 0;
    virtual long getSharedValueC() = 0;
    virtual void setSharedValueC(long value) = 0;

protected:
    ITarvoProduct() = default;
    ITarvoProduct(const ITarvoProduct&) = default;
    ITarvoProduct& operator=(const ITarvoProduct&) = default;
    ~ITarvoProduct() = default;
};

#pragma pack(pop)
