#include "last_error.h"

#include <cerrno>

namespace {

thread_local DWORD lastError = ERROR_SUCCESS;

} // namespace

DWORD GetLastError()
{
    return lastError;
}

void SetLastError(DWORD error)
{
    lastError = error;
}

DWORD winhost::errorOf(int hostError, DWORD fallback)
{
    switch (hostError) {
    case ENOENT:
        return ERROR_FILE_NOT_FOUND;
    case ENOTDIR:
        return ERROR_DIRECTORY;
    case ENAMETOOLONG:
        return ERROR_FILENAME_EXCED_RANGE;
    case EMFILE:
    case ENFILE:
        return ERROR_TOO_MANY_OPEN_FILES;
    case ENOMEM:
        return ERROR_NOT_ENOUGH_MEMORY;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return ERROR_DISK_FULL;
    case EACCES:
    case EPERM:
    case EROFS:
        return ERROR_ACCESS_DENIED;
    default:
        return fallback;
    }
}
