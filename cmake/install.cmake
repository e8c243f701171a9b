# Install rules. On Windows the libraries, the programs and the language folders are in bin.
# On Linux the libraries are in lib, programs and languages in lib/rkuinfo, and bin has a link to the client.
# Components: library, development and tool.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Sets <result> to <prefix> followed by the relative path from <from> to <to>; <from> and <to> are folders of the
# installation. If <from> or <to> is an absolute path, sets <result> to the absolute path of <to>, because absolute
# paths do not move with the install prefix.
function(path_between result from to prefix)
  if(IS_ABSOLUTE "${to}")
    set(${result} "${to}" PARENT_SCOPE)
  elseif(IS_ABSOLUTE "${from}")
    set(${result} "${CMAKE_INSTALL_PREFIX}/${to}" PARENT_SCOPE)
  else()
    file(RELATIVE_PATH relative "/prefix/${from}" "/prefix/${to}")
    set(${result} "${prefix}${relative}" PARENT_SCOPE)
  endif()
endfunction()

set(libraries RkUInfo RkOsBase)
set(program_folder ${CMAKE_INSTALL_BINDIR})
if(NOT WIN32)
  list(APPEND libraries winhost) # used by RkUInfo and RkOsBase; clients do not include winhost's headers
  set(program_folder ${CMAKE_INSTALL_LIBDIR}/rkuinfo)
endif()
set(programs "")
if(RKUINFO_TOOLS)
  list(APPEND programs rkuinfo)
endif()
if(RKUINFO_EXAMPLES)
  list(APPEND programs installer)
endif()
# Builds everything that will be installed.
add_custom_target(shipped)
add_dependencies(shipped ${libraries} ${programs} langpacks)

# Visual C++ has a separate C runtime for Debug, so a package may contain the libraries twice.
set(debug "")
if(MSVC)
  set(RKUINFO_DEBUG_PREFIX debug/ CACHE STRING "Folder of Debug's bin and lib in the install prefix: empty, or with a final /")
  set(debug $<$<CONFIG:Debug>:${RKUINFO_DEBUG_PREFIX}>)
endif()

install(TARGETS ${libraries} EXPORT RkUInfoTargets
  RUNTIME DESTINATION ${debug}${CMAKE_INSTALL_BINDIR} COMPONENT library
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${debug}${CMAKE_INSTALL_LIBDIR} COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(programs) # on Linux the libraries are one folder above the programs
  set_target_properties(${programs} PROPERTIES INSTALL_RPATH "\$ORIGIN;\$ORIGIN/..")
  install(TARGETS ${programs} DESTINATION ${debug}${program_folder} COMPONENT tool)
endif()
foreach(language IN LISTS RKUINFO_LANGUAGES)
  install(FILES ${RKUINFO_PROGRAM_FOLDER}/${language}/RkUInfoRes.dll
    DESTINATION ${program_folder}/${language} COMPONENT tool)
endforeach()
if(RKUINFO_TOOLS)
  set(tool ${PROJECT_SOURCE_DIR}/tools/rkuinfo)
  if(NOT WIN32)
    path_between(client ${CMAKE_INSTALL_BINDIR} ${program_folder}/rkuinfo "")
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/link)
    file(CREATE_LINK ${client} ${PROJECT_BINARY_DIR}/link/rkuinfo SYMBOLIC)
    install(FILES ${PROJECT_BINARY_DIR}/link/rkuinfo DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
  endif()
  if(TARGET rkuinfo_manual)
    add_dependencies(shipped rkuinfo_manual)
    install(FILES ${PROJECT_BINARY_DIR}/rkuinfo.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
  endif()
  install(FILES ${tool}/rkuinfo.bash
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME rkuinfo COMPONENT tool)
  install(FILES ${tool}/rkuinfo.ps1 DESTINATION ${CMAKE_INSTALL_DATADIR}/rkuinfo COMPONENT tool)
endif()

# Debug information, in a separate file next to each library.
option(RKUINFO_SPLIT_DEBUG "Move debug information to separate files, and strip the programs, at install" ${WIN32})
if(MSVC)
  install(FILES $<TARGET_PDB_FILE:RkUInfo> $<TARGET_PDB_FILE:RkOsBase>
    DESTINATION ${debug}${CMAKE_INSTALL_BINDIR} COMPONENT development OPTIONAL)
elseif(RKUINFO_SPLIT_DEBUG)
  set(library_folder ${CMAKE_INSTALL_LIBDIR})
  if(WIN32)
    set(library_folder ${CMAKE_INSTALL_BINDIR})
  endif()
  set(split ${libraries})
  list(TRANSFORM split REPLACE "(.+)" "${library_folder}/$<TARGET_FILE_NAME:\\1>")
  set(strip ${programs})
  list(TRANSFORM strip REPLACE "(.+)" "${program_folder}/$<TARGET_FILE_NAME:\\1>")
  install(CODE "set(OBJCOPY \"${CMAKE_OBJCOPY}\")\nset(LIBRARIES \"${split}\")\nset(PROGRAMS \"${strip}\")")
  install(SCRIPT ${PROJECT_SOURCE_DIR}/cmake/split-debug.cmake)
endif()

# The C++ runtime of MinGW. Visual C++'s runtime has its own installer.
if(MINGW)
  install(PROGRAMS ${RKUINFO_RUNTIME_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library)
endif()

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ ${PROJECT_SOURCE_DIR}/rkosbase/include/
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

# For find_package and pkg-config.
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/RkUInfo)
set(natvis_folder ${CMAKE_INSTALL_DATADIR}/rkuinfo)
install(EXPORT RkUInfoTargets NAMESPACE RkUInfo:: DESTINATION ${package_folder})
set(runtime ${RKUINFO_RUNTIME_DLLS})
list(TRANSFORM runtime REPLACE ".*/" "\${RkUInfo_PROGRAM_DIR}/")
include(cmake/package/RkUInfoToolchain.cmake)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/package/RkUInfoConfig.cmake.in
  ${PROJECT_BINARY_DIR}/RkUInfoConfig.cmake
  INSTALL_DESTINATION ${package_folder} PATH_VARS program_folder)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/RkUInfoConfigVersion.cmake
  COMPATIBILITY SameMajorVersion ARCH_INDEPENDENT) # RkUInfoConfig.cmake checks the architecture
path_between(pkgconfig_libdir ${CMAKE_INSTALL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_LIBDIR} "\${pcfiledir}/")
path_between(pkgconfig_includedir ${CMAKE_INSTALL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_INCLUDEDIR} "\${pcfiledir}/")
set(pkgconfig_cflags "")
if(NOT WIN32)
  set(pkgconfig_cflags " -fshort-wchar")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/package/rkuinfo.pc.in ${PROJECT_BINARY_DIR}/rkuinfo.pc @ONLY)
set(modules RkUInfoBeside.cmake RkUInfoDeploy.cmake RkUInfoToolchain.cmake)
list(TRANSFORM modules PREPEND ${PROJECT_SOURCE_DIR}/cmake/package/)
install(FILES ${PROJECT_BINARY_DIR}/RkUInfoConfig.cmake ${PROJECT_BINARY_DIR}/RkUInfoConfigVersion.cmake ${modules}
  DESTINATION ${package_folder})
install(FILES ${PROJECT_BINARY_DIR}/rkuinfo.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/package/RkUInfo.natvis DESTINATION ${natvis_folder})
if(MSVC)
  target_sources(RkUInfo INTERFACE $<INSTALL_INTERFACE:$<INSTALL_PREFIX>/${natvis_folder}/RkUInfo.natvis>)
endif()

# Documents, and the licences of what the package contains.
set(licenses cli11.txt nlohmann-json.txt)
if(MINGW)
  list(APPEND licenses GPL-3.txt gcc-runtime.txt mingw-w64.txt)
endif()
list(TRANSFORM licenses PREPEND ${PROJECT_SOURCE_DIR}/licenses/)
set(documents ABI.md GUIDE.md LOADING.md REGISTRY.md VISUAL_STUDIO.md)
list(TRANSFORM documents PREPEND ${PROJECT_SOURCE_DIR}/docs/)
install(FILES ${documents} ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${PROJECT_SOURCE_DIR}/docs/PACKAGE.md DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME README.md)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/hello DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
install(FILES ${licenses} DESTINATION ${CMAKE_INSTALL_DOCDIR}/licenses)

if(PROJECT_IS_TOP_LEVEL)
  add_custom_target(uninstall
    COMMAND ${CMAKE_COMMAND} -DMANIFEST=${PROJECT_BINARY_DIR}/install_manifest.txt
      -P ${PROJECT_SOURCE_DIR}/cmake/uninstall.cmake
    VERBATIM)
  if(NOT WIN32)
    include(cmake/debian.cmake)
  endif()
endif()
