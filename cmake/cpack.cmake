# Debian packages (`cpack -G DEB` in the build directory), one per install
# component:
#   libipacl1    runtime      the shared libraries (soname .1) and the license
#   libipacl-dev development  headers, .so links, static libraries, CMake
#                             package, pkg-config files, ipacl(3)
#   ipacl        tools        the ipacl program and ipacl(1)
# Library dependencies come from dpkg-shlibdeps (Debian packages dpkg-dev and
# file); the packages depend on one another at the exact version.
set(CPACK_PACKAGE_NAME ipacl)
set(CPACK_PACKAGE_VENDOR "the ipacl authors")
set(CPACK_PACKAGE_CONTACT "the ipacl authors")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "IP access-control-list utility library")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development tools)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(ipacl_deb_version "${PROJECT_VERSION}-1")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libipacl1)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
  "IP access-control-list utility library (MIT)\n libipacl.so.1: records, checks, byte order, messaging and text of\n IP access-control lists, with the host platform libipacl_platform_host.so.1.")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)  # libipacl1 declares its shlibs

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libipacl-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libipacl1 (= ${ipacl_deb_version})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
  "IP access-control-list utility library, development files (MIT)\n Headers, static libraries, the CMake package, pkg-config files and the\n ipacl(3) manual page.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME ipacl)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION net)
set(CPACK_DEBIAN_TOOLS_DESCRIPTION
  "IP access-control-list tool (MIT)\n The ipacl program: checks, shows, encodes and decodes filters and runs a\n live demo of the library; with the ipacl(1) manual page.")

include(CPack)
