# A vcpkg overlay port that builds the source tree in which it is stored. It has not been tested with vcpkg.
set(VCPKG_POLICY_DLLS_WITHOUT_EXPORTS enabled) # the language libraries contain only resources
cmake_path(GET CURRENT_PORT_DIR PARENT_PATH source)
cmake_path(GET source PARENT_PATH source)
vcpkg_cmake_configure(
  SOURCE_PATH "${source}"
  OPTIONS -DRKUINFO_TESTS=OFF -DRKUINFO_TOOLS=OFF -DRKUINFO_EXAMPLES=OFF -DRKUINFO_DEBUG_PREFIX=)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME RkUInfo CONFIG_PATH lib/cmake/RkUInfo)
vcpkg_copy_pdbs()
file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share"
  "${CURRENT_PACKAGES_DIR}/lib/pkgconfig" "${CURRENT_PACKAGES_DIR}/debug/lib/pkgconfig")
vcpkg_install_copyright(FILE_LIST "${source}/LICENSE")
