# What ships, and where: programs, language folders and, on Windows, the libraries in bin; the rest as usual.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Sets RESULT to the way from one folder of the installation to another: none leads out of a moved prefix, so that an
# absolute folder is named as it is.
function(way result from to)
  if(IS_ABSOLUTE "${to}")
    set(${result} "${to}" PARENT_SCOPE)
  elseif(IS_ABSOLUTE "${from}")
    set(${result} "${CMAKE_INSTALL_PREFIX}/${to}" PARENT_SCOPE)
  else()
    file(RELATIVE_PATH relative "/prefix/${from}" "/prefix/${to}")
    set(${result} "${ARGN}${relative}" PARENT_SCOPE)
  endif()
endfunction()

set(libraries RkUInfo RkOsBase)
set(programs "")
if(RKUINFO_TOOLS)
  set(programs rkuinfo)
endif()
set(dependencies "")
if(RKUINFO_EXAMPLES)
  list(APPEND programs installer)
endif()
if(NOT WIN32)
  set(dependencies winhost) # behind the libraries; clients include none of its headers
endif()
# What ./dev package builds.
add_custom_target(shipped)
add_dependencies(shipped ${libraries} ${programs} ${dependencies} langpacks)

# Visual C++ has a C runtime for Debug of its own, so a package may have the libraries twice.
set(debug "")
if(MSVC)
  set(RKUINFO_DEBUG_PREFIX debug/ CACHE STRING "Where Debug's bin and lib are in the install prefix; empty, or with a final /")
  set(debug $<$<CONFIG:Debug>:${RKUINFO_DEBUG_PREFIX}>)
endif()

set_target_properties(${libraries} ${dependencies} PROPERTIES INSTALL_RPATH "\$ORIGIN")
install(TARGETS ${libraries} ${dependencies} EXPORT RkUInfoTargets
  RUNTIME DESTINATION ${debug}${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${debug}${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(programs)
  way(rpath ${CMAKE_INSTALL_BINDIR} ${CMAKE_INSTALL_LIBDIR} "\$ORIGIN/")
  set_target_properties(${programs} PROPERTIES INSTALL_RPATH "\$ORIGIN;${rpath}") # it may stand in a program's folder
  install(TARGETS ${programs} DESTINATION ${debug}${CMAKE_INSTALL_BINDIR})
endif()
if(RKUINFO_TOOLS)
  set(tool ${PROJECT_SOURCE_DIR}/tools/rkuinfo)
  if(TARGET rkuinfo_manual)
    add_dependencies(shipped rkuinfo_manual)
    install(FILES ${PROJECT_BINARY_DIR}/rkuinfo.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  endif()
  install(FILES ${tool}/rkuinfo.bash
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME rkuinfo)
  install(FILES ${tool}/rkuinfo.ps1 DESTINATION ${CMAKE_INSTALL_DATADIR}/rkuinfo)
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ ${PROJECT_SOURCE_DIR}/rkosbase/include/
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
foreach(language IN LISTS RKUINFO_LANGUAGES)
  install(FILES ${RKUINFO_PROGRAM_FOLDER}/${language}/RkUInfoRes.dll
    DESTINATION ${CMAKE_INSTALL_BINDIR}/${language})
endforeach()

# The libraries' debug information, beside each.
if(MSVC)
  install(FILES $<TARGET_PDB_FILE:RkUInfo> $<TARGET_PDB_FILE:RkOsBase>
    DESTINATION ${debug}${CMAKE_INSTALL_BINDIR} OPTIONAL)
else()
  set(library_folder ${CMAKE_INSTALL_LIBDIR})
  if(WIN32)
    set(library_folder ${CMAKE_INSTALL_BINDIR})
  endif()
  set(split ${libraries} ${dependencies})
  list(TRANSFORM split REPLACE "(.+)" "${library_folder}/$<TARGET_FILE_NAME:\\1>")
  set(strip ${programs})
  list(TRANSFORM strip REPLACE "(.+)" "${CMAKE_INSTALL_BINDIR}/$<TARGET_FILE_NAME:\\1>")
  install(CODE "set(OBJCOPY \"${CMAKE_OBJCOPY}\")\nset(LIBRARIES \"${split}\")\nset(PROGRAMS \"${strip}\")")
  install(SCRIPT ${PROJECT_SOURCE_DIR}/cmake/split-debug.cmake)
endif()

# The C++ runtime after that: it is not ours to change. Visual C++'s has an installer of its own.
if(MINGW)
  install(PROGRAMS ${RKUINFO_RUNTIME_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# For find_package and pkg-config.
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/RkUInfo)
set(natvis_folder ${CMAKE_INSTALL_DATADIR}/rkuinfo)
install(EXPORT RkUInfoTargets NAMESPACE RkUInfo:: DESTINATION ${package_folder})
set(runtime ${RKUINFO_RUNTIME_DLLS})
list(TRANSFORM runtime REPLACE ".*/" "\${RkUInfo_PROGRAM_DIR}/")
include(cmake/package/RkUInfoToolchain.cmake)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/package/RkUInfoConfig.cmake.in
  ${PROJECT_BINARY_DIR}/RkUInfoConfig.cmake
  INSTALL_DESTINATION ${package_folder} PATH_VARS CMAKE_INSTALL_BINDIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/RkUInfoConfigVersion.cmake
  COMPATIBILITY SameMajorVersion ARCH_INDEPENDENT) # RkUInfoConfig.cmake compares that
way(pkgconfig_libdir ${CMAKE_INSTALL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_LIBDIR} "\${pcfiledir}/")
way(pkgconfig_includedir ${CMAKE_INSTALL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_INCLUDEDIR} "\${pcfiledir}/")
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

# Documents, and the terms of what others wrote.
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
endif()
