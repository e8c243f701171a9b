# read_headers_once(<target>): precompiles the headers that most sources include, once for all targets.
# With Visual C++ each target precompiles the headers again, because targets with different definitions cannot share
# them. Programs use these headers only with MinGW, because on Linux programs are compiled with other flags
# than the libraries. If another project includes this one, no headers are precompiled, because that project
# may change a target's flags.
set(RKUINFO_HEADERS <windows.h> <algorithm> <memory>)
if(PROJECT_IS_TOP_LEVEL AND NOT MSVC)
  file(CONFIGURE OUTPUT headers.cpp CONTENT "")
  add_library(rkuinfo_headers OBJECT EXCLUDE_FROM_ALL ${PROJECT_BINARY_DIR}/headers.cpp)
  target_include_directories(rkuinfo_headers PRIVATE $<$<NOT:$<BOOL:${WIN32}>>:${PROJECT_SOURCE_DIR}/winhost/include>)
  target_link_libraries(rkuinfo_headers PRIVATE rkuinfo_flags)
  target_precompile_headers(rkuinfo_headers PRIVATE ${RKUINFO_HEADERS} <filesystem> <optional> <string> <vector>)
endif()

function(read_headers_once target)
  get_target_property(type ${target} TYPE)
  if(PROJECT_IS_TOP_LEVEL AND (MINGW OR NOT type STREQUAL EXECUTABLE))
    if(MSVC)
      target_precompile_headers(${target} PRIVATE ${RKUINFO_HEADERS})
    else()
      target_precompile_headers(${target} REUSE_FROM rkuinfo_headers)
    endif()
  endif()
endfunction()
