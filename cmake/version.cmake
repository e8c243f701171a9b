# The version resource of the Windows libraries, of the facts that the library answers with.
enable_language(RC)

function(add_version_resource library description)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/package/version.rc.in ${source} @ONLY)
  target_sources(${library} PRIVATE ${source})
endfunction()
