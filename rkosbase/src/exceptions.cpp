// The exception family.
#include "RkOsBase.h"

#include <cstddef>

namespace {

/// Copies as many characters as fit, and adds a terminator. Null counts as the empty string.
template <std::size_t Capacity>
void copyText(wchar_t (&target)[Capacity], const wchar_t* text)
{
    std::size_t count = 0;
    while (text != nullptr && text[count] != 0 && count < Capacity - 1) {
        target[count] = text[count];
        ++count;
    }
    target[count] = 0;
}

} // namespace

RkException::RkException(const wchar_t* text, std::int32_t number) : m_number(number)
{
    copyText(m_text, text);
}

RkException::RkException(const RkException& other) = default;
RkException& RkException::operator=(const RkException& other) = default;
RkException::~RkException() = default;

const wchar_t* RkException::description() const
{
    return m_text;
}

std::int32_t RkException::code() const
{
    return 0;
}

const wchar_t* RkException::className() const
{
    return L"RkException";
}

const wchar_t* RkException::text() const
{
    return m_text;
}

std::int32_t RkException::number() const
{
    return m_number;
}

RkExceptionWithMsg::RkExceptionWithMsg(const wchar_t* text, std::int32_t number, const wchar_t* message)
    : RkException(text, number)
{
    copyText(m_message, message);
}

RkExceptionWithMsg::RkExceptionWithMsg(const RkExceptionWithMsg& other) = default;
RkExceptionWithMsg& RkExceptionWithMsg::operator=(const RkExceptionWithMsg& other) = default;
RkExceptionWithMsg::~RkExceptionWithMsg() = default;

const wchar_t* RkExceptionWithMsg::description() const
{
    return m_message;
}

RkErrorStatus::RkErrorStatus(Vela::ErrorStatus status, const wchar_t* text, std::int32_t number)
    : RkException(text, number), m_status(status)
{
}

RkErrorStatus::RkErrorStatus(const RkErrorStatus& other) = default;
RkErrorStatus& RkErrorStatus::operator=(const RkErrorStatus& other) = default;
RkErrorStatus::~RkErrorStatus() = default;

std::int32_t RkErrorStatus::code() const
{
    return m_status;
}

const wchar_t* RkErrorStatus::className() const
{
    return L"RkErrorStatus";
}
