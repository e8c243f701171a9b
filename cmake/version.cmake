# Adds a version resource to a Windows library; the values are those in src/installation/build_facts.h.
enable_language(RC)

function(add_version_resource library description)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/package/version.rc.in ${source} @ONLY)
  target_sources(${library} PRIVATE ${source})
endfunction()
