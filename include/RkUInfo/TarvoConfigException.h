// SPDX-License-Identifier: MIT
// TarvoConfigException: for client modules to throw; the library never does.
#pragma once

#include "RkOsBase.h"
#include "RkUInfo/Export.h"

#include <cstdint>

#pragma pack(push, 8) // whatever /Zp says

/// A failure while setting up or using the configuration, with a flag that tells the catcher whether the
/// process is to end. Thrown by pointer; the catcher deletes it.
class RKUINFO_API TarvoConfigException : public RkExceptionWithMsg
{
public:
    /// @param message     text for the user, which description() gives
    /// @param exitProcess comes back from isExitProcess() unchanged
    /// @param text,number context of the failure
    TarvoConfigException(const wchar_t* message, int exitProcess, const wchar_t* const text, long number);
    TarvoConfigException(const TarvoConfigException& other);
    ~TarvoConfigException() override;

    int isExitProcess() const;

private:
    std::int32_t m_exitProcess;
};

#pragma pack(pop)
