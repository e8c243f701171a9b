# need(<Debian package> <package> [<option>...]): calls find_package. If this fails, the error message names the Debian
# package to install.
function(need debian package)
  find_package(${package} ${ARGN} QUIET)
  if(NOT ${package}_FOUND)
    message(FATAL_ERROR "${package} is missing or too old; on Debian install ${debian}")
  endif()
endfunction()

# need_program(<Debian package> <variable> <program>): calls find_program, and names the package to install if
# the program is missing.
function(need_program debian variable program)
  find_program(${variable} ${program})
  if(NOT ${variable})
    message(FATAL_ERROR "The program ${program} is missing; on Debian install ${debian}")
  endif()
endfunction()
