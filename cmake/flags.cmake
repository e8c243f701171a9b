# rkuinfo_flags: the compile and link options of every target in this project.
add_library(rkuinfo_flags INTERFACE)
target_compile_features(rkuinfo_flags INTERFACE cxx_std_20)

if(MSVC)
  # UTF-8 sources, standard C++, and no warnings that recommend Microsoft's own functions.
  set(flags /W4 /permissive- /utf-8 /EHsc /Zc:__cplusplus /guard:cf /Brepro)
  target_compile_definitions(rkuinfo_flags INTERFACE _CRT_SECURE_NO_WARNINGS)
else()
  set(flags
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wcast-align -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference -Wformat=2)
endif()
# Keeps the build machine's paths out of the compiled files. If several maps match a path, the last of them
# applies.
set(path_maps -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=./build)
if(NOT MSVC)
  list(APPEND flags ${path_maps})
elseif(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
  list(TRANSFORM path_maps PREPEND /clang:)
  list(APPEND flags ${path_maps} -fdebug-compilation-dir=. -gno-codeview-command-line)
  target_link_options(rkuinfo_flags INTERFACE /PDBSOURCEPATH:.)
endif()
target_compile_options(rkuinfo_flags INTERFACE "$<$<COMPILE_LANGUAGE:CXX>:${flags}>")

if(WIN32)
  target_compile_definitions(rkuinfo_flags INTERFACE NOMINMAX WIN32_LEAN_AND_MEAN)
endif()
# On Windows: 64-bit address space layout randomisation, data execution prevention, and reproducible files.
if(MSVC)
  target_link_options(rkuinfo_flags INTERFACE
    /DYNAMICBASE /HIGHENTROPYVA /NXCOMPAT /guard:cf /Brepro /INCREMENTAL:NO /PDBALTPATH:%_PDB%)
elseif(WIN32)
  # Otherwise g++'s debug information depends on the path of the source.
  target_compile_options(rkuinfo_flags INTERFACE "$<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fno-var-tracking-assignments>")
  target_link_options(rkuinfo_flags INTERFACE
    -Wl,--dynamicbase,--high-entropy-va,--nxcompat -Wl,--no-insert-timestamp)
else()
  # wchar_t is a UTF-16 code unit on every target.
  target_compile_options(rkuinfo_flags INTERFACE -fshort-wchar)
endif()

set(RKUINFO_SANITIZE "" CACHE STRING "Sanitizers of the host build, in the syntax of -fsanitize")
if(RKUINFO_SANITIZE)
  target_compile_options(rkuinfo_flags INTERFACE
    -fsanitize=${RKUINFO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
  target_link_options(rkuinfo_flags INTERFACE -fsanitize=${RKUINFO_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
    target_compile_options(rkuinfo_flags INTERFACE -fno-sanitize=function) # GetProcAddress returns untyped function pointers
    if(RKUINFO_SANITIZE MATCHES "^address") # needs a shared runtime: the tests replace the imported malloc
      execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libclang_rt.asan-${CMAKE_SYSTEM_PROCESSOR}.so
        OUTPUT_VARIABLE runtime OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
      cmake_path(GET runtime PARENT_PATH folder)
      target_link_options(rkuinfo_flags INTERFACE -shared-libasan -Wl,-rpath,${folder})
    endif()
  endif()
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# Names in the sources' anonymous namespaces would collide in a unity build.
set(CMAKE_UNITY_BUILD OFF)
