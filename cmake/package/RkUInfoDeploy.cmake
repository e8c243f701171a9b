# rkuinfo_deploy(<program> [LANGUAGES <name>...] [COMPANY <name>] [PRODUCT <name>] [INSTALL <folder>])
#
# Each time the program is linked, copies RkUInfo's libraries for the program's configuration and their .pdb
# files to the program's folder. Also copies MinGW's C++ runtime if MinGW is the compiler. Copies the folders
# of all languages, or only of those given by LANGUAGES. Copies a TARVO.ini, unless the folder already
# contains one. TARVO.ini names the company and the product. By default, the company is the name of the
# project, and the product is the name of the target. With INSTALL, the files are also installed to a folder
# of the install prefix. The project must also install the program to that folder.
function(rkuinfo_deploy program)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "COMPANY;PRODUCT;INSTALL" "LANGUAGES")
  if(ARG_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR
      "rkuinfo_deploy(${program}): unknown ${ARG_UNPARSED_ARGUMENTS}: use LANGUAGES, COMPANY, PRODUCT or INSTALL")
  endif()
  if(ARG_KEYWORDS_MISSING_VALUES)
    message(FATAL_ERROR "rkuinfo_deploy(${program}): ${ARG_KEYWORDS_MISSING_VALUES} has no value")
  endif()
  if(NOT TARGET ${program})
    message(FATAL_ERROR "rkuinfo_deploy(${program}): the target does not exist")
  endif()
  get_target_property(known RkUInfo::RkUInfo RKUINFO_LANGUAGES)
  get_target_property(folder RkUInfo::RkUInfo RKUINFO_PROGRAM_FOLDER)
  get_target_property(runtime RkUInfo::RkUInfo RKUINFO_RUNTIME)
  if(NOT DEFINED ARG_LANGUAGES)
    set(ARG_LANGUAGES ${known})
  endif()
  foreach(language IN LISTS ARG_LANGUAGES)
    if(NOT language IN_LIST known)
      list(JOIN known ", " known)
      message(FATAL_ERROR "rkuinfo_deploy(${program}): unknown language ${language}: use ${known}")
    endif()
  endforeach()
  if(NOT DEFINED ARG_COMPANY)
    set(ARG_COMPANY ${PROJECT_NAME})
  endif()
  if(NOT DEFINED ARG_PRODUCT)
    set(ARG_PRODUCT ${program})
  endif()
  set(ini ${CMAKE_CURRENT_BINARY_DIR}/rkuinfo_deploy/${program}/TARVO.ini)
  rkuinfo_write_ini(${ini} "[Product]\r\nCompanyName=${ARG_COMPANY}\r\nProductName=${ARG_PRODUCT}\r\n")

  set(beside $<TARGET_FILE_DIR:${program}>)
  set(libraries RkUInfo::RkUInfo RkUInfo::RkOsBase)
  set(file TARGET_FILE)
  if(TARGET RkUInfo::winhost)
    list(APPEND libraries RkUInfo::winhost)
    set(file TARGET_SONAME_FILE) # the name by which the program loads the library
    set_property(TARGET ${program} APPEND PROPERTY BUILD_RPATH "\$ORIGIN")
    set_property(TARGET ${program} APPEND PROPERTY INSTALL_RPATH "\$ORIGIN")
  endif()
  set(copied ${libraries})
  list(TRANSFORM copied REPLACE ".+" "${beside}/$<${file}_NAME:\\0>")
  list(TRANSFORM libraries REPLACE ".+" "$<${file}:\\0>")
  get_target_property(installed RkUInfo::RkUInfo IMPORTED)
  if(NOT installed)
    add_dependencies(${program} langpacks)
  endif()
  set(copies COMMAND ${CMAKE_COMMAND} -E copy_if_different ${libraries} ${runtime} ${beside})
  foreach(language IN LISTS ARG_LANGUAGES)
    list(APPEND copies
      COMMAND ${CMAKE_COMMAND} -E make_directory ${beside}/${language}
      COMMAND ${CMAKE_COMMAND} -E copy_if_different ${folder}/${language}/RkUInfoRes.dll ${beside}/${language})
  endforeach()
  add_custom_command(TARGET ${program} POST_BUILD ${copies}
    COMMAND ${CMAKE_COMMAND} "-DLIBRARIES=$<JOIN:${libraries},|>" -DINI=${ini} -DFOLDER=${beside}
      -P ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/RkUInfoBeside.cmake
    COMMENT "Copying what ${program} needs to start"
    VERBATIM)

  if(DEFINED ARG_INSTALL)
    install(FILES ${copied} ${runtime} ${beside}/TARVO.ini DESTINATION ${ARG_INSTALL})
    if(MSVC)
      install(FILES ${beside}/RkUInfo.pdb ${beside}/RkOsBase.pdb DESTINATION ${ARG_INSTALL} OPTIONAL)
    endif()
    foreach(language IN LISTS ARG_LANGUAGES)
      install(FILES ${folder}/${language}/RkUInfoRes.dll DESTINATION ${ARG_INSTALL}/${language})
    endforeach()
  endif()
endfunction()

# Writes an INI file that Windows reads in every locale: in ASCII if possible, otherwise in UTF-16 with a byte order
# mark. CMake itself cannot write a null byte.
function(rkuinfo_write_ini file text)
  string(HEX "${text}" bytes)
  if(bytes MATCHES "^([0-7].)*$")
    file(WRITE ${file} "${text}")
    return()
  endif()
  string(ASCII 239 187 191 mark)
  file(WRITE ${file}.utf8 "${mark}${text}")
  cmake_path(GET file PARENT_PATH folder)
  if(CMAKE_HOST_WIN32)
    set(convert powershell -NoProfile -NonInteractive -Command
      "Get-Content TARVO.ini.utf8 -Encoding UTF8 | Set-Content TARVO.ini -Encoding Unicode")
  else()
    set(convert iconv -f UTF-8 -t UTF-16LE -o TARVO.ini TARVO.ini.utf8)
  endif()
  execute_process(COMMAND ${convert} WORKING_DIRECTORY ${folder} RESULT_VARIABLE failure)
  if(failure)
    message(FATAL_ERROR "${file}: cannot be written in UTF-16 by ${convert}: ${failure}")
  endif()
endfunction()
