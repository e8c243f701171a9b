#include <RkUInfo/TarvoConfigException.h>

TarvoConfigException::TarvoConfigException(const wchar_t* message, int exitProcess, const wchar_t* const text,
                                           long number)
    : RkExceptionWithMsg(text, static_cast<std::int32_t>(number), message), m_exitProcess(exitProcess)
{
}

TarvoConfigException::TarvoConfigException(const TarvoConfigException& other) = default;

TarvoConfigException::~TarvoConfigException() = default;

int TarvoConfigException::isExitProcess() const
{
    return m_exitProcess;
}
