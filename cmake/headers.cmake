# read_headers_once(<target>): what most sources include is read once for all targets; by Visual C++ once for each, since
# it wants the same definitions; for no program on Linux, whose code is not a library's; and for none that is a part of
# another project, which may give it flags of its own.
set(RKUINFO_HEADERS <windows.h> <algorithm> <filesystem> <memory> <optional> <string> <vector>)
if(PROJECT_IS_TOP_LEVEL AND NOT MSVC)
  file(CONFIGURE OUTPUT headers.cpp CONTENT "")
  add_library(rkuinfo_headers OBJECT EXCLUDE_FROM_ALL ${PROJECT_BINARY_DIR}/headers.cpp)
  target_include_directories(rkuinfo_headers PRIVATE $<$<NOT:$<BOOL:${WIN32}>>:${PROJECT_SOURCE_DIR}/winhost/include>)
  target_link_libraries(rkuinfo_headers PRIVATE rkuinfo_flags)
  target_precompile_headers(rkuinfo_headers PRIVATE ${RKUINFO_HEADERS})
endif()

function(read_headers_once target)
  get_target_property(type ${target} TYPE)
  if(NOT PROJECT_IS_TOP_LEVEL)
    return()
  elseif(MSVC)
    target_precompile_headers(${target} PRIVATE ${RKUINFO_HEADERS})
  elseif(WIN32 OR NOT type STREQUAL EXECUTABLE)
    target_precompile_headers(${target} REUSE_FROM rkuinfo_headers)
  endif()
endfunction()
