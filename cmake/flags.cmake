# rkuinfo_flags: what every target of this project is compiled with.
add_library(rkuinfo_flags INTERFACE)
target_compile_features(rkuinfo_flags INTERFACE cxx_std_20)
set(warnings
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wcast-align -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference -Wformat=2 -Werror)
# No path of the build machine; of two maps that fit, the later one counts.
set(path_maps -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=./build)
target_compile_options(rkuinfo_flags INTERFACE "$<$<COMPILE_LANGUAGE:CXX>:${warnings};${path_maps}>")

if(WIN32)
  # Loaded anywhere in 64 bits, data never runs, and the same sources give the same file.
  target_link_options(rkuinfo_flags INTERFACE
    -Wl,--dynamicbase,--high-entropy-va,--nxcompat -Wl,--no-insert-timestamp)
else()
  # wchar_t is a UTF-16 unit on every target.
  target_compile_options(rkuinfo_flags INTERFACE -fshort-wchar)
endif()

set(RKUINFO_SANITIZE "" CACHE STRING "Sanitizers of the host build, as -fsanitize takes them")
if(RKUINFO_SANITIZE)
  target_compile_options(rkuinfo_flags INTERFACE
    -fsanitize=${RKUINFO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(rkuinfo_flags INTERFACE -fsanitize=${RKUINFO_SANITIZE})
endif()

set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
