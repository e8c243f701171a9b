# For projects that include this one: defines the targets that find_package would define, and the files that
# rkuinfo_deploy copies.
foreach(library RkUInfo RkOsBase)
  add_library(RkUInfo::${library} ALIAS ${library})
endforeach()
if(NOT WIN32)
  add_library(RkUInfo::winhost ALIAS winhost)
  # The libraries find each other in any folder that contains all of them.
  set_target_properties(RkUInfo RkOsBase winhost PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "\$ORIGIN")
endif()
if(MSVC) # the .natvis file lets the debugger show values
  target_sources(RkUInfo INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/cmake/package/RkUInfo.natvis>)
endif()
set_target_properties(RkUInfo PROPERTIES
  RKUINFO_PROGRAM_FOLDER "${RKUINFO_PROGRAM_FOLDER}"
  RKUINFO_LANGUAGES "${RKUINFO_LANGUAGES}"
  RKUINFO_RUNTIME "${RKUINFO_RUNTIME_DLLS}")
include(cmake/package/RkUInfoDeploy.cmake)
