# The linker version script is made from cmake/exports.txt, the one list of
# the names the library exports: everything else stays local.
set(IPACL_EXPORTS_LIST ${PROJECT_SOURCE_DIR}/cmake/exports.txt)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${IPACL_EXPORTS_LIST})
file(STRINGS ${IPACL_EXPORTS_LIST} _ipacl_exports)
set(_ipacl_map "IPACL_1 {\n  global:\n")
foreach(name ${_ipacl_exports})
  string(APPEND _ipacl_map "    ${name};\n")
endforeach()
string(APPEND _ipacl_map "  local:\n    *;\n};\n")
set(IPACL_MAP ${PROJECT_BINARY_DIR}/ipacl.map)
file(WRITE ${IPACL_MAP}.tmp "${_ipacl_map}")
configure_file(${IPACL_MAP}.tmp ${IPACL_MAP} COPYONLY)
