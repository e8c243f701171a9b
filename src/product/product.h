// The product object.
#pragma once

#include "config/access.h"
#include "installation/names.h"

#include <RkOsBase.h>
#include <RkUInfo/ITarvoProduct.h>

#include <cstdint>

namespace uinfo {

/// Implements ITarvoProduct. If the working directory is the user data cache folder, the constructor changes
/// it to the user's documents folder.
class TarvoProduct final : public ITarvoProduct
{
public:
    TarvoProduct();

    const wchar_t* productName() override { return ConfigAccess::instance().productName(); }
    const wchar_t* defaultProductName() override { return defaultProduct; }
    const wchar_t* companyName() override { return ConfigAccess::instance().companyName(); }
    const wchar_t* programVersionString() override { return versionSegment; }
    const wchar_t* helpFilePath() override;
    const TarvoLanguage& language() override { return ConfigAccess::instance().language(); }
    long productType() override;
    long productNumber() override { return 27; }
    long productFlagA() override { return 1; }
    long productFlagB() override { return 1; }
    const wchar_t* productVersionTag() override { return L"4.0"; }
    const wchar_t* userDataCachePath() override;
    long getSharedValueA() override { return readShared(m_sharedValueA); }
    void setSharedValueA(long value) override { writeShared(m_sharedValueA, value); }
    long getSharedValueB() override { return readShared(m_sharedValueB); }
    void setSharedValueB(long value) override { writeShared(m_sharedValueB, value); }
    long getSharedValueC() override { return readShared(m_sharedValueC); }
    void setSharedValueC(long value) override { writeShared(m_sharedValueC, value); }

private:
    long readShared(const std::int32_t& value);
    void writeShared(std::int32_t& value, long newValue);

    std::int32_t m_productType = 1;
    wchar_t m_helpFilePath[512] = {};
    wchar_t m_userDataCachePath[260] = {};
    std::int32_t m_sharedValueA = -1;
    std::int32_t m_sharedValueB = 0;
    std::int32_t m_sharedValueC = 1;
    RkLocker m_lock;
};

/// The single instance, which velaGetProduct() returns.
TarvoProduct& theProduct();

} // namespace uinfo
