// Makes a compiler lay out every public class and its virtual table, for a dump of them.
#include <RkUInfo.h>

class Product : public ITarvoProduct
{
public:
    Product();
};

class Recorder : public VelaCrashRecorder
{
public:
    Recorder();
};

Product::Product() {}
Recorder::Recorder() {}

RkException::RkException(const wchar_t*, std::int32_t) {}
RkException::~RkException() {}
RkExceptionWithMsg::RkExceptionWithMsg(const wchar_t* text, std::int32_t number, const wchar_t*)
    : RkException(text, number)
{
}
RkExceptionWithMsg::~RkExceptionWithMsg() {}
RkErrorStatus::RkErrorStatus(Vela::ErrorStatus, const wchar_t* text, std::int32_t number)
    : RkException(text, number)
{
}
RkErrorStatus::~RkErrorStatus() {}
TarvoConfigException::TarvoConfigException(const wchar_t* message, int, const wchar_t* const text, long)
    : RkExceptionWithMsg(text, 0, message)
{
}
TarvoConfigException::~TarvoConfigException() {}

static_assert(sizeof(TarvoConfig) + sizeof(TarvoConfig::ItemIterator) + sizeof(TarvoConfig::ValueIterator) +
                      sizeof(TarvoLanguage) + sizeof(VelaVariant) + sizeof(RkLocker) +
                      sizeof(TarvoConfigException) + sizeof(RkErrorStatus) >
                  0,
              "");
