// The process's crash recorder.
#include "RkOsBase.h"

#include <atomic>

namespace {

std::atomic<VelaCrashRecorder*> crashRecorder = nullptr;

} // namespace

VelaCrashRecorder* velaGetCrashRecorder()
{
    return crashRecorder.load(std::memory_order_acquire);
}

VelaCrashRecorder* velaSetCrashRecorder(VelaCrashRecorder* recorder)
{
    return crashRecorder.exchange(recorder, std::memory_order_acq_rel);
}
