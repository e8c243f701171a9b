# rkuinfo_deploy(<program> [LANGUAGES <name>...] [COMPANY <name>] [PRODUCT <name>])
#
# Puts beside a program what it needs to start, whenever it is linked: the libraries, on Windows with MinGW the C++
# runtime, the folders of all languages or of those named, and a TARVO.ini if there is none. That names the company and
# the product: unless told, after the project and the program.
function(rkuinfo_deploy program)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "COMPANY;PRODUCT" "LANGUAGES")
  if(ARG_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "rkuinfo_deploy(${program}): knows LANGUAGES, COMPANY and PRODUCT, not: ${ARG_UNPARSED_ARGUMENTS}")
  endif()
  if(ARG_KEYWORDS_MISSING_VALUES)
    message(FATAL_ERROR "rkuinfo_deploy(${program}): nothing behind ${ARG_KEYWORDS_MISSING_VALUES}")
  endif()
  if(NOT TARGET ${program})
    message(FATAL_ERROR "rkuinfo_deploy(${program}): there is no such target")
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
      message(FATAL_ERROR "rkuinfo_deploy(${program}): there is no language ${language}, but ${known}")
    endif()
  endforeach()
  if(NOT DEFINED ARG_COMPANY)
    set(ARG_COMPANY ${PROJECT_NAME})
  endif()
  if(NOT DEFINED ARG_PRODUCT)
    set(ARG_PRODUCT ${program})
  endif()

  set(beside $<TARGET_FILE_DIR:${program}>)
  set(libraries $<TARGET_FILE:RkUInfo::RkUInfo> $<TARGET_FILE:RkUInfo::RkOsBase>)
  if(TARGET RkUInfo::winhost)
    list(APPEND libraries $<TARGET_FILE:RkUInfo::winhost>)
    set_property(TARGET ${program} APPEND PROPERTY BUILD_RPATH "\$ORIGIN")
  endif()
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
    COMMAND ${CMAKE_COMMAND} -DFILE=${beside}/TARVO.ini -DCOMPANY=${ARG_COMPANY} -DPRODUCT=${ARG_PRODUCT}
      -P ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/RkUInfoIni.cmake
    COMMENT "What ${program} needs to start"
    VERBATIM)
endfunction()
