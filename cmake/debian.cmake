# Debian packages, built by cpack: the libraries, the development files, and the command-line client with its languages.
# Requires the install prefix /usr. CPACK_PACKAGE_CONTACT must name the maintainer.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL library development tool)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian-documents.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${RKUINFO_PROGRAM_FOLDER}) # contains the libraries of rkuinfo

set(library librkuinfo${PROJECT_VERSION_MAJOR})
set(same_version "(= ${PROJECT_VERSION})")
set(about "The modules of an application ask this library who and where they are:
product, company, language, user profile, folders and version. They share
one typed configuration store.\n.\nThis package contains")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "identity and settings of an application's modules\n${about} the shared libraries.")
file(WRITE ${PROJECT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/triggers)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME librkuinfo-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library} ${same_version}, rkuinfo ${same_version}")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "identity and settings of an application's modules - development
${about} the headers, the documents, and files for CMake and
pkg-config.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME rkuinfo)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${library} ${same_version}")
set(CPACK_DEBIAN_TOOL_DESCRIPTION "identity and settings of an application's modules - client
${about} a command-line client that finds what is wrong
with an installation and changes its settings, and the language libraries.")
include(CPack)
