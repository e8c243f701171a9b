// A crash recorder that keeps what it is shown.
#pragma once

#include <RkOsBase.h>

#include <vector>

namespace testing_support {

/// The process's recorder for its own life.
class Recorder final : public VelaCrashRecorder
{
public:
    Recorder() : m_before(velaSetCrashRecorder(this)) {}
    Recorder(const Recorder&) = delete;
    ~Recorder() { velaSetCrashRecorder(m_before); }

    void beginSession() override {}
    void endSession() override {}
    void recordText(const wchar_t*) override {}
    void recordException(RkException* exception) override { recorded.push_back(exception); }

    std::vector<RkException*> recorded;

private:
    VelaCrashRecorder* const m_before;
};

} // namespace testing_support
