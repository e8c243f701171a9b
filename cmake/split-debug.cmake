# Moves the debug information of installed libraries into a file of its own beside each, where debuggers look for it;
# programs are left without. Takes OBJCOPY, and LIBRARIES and PROGRAMS, whose names are relative to the install prefix.
set(ENV{SOURCE_DATE_EPOCH} 0) # else every call would stamp the file with its time
set(prefix $ENV{DESTDIR}${CMAKE_INSTALL_PREFIX})

function(objcopy folder)
  execute_process(COMMAND ${OBJCOPY} ${ARGN} WORKING_DIRECTORY ${folder} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(file IN LISTS LIBRARIES)
  cmake_path(GET file PARENT_PATH folder)
  cmake_path(GET file FILENAME name)
  objcopy(${prefix}/${folder} --only-keep-debug ${name} ${name}.debug)
  objcopy(${prefix}/${folder} --strip-unneeded ${name})
  objcopy(${prefix}/${folder} --add-gnu-debuglink=${name}.debug ${name})
  file(CHMOD ${prefix}/${file}.debug PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endforeach()
foreach(file IN LISTS PROGRAMS)
  objcopy(${prefix} --strip-all ${file})
endforeach()
