# Moves the debug information of each installed library into a separate file next to it, where debuggers look for it,
# and strips the programs. Parameters: OBJCOPY; LIBRARIES and PROGRAMS, absolute or relative to the install prefix.
set(ENV{SOURCE_DATE_EPOCH} 0) # keeps objcopy from writing the current time into the file
list(TRANSFORM LIBRARIES REPLACE "^[^/].*" "${CMAKE_INSTALL_PREFIX}/\\0")
list(TRANSFORM PROGRAMS REPLACE "^[^/].*" "${CMAKE_INSTALL_PREFIX}/\\0")

function(objcopy file)
  cmake_path(GET file PARENT_PATH folder)
  execute_process(COMMAND ${OBJCOPY} ${ARGN} WORKING_DIRECTORY $ENV{DESTDIR}${folder} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(file IN LISTS LIBRARIES)
  cmake_path(GET file FILENAME name)
  objcopy(${file} --only-keep-debug ${name} ${name}.debug)
  objcopy(${file} --strip-unneeded ${name})
  objcopy(${file} --add-gnu-debuglink=${name}.debug ${name})
  file(CHMOD $ENV{DESTDIR}${file}.debug PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  list(APPEND CMAKE_INSTALL_MANIFEST_FILES ${file}.debug)
endforeach()
foreach(file IN LISTS PROGRAMS)
  cmake_path(GET file FILENAME name)
  objcopy(${file} --strip-all ${name})
endforeach()
