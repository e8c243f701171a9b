# The version resource of the Windows libraries. The build stamp and the service pack are the ones that the library
# answers with; the product version is the project's first number.
file(STRINGS ${PROJECT_SOURCE_DIR}/src/product/version.cpp stamp_line REGEX "buildStamp\\[\\] =")
file(STRINGS ${PROJECT_SOURCE_DIR}/src/product/version.cpp pack_line REGEX "return L\"SP[0-9]+\"")
if(NOT stamp_line MATCHES "\"(([0-9]+)\\.0*([0-9]+)\\.0*([0-9]+)\\(([0-9]+)\\)_x64)\"")
  message(FATAL_ERROR "No build stamp in src/product/version.cpp")
endif()
set(RKUINFO_BUILD_STAMP ${CMAKE_MATCH_1})
set(RKUINFO_FILE_VERSION ${CMAKE_MATCH_2}.${CMAKE_MATCH_3}.${CMAKE_MATCH_4}.${CMAKE_MATCH_5})
string(REPLACE "." "," RKUINFO_FILE_VERSION_WORDS ${RKUINFO_FILE_VERSION})
string(REGEX MATCH "SP[0-9]+" RKUINFO_SERVICE_PACK "${pack_line}")
set(RKUINFO_PRODUCT_VERSION ${PROJECT_VERSION_MAJOR})

enable_language(RC)

function(add_version_resource library description)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/package/version.rc.in ${source} @ONLY)
  target_sources(${library} PRIVATE ${source})
endfunction()
