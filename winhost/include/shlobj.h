// Declares the functions that return the paths of the shell folders.
#pragma once

#include "windows.h"

#define CSIDL_PERSONAL 0x0005
#define CSIDL_APPDATA 0x001a
#define CSIDL_LOCAL_APPDATA 0x001c
#define CSIDL_FLAG_DONT_VERIFY 0x4000
#define CSIDL_FLAG_CREATE 0x8000
#define SHGFP_TYPE_CURRENT 0U
#define S_OK 0
#define S_FALSE 1
#define E_INVALIDARG (static_cast<HRESULT>(0x80070057))
#define E_FAIL (static_cast<HRESULT>(0x80004005))
#define SUCCEEDED(hr) (static_cast<HRESULT>(hr) >= 0)
#define FAILED(hr) (static_cast<HRESULT>(hr) < 0)

WINHOST_API BOOL SHGetSpecialFolderPathW(HWND owner, LPWSTR path, INT folder, BOOL create);
WINHOST_API HRESULT SHGetFolderPathW(HWND owner, INT folder, HANDLE token, DWORD flags, LPWSTR path);
