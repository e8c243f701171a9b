// SPDX-License-Identifier: MIT
// TarvoConfigException: for client modules to throw; the library never does.
#pragma once

#include "RkOsBase.h"
#include "RkUInfo/Export.h"

#include <cstdint>

#pragma pack(push, 8) // makes the layout independent of /Zp

/// Reports that a client could not set up or use the configuration, and whether the process should exit.
/// Thrown as a pointer; the code that catches the exception must delete it.
class RKUINFO_API TarvoConfigException : public RkExceptionWithMsg
{
public:
    /// @param message     message for the user, returned by description()
    /// @param exitProcess returned unchanged by isExitProcess()
    /// @param text,number context of the failure
    TarvoConfigException(const wchar_t* message, int exitProcess, const wchar_t* const text, long number);
    TarvoConfigException(const TarvoConfigException& other);
    ~TarvoConfigException() override;

    /// Returns the exitProcess argument of the constructor, which is non-zero if the process should exit.
    int isExitProcess() const;

private:
    std::int32_t m_exitProcess;
};

#pragma pack(pop)
