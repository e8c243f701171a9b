// For hosts other than Windows: the Win32 declarations that the library, its examples, tools and tests use.
// Names, values, widths and contracts are those of Windows; see ../README.md for the differences.
#pragma once

#include <cstddef>
#include <cstdint>

#include "winhost/api.h"

// ---- Types --------------------------------------------------------------------------------------

#define WINAPI

using BYTE = std::uint8_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using ULONGLONG = std::uint64_t;
using UINT = std::uint32_t;
using INT = std::int32_t;
using BOOL = std::int32_t;
using WCHAR = wchar_t;
using LSTATUS = LONG;
using HRESULT = LONG;
using REGSAM = DWORD;
using ULONG_PTR = std::uintptr_t;
using LPVOID = void*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;
using LPCSTR = const char*;
using HANDLE = void*;

struct HKEY__;
struct HINSTANCE__;
struct HWND__;
using HKEY = HKEY__*;
using PHKEY = HKEY*;
using HINSTANCE = HINSTANCE__*;
using HMODULE = HINSTANCE;
using HWND = HWND__*;
using FARPROC = std::intptr_t (*)();

struct FILETIME
{
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

struct SECURITY_ATTRIBUTES
{
    DWORD nLength;
    void* lpSecurityDescriptor;
    BOOL bInheritHandle;
};

#define TRUE 1
#define FALSE 0
#define MAX_PATH 260
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(-1)))

// ---- Errors -------------------------------------------------------------------------------------

#define ERROR_SUCCESS 0
#define ERROR_FILE_NOT_FOUND 2
#define ERROR_PATH_NOT_FOUND 3
#define ERROR_TOO_MANY_OPEN_FILES 4
#define ERROR_ACCESS_DENIED 5
#define ERROR_INVALID_HANDLE 6
#define ERROR_NOT_ENOUGH_MEMORY 8
#define ERROR_OUTOFMEMORY 14
#define ERROR_WRITE_FAULT 29
#define ERROR_READ_FAULT 30
#define ERROR_SHARING_VIOLATION 32
#define ERROR_INVALID_PARAMETER 87
#define ERROR_DISK_FULL 112
#define ERROR_INSUFFICIENT_BUFFER 122
#define ERROR_INVALID_NAME 123
#define ERROR_MOD_NOT_FOUND 126
#define ERROR_PROC_NOT_FOUND 127
#define ERROR_BAD_PATHNAME 161
#define ERROR_LOCK_FAILED 167
#define ERROR_BAD_EXE_FORMAT 193
#define ERROR_FILENAME_EXCED_RANGE 206
#define ERROR_FILE_TOO_LARGE 223
#define ERROR_MORE_DATA 234
#define ERROR_NO_MORE_ITEMS 259
#define ERROR_DIRECTORY 267
#define ERROR_NOACCESS 998
#define ERROR_BADDB 1009
#define ERROR_CANTOPEN 1011
#define ERROR_CANTREAD 1012
#define ERROR_CANTWRITE 1013
#define ERROR_REGISTRY_CORRUPT 1015
#define ERROR_REGISTRY_IO_FAILED 1016
#define ERROR_KEY_DELETED 1018
#define ERROR_NO_SYSTEM_RESOURCES 1450
#define ERROR_RESOURCE_DATA_NOT_FOUND 1812
#define ERROR_RESOURCE_TYPE_NOT_FOUND 1813
#define ERROR_RESOURCE_NAME_NOT_FOUND 1814

WINHOST_API DWORD GetLastError();
WINHOST_API void SetLastError(DWORD error);

// ---- Locks --------------------------------------------------------------------------------------

struct SRWLOCK
{
    void* Ptr;
};

#define SRWLOCK_INIT                                                                                         \
    {                                                                                                        \
        nullptr                                                                                              \
    }

WINHOST_API void AcquireSRWLockExclusive(SRWLOCK* lock);
WINHOST_API void ReleaseSRWLockExclusive(SRWLOCK* lock);

// ---- Registry -----------------------------------------------------------------------------------

#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000001))))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000002))))

#define REG_NONE 0U
#define REG_SZ 1U
#define REG_EXPAND_SZ 2U
#define REG_BINARY 3U
#define REG_DWORD 4U
#define REG_LINK 6U
#define REG_MULTI_SZ 7U
#define REG_QWORD 11U

#define REG_OPTION_NON_VOLATILE 0U
#define REG_CREATED_NEW_KEY 1U
#define REG_OPENED_EXISTING_KEY 2U

#define KEY_QUERY_VALUE 0x0001U
#define KEY_SET_VALUE 0x0002U
#define KEY_CREATE_SUB_KEY 0x0004U
#define KEY_ENUMERATE_SUB_KEYS 0x0008U
#define KEY_NOTIFY 0x0010U
#define KEY_READ 0x20019U
#define KEY_WRITE 0x20006U
#define KEY_ALL_ACCESS 0xF003FU

WINHOST_API LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD options, REGSAM access, PHKEY result);
WINHOST_API LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR keyClass, DWORD options,
                                    REGSAM access, const SECURITY_ATTRIBUTES* security, PHKEY result,
                                    LPDWORD disposition);
WINHOST_API LSTATUS RegCloseKey(HKEY key);
WINHOST_API LSTATUS RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD reserved, LPDWORD type, LPBYTE data,
                                     LPDWORD size);
WINHOST_API LSTATUS RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD reserved, DWORD type, const BYTE* data,
                                   DWORD size);
WINHOST_API LSTATUS RegDeleteValueW(HKEY key, LPCWSTR valueName);
WINHOST_API LSTATUS RegDeleteKeyW(HKEY key, LPCWSTR subKey);
WINHOST_API LSTATUS RegDeleteTreeW(HKEY key, LPCWSTR subKey);
WINHOST_API LSTATUS RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameLength, LPDWORD reserved,
                                  LPWSTR keyClass, LPDWORD classLength, FILETIME* lastWrite);
WINHOST_API LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameLength, LPDWORD reserved,
                                  LPDWORD type, LPBYTE data, LPDWORD size);
WINHOST_API LSTATUS RegQueryInfoKeyW(HKEY key, LPWSTR keyClass, LPDWORD classLength, LPDWORD reserved,
                                     LPDWORD subKeys, LPDWORD maxSubKeyLength, LPDWORD maxClassLength,
                                     LPDWORD values, LPDWORD maxValueNameLength, LPDWORD maxValueLength,
                                     LPDWORD securityDescriptorSize, FILETIME* lastWrite);

// ---- INI files ----------------------------------------------------------------------------------

WINHOST_API DWORD GetPrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR defaultText, LPWSTR out,
                                           DWORD size, LPCWSTR fileName);
WINHOST_API UINT GetPrivateProfileIntW(LPCWSTR section, LPCWSTR key, INT defaultValue, LPCWSTR fileName);

// ---- Modules and resources ----------------------------------------------------------------------

#define DONT_RESOLVE_DLL_REFERENCES 0x00000001U
#define LOAD_LIBRARY_AS_DATAFILE 0x00000002U
#define LOAD_LIBRARY_AS_IMAGE_RESOURCE 0x00000020U

#define DLL_PROCESS_DETACH 0U
#define DLL_PROCESS_ATTACH 1U

WINHOST_API HMODULE GetModuleHandleW(LPCWSTR name);
WINHOST_API DWORD GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD size);
WINHOST_API HMODULE LoadLibraryW(LPCWSTR name);
WINHOST_API HMODULE LoadLibraryExW(LPCWSTR name, HANDLE file, DWORD flags);
WINHOST_API BOOL FreeLibrary(HMODULE module);
WINHOST_API FARPROC GetProcAddress(HMODULE module, LPCSTR name);
WINHOST_API BOOL DisableThreadLibraryCalls(HMODULE module);
WINHOST_API INT LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, INT size);

// ---- Files and the working directory ------------------------------------------------------------

struct WIN32_FIND_DATAW
{
    WCHAR cFileName[MAX_PATH];
};

WINHOST_API HANDLE FindFirstFileW(LPCWSTR pattern, WIN32_FIND_DATAW* found);
WINHOST_API BOOL FindClose(HANDLE search);
WINHOST_API DWORD GetCurrentDirectoryW(DWORD size, LPWSTR buffer);
WINHOST_API BOOL SetCurrentDirectoryW(LPCWSTR path);

// ---- Text ---------------------------------------------------------------------------------------

#define CSTR_LESS_THAN 1
#define CSTR_EQUAL 2
#define CSTR_GREATER_THAN 3

WINHOST_API INT CompareStringOrdinal(LPCWSTR a, INT aLength, LPCWSTR b, INT bLength, BOOL ignoreCase);

// ---- User interface and process -----------------------------------------------------------------

#define MB_OK 0x00000000U
#define MB_YESNO 0x00000004U
#define MB_ICONERROR 0x00000010U
#define MB_ICONQUESTION 0x00000020U
#define IDOK 1
#define IDYES 6
#define IDNO 7

WINHOST_API INT MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);
WINHOST_API void ExitProcess(UINT code) __attribute__((noreturn));
