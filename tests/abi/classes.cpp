// Uses every public class, so that the compiler dumps the layout and virtual table of each class.
#include <RkUInfo.h>

void layOut(ITarvoProduct& product, VelaCrashRecorder& recorder, const RkException* root,
            const RkExceptionWithMsg* message, const RkErrorStatus* status,
            const TarvoConfigException* config)
{
    product.productName();
    recorder.beginSession();
    delete root;
    delete message;
    delete status;
    delete config;
}
