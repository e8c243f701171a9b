# The libraries as find_package gives them, for a project that this one is a part of; and what rkuinfo_deploy copies.
foreach(library RkUInfo RkOsBase)
  add_library(RkUInfo::${library} ALIAS ${library})
endforeach()
if(NOT WIN32)
  add_library(RkUInfo::winhost ALIAS winhost)
endif()
if(MSVC) # which shows values in the debugger
  target_sources(RkUInfo INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/cmake/package/RkUInfo.natvis>)
endif()
set_target_properties(RkUInfo PROPERTIES
  RKUINFO_PROGRAM_FOLDER "${RKUINFO_PROGRAM_FOLDER}"
  RKUINFO_LANGUAGES "${RKUINFO_LANGUAGES}"
  RKUINFO_RUNTIME "${RKUINFO_RUNTIME_DLLS}")
include(cmake/package/RkUInfoDeploy.cmake)
