// SPDX-License-Identifier: MIT
// ITarvoProduct: the product object's interface.
#pragma once

class TarvoLanguage;

#pragma pack(push, 8) // whatever /Zp says

/// What velaGetProduct() gives. Clients call it by slot, in this order, and never delete it; texts belong to
/// the library. Every operation may be called from any thread.
class ITarvoProduct
{
public:
    virtual const wchar_t* productName() = 0;
    /// Always "TARVO".
    virtual const wchar_t* defaultProductName() = 0;
    virtual const wchar_t* companyName() = 0;
    /// Always "2018".
    virtual const wchar_t* programVersionString() = 0;
    /// The help viewer's full path, kept once found; "RKHelp.exe" while it cannot be.
    virtual const wchar_t* helpFilePath() = 0;
    virtual const TarvoLanguage& language() = 0;
    /// By the product's name, ignoring case: 1 for TARVO, 2 for TARVOM, 3 for TARVOA, 4 for any other.
    virtual long productType() = 0;
    /// Always 27.
    virtual long productNumber() = 0;
    /// Always 1.
    virtual long productFlagA() = 0;
    /// Always 1.
    virtual long productFlagB() = 0;
    /// Always "4.0".
    virtual const wchar_t* productVersionTag() = 0;
    /// The folder "UserDataCache" beside the program, without trailing backslash, kept once found; empty
    /// while it cannot be, or where it does not fit 259 characters.
    virtual const wchar_t* userDataCachePath() = 0;

    // Three 32-bit integers that client modules share; -1, 0 and 1 at load.
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
