# Installs the project and builds a separate C consumer against the installed
# tree (plain native builds only: the consumer is built with the host
# compiler and without the sanitizer runtime).
if(NOT CMAKE_CROSSCOMPILING AND NOT IPACL_SANITIZE)
  add_test(NAME install_and_consume
    COMMAND ${CMAKE_COMMAND} -DBUILD_DIR=${PROJECT_BINARY_DIR} -DSOURCE_DIR=${PROJECT_SOURCE_DIR}
            -DWORK_DIR=${PROJECT_BINARY_DIR}/install-test -P ${CMAKE_CURRENT_SOURCE_DIR}/scripts/install_and_consume.cmake)
endif()
