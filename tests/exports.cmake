# The shared library exports exactly the names of cmake/exports.txt: nothing
# missing, nothing extra.
find_program(IPACL_NM NAMES nm REQUIRED)
add_test(NAME exports
  COMMAND ${CMAKE_COMMAND} -DNM=${IPACL_NM} -DLIB=$<TARGET_FILE:ipacl>
          -DLIST=${PROJECT_SOURCE_DIR}/cmake/exports.txt
          -P ${CMAKE_CURRENT_SOURCE_DIR}/scripts/exports_check.cmake)
