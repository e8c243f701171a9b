# The shared runtime of the MinGW compiler, copied beside the programs.
set(RKUINFO_RUNTIME_DLLS "")
foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
    OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  list(APPEND RKUINFO_RUNTIME_DLLS ${path})
endforeach()
file(COPY ${RKUINFO_RUNTIME_DLLS} DESTINATION ${PROJECT_BINARY_DIR}/bin)
