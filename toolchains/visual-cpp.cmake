# Cross toolchain: 64-bit Windows with Visual C++'s ABI, using clang-cl and lld-link. Programs are run with
# Wine. Uses headers from Wine, libc++ and visual-cpp/. Links with libraries that are built from visual-cpp/
# and from Wine's DLLs.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(CMAKE_C_COMPILER clang-cl-19)
set(CMAKE_CXX_COMPILER clang-cl-19)
set(CMAKE_C_COMPILER_TARGET x86_64-pc-windows-msvc19.40)
set(CMAKE_CXX_COMPILER_TARGET x86_64-pc-windows-msvc19.40)
set(CMAKE_LINKER lld-link-19)
set(CMAKE_AR llvm-lib-19)
set(CMAKE_RC_COMPILER llvm-rc-19)
set(CMAKE_MT llvm-mt-19)
set(CMAKE_FIND_ROOT_PATH /nonexistent)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH) # lets find_package search a client's CMAKE_PREFIX_PATH
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/run-wine.sh)

cmake_path(SET folder NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../build/visual-cpp-libraries)
set(VISUAL_CPP_LIBRARIES ${folder} CACHE PATH "Where make-libraries.sh puts its libraries")
option(VISUAL_CPP_WHOLE_LIBCXX "Link the whole of libc++, built from its sources, instead of the few functions of few.cpp" OFF)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VISUAL_CPP_LIBRARIES VISUAL_CPP_WHOLE_LIBCXX)
set(folder ${CMAKE_CURRENT_LIST_DIR}/visual-cpp)
execute_process(COMMAND ${folder}/make-libraries.sh ${VISUAL_CPP_LIBRARIES} COMMAND_ERROR_IS_FATAL ANY)

# Keep this list in sync with the one in make-libraries.sh.
set(headers ${folder}/include /usr/lib/llvm-19/lib/clang/19/include
  /usr/include/wine/wine/msvcrt /usr/include/wine/wine/windows)
set(VISUAL_CPP_HEADERS ${folder}/libcxx /usr/lib/llvm-19/include/c++/v1 ${headers})
set(CMAKE_C_FLAGS_INIT "/X -DWINE_UNICODE_NATIVE")
set(CMAKE_CXX_FLAGS_INIT "/X -DWINE_UNICODE_NATIVE -D_LIBCPP_DISABLE_VISIBILITY_ANNOTATIONS /EHsc /GR")
list(TRANSFORM headers PREPEND " /clang:-isystem /clang:" OUTPUT_VARIABLE c_headers)
string(APPEND CMAKE_C_FLAGS_INIT ${c_headers})
list(TRANSFORM VISUAL_CPP_HEADERS PREPEND " /clang:-isystem /clang:" OUTPUT_VARIABLE cxx_headers)
string(APPEND CMAKE_CXX_FLAGS_INIT ${cxx_headers})
# llvm-rc ignores the code page that a resource script specifies.
set(CMAKE_RC_FLAGS_INIT "/C 65001 -I /usr/include/wine/wine/windows -I /usr/include/wine/wine/msvcrt")

# start.lib and either libcxx.lib or few.lib replace msvcrt.lib, vcruntime.lib and msvcprt.lib.
if(VISUAL_CPP_WHOLE_LIBCXX)
  set(libcxx "libcxx.lib msvcp140.lib")
else()
  set(libcxx few.lib)
endif()
set(standard_libraries "start.lib ${libcxx} vcruntime140.lib ucrtbase.lib kernel32.lib user32.lib shell32.lib advapi32.lib")
# Cache variables: if a project's minimum CMake version is below 3.21, CMake removes normal variables of these
# names.
foreach(language C CXX)
  set(CMAKE_${language}_STANDARD_LIBRARIES ${standard_libraries} CACHE STRING "Libraries of every program" FORCE)
endforeach()
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "/nodefaultlib /libpath:${VISUAL_CPP_LIBRARIES}")
endforeach()
