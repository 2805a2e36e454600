# `cmake --build build --target docs`: the API reference of the public
# headers (include/ipacl/*.h, whatever headers that directory holds, and the
# platform declarations) in build/docs/html, generated with Doxygen (Debian
# package doxygen).  Every undocumented declaration fails the build.  The
# default build does not need Doxygen; without it the target says so.
find_program(IPACL_DOXYGEN doxygen)
file(GLOB IPACL_DOC_HEADERS CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/ipacl/*.h
  ${PROJECT_SOURCE_DIR}/platform/*.h)
list(APPEND IPACL_DOC_HEADERS ${PROJECT_BINARY_DIR}/include/ipacl/version.h)
if(IPACL_DOXYGEN)
  string(REPLACE ";" " \\\n    " IPACL_DOC_INPUT "${IPACL_DOC_HEADERS}")
  configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
  add_custom_target(docs
    COMMAND ${IPACL_DOXYGEN} ${PROJECT_BINARY_DIR}/Doxyfile
    COMMENT "API reference in ${PROJECT_BINARY_DIR}/docs/html"
    DEPENDS ${IPACL_DOC_HEADERS} ${PROJECT_SOURCE_DIR}/docs/Doxyfile.in
    VERBATIM)
else()
  add_custom_target(docs
    COMMAND ${CMAKE_COMMAND} -E echo "the API reference needs Doxygen: install the Debian package doxygen"
    COMMAND ${CMAKE_COMMAND} -E false
    VERBATIM)
endif()
