# cpack runs this script before it builds the Debian packages. The script adds the documents that Debian requires in
# each package, and compresses the changelogs and the manual page.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(copyright "")
foreach(text LICENSE licenses/cli11.txt licenses/nlohmann-json.txt)
  file(READ ${CMAKE_CURRENT_LIST_DIR}/../${text} terms)
  string(APPEND copyright "${terms}\n")
endforeach()
string(APPEND copyright "libwinhost.so contains SQLite, which is in the public domain.\n")
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} name)
  set(folder ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share/doc/${CPACK_DEBIAN_${name}_PACKAGE_NAME})
  file(WRITE ${folder}/copyright "${copyright}")
  file(WRITE ${folder}/changelog "rkuinfo (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  * CHANGELOG.md in librkuinfo-dev lists the changes.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
endforeach()
file(GLOB compressed ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/man/man1/* ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/doc/*/changelog)
execute_process(COMMAND gzip -9 --no-name ${compressed} COMMAND_ERROR_IS_FATAL ANY)
