# The libraries under the names that find_package defines, for a project that this one is a part of, and what
# rkuinfo_deploy copies.
foreach(library RkUInfo RkOsBase)
  add_library(RkUInfo::${library} ALIAS ${library})
endforeach()
if(NOT WIN32)
  add_library(RkUInfo::winhost ALIAS winhost)
  set_target_properties(RkUInfo RkOsBase winhost PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "\$ORIGIN") # they stay together wherever a project copies them
endif()
if(MSVC) # whose debugger then shows values
  target_sources(RkUInfo INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/cmake/package/RkUInfo.natvis>)
endif()
set_target_properties(RkUInfo PROPERTIES
  RKUINFO_PROGRAM_FOLDER "${RKUINFO_PROGRAM_FOLDER}"
  RKUINFO_LANGUAGES "${RKUINFO_LANGUAGES}"
  RKUINFO_RUNTIME "${RKUINFO_RUNTIME_DLLS}")
include(cmake/package/RkUInfoDeploy.cmake)
