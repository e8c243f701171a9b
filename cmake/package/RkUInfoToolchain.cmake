# Sets RkUInfo_TOOLCHAIN, which must be the same in a package and in the project that uses it.
if(MSVC)
  set(RkUInfo_TOOLCHAIN "Visual C++ ${MSVC_CXX_ARCHITECTURE_ID}")
elseif(MINGW)
  set(RkUInfo_TOOLCHAIN "MinGW")
else()
  set(RkUInfo_TOOLCHAIN "${CMAKE_SYSTEM_NAME}")
endif()
string(APPEND RkUInfo_TOOLCHAIN " with pointers of ${CMAKE_SIZEOF_VOID_P} bytes")
