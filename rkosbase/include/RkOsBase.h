// SPDX-License-Identifier: MIT
// RkOsBase: the part of the product family's base library that RkUInfo and its clients use.
//
// Everything here is plain C++14. Exceptions of this family are created on the heap, thrown as pointers, and
// deleted by the code that catches them.
#pragma once

#include <cstdint>

#if defined(_WIN32)
#if defined(RKOSBASE_BUILD)
#define RKOSBASE_API __declspec(dllexport)
#else
#define RKOSBASE_API __declspec(dllimport)
#endif
#else
#define RKOSBASE_API __attribute__((visibility("default")))
#endif

#pragma pack(push, 8) // makes the layout independent of /Zp

namespace Vela {

/// Status codes carried by RkErrorStatus.
enum ErrorStatus : std::int32_t
{
    eOk = 0,
    eInvalidInput = 3, ///< a block of an impossible size or type was requested
    eOutOfMemory = 6,  ///< a block could not be allocated
};

} // namespace Vela

/// Root of the exception family. Virtual slot order: destructor, description, code, className.
///
/// An exception never allocates memory: it stores the first textCapacity - 1 characters of its text.
class RKOSBASE_API RkException
{
public:
    static const int textCapacity = 260;

    /// @param text   context of the failure, may be null
    /// @param number context of the failure, such as a line or an index
    RkException(const wchar_t* text, std::int32_t number);
    RkException(const RkException& other);
    RkException& operator=(const RkException& other);
    virtual ~RkException();

    /// Returns the message for the user (in this class, the context text); never null.
    virtual const wchar_t* description() const;
    /// Returns the status code, which is 0 unless a derived class overrides this function.
    virtual std::int32_t code() const;
    /// Returns the name of the class.
    virtual const wchar_t* className() const;

    /// Returns the context text; never null.
    const wchar_t* text() const;
    /// Returns the context number.
    std::int32_t number() const;

private:
    wchar_t m_text[textCapacity];
    std::int32_t m_number;

protected:
    std::int32_t m_reserved =
        0; // fills the trailing padding, where some compilers would place members of a derived class
};

/// An exception whose description() returns a message for the user.
class RKOSBASE_API RkExceptionWithMsg : public RkException
{
public:
    /// @param text,number context of the failure, as in RkException
    /// @param message     message for the user, may be null; truncated like the context text
    RkExceptionWithMsg(const wchar_t* text, std::int32_t number, const wchar_t* message);
    RkExceptionWithMsg(const RkExceptionWithMsg& other);
    RkExceptionWithMsg& operator=(const RkExceptionWithMsg& other);
    ~RkExceptionWithMsg() override;

    const wchar_t* description() const override;

private:
    wchar_t m_message[textCapacity];
};

/// An exception that carries a status code.
class RKOSBASE_API RkErrorStatus : public RkException
{
public:
    RkErrorStatus(Vela::ErrorStatus status, const wchar_t* text, std::int32_t number);
    RkErrorStatus(const RkErrorStatus& other);
    RkErrorStatus& operator=(const RkErrorStatus& other);
    ~RkErrorStatus() override;

    std::int32_t code() const override;
    const wchar_t* className() const override;

private:
    Vela::ErrorStatus m_status;
};

/// A lock for short critical sections.
class RKOSBASE_API RkLocker
{
public:
    RkLocker();
    ~RkLocker(); // NOLINT(performance-trivially-destructible): exported, so part of the binary interface
    RkLocker(const RkLocker&) = delete;
    RkLocker& operator=(const RkLocker&) = delete;

    /// Acquires the lock, waiting if necessary. Not recursive: a second call by the thread that holds the
    /// lock never returns.
    void lock();
    /// Releases the lock, which this thread must hold.
    void unlock();

private:
    void* m_mutex;
};

/// The interface of a crash recorder. The destructor is not virtual: with some compilers, a virtual
/// destructor would move recordException out of the fourth virtual slot.
class VelaCrashRecorder
{
public:
    virtual void beginSession() = 0;
    virtual void endSession() = 0;
    virtual void recordText(const wchar_t* text) = 0;
    /// Called with an exception that is about to be thrown; the recorder must not keep the pointer.
    virtual void recordException(RkException* exception) = 0;

protected:
    VelaCrashRecorder() = default;
    VelaCrashRecorder(const VelaCrashRecorder&) = default;
    VelaCrashRecorder& operator=(const VelaCrashRecorder&) = default;
    ~VelaCrashRecorder() = default;
};

/// Returns the process's crash recorder, or null if none is installed. May be called from any thread.
RKOSBASE_API VelaCrashRecorder* velaGetCrashRecorder();

/// Replaces the process's crash recorder and returns the previous one. A null argument removes the recorder.
/// The caller keeps ownership and must remove the recorder before destroying it.
RKOSBASE_API VelaCrashRecorder* velaSetCrashRecorder(VelaCrashRecorder* recorder);

/// Returns the major version of Windows: 10 on Windows 10 and 11, and 8 on Windows 8 and 8.1. Stores
/// the version numbers that Windows reports, such as 6.2 on Windows 8. Any of the pointers may be null.
RKOSBASE_API int velaGetWindowsVersion(unsigned long* major, unsigned long* minor, unsigned long* build);

#pragma pack(pop)
