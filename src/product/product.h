// The product object.
#pragma once

#include <RkOsBase.h>
#include <RkUInfo/ITarvoProduct.h>

#include <cstdint>

namespace uinfo {

/// Answers who the program is. Making it moves a process that was started in the program's own user data
/// cache folder to the user's documents folder.
class TarvoProduct final : public ITarvoProduct
{
public:
    TarvoProduct();

    const wchar_t* productName() override;
    const wchar_t* defaultProductName() override;
    const wchar_t* companyName() override;
    const wchar_t* programVersionString() override;
    const wchar_t* helpFilePath() override;
    const TarvoLanguage& language() override;
    long productType() override;
    long productNumber() override;
    long productFlagA() override;
    long productFlagB() override;
    const wchar_t* productVersionTag() override;
    const wchar_t* userDataCachePath() override;
    long getSharedValueA() override;
    void setSharedValueA(long value) override;
    long getSharedValueB() override;
    void setSharedValueB(long value) override;
    long getSharedValueC() override;
    void setSharedValueC(long value) override;

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

} // namespace uinfo
