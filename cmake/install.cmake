# Installation: headers, both libraries, a CMake package (find_package(ipacl
# CONFIG) gives ipacl::ipacl, ipacl::ipacl_static and, where built,
# ipacl::platform_host) and a pkg-config file.
include(CMakePackageConfigHelpers)

set_target_properties(ipacl_static PROPERTIES EXPORT_NAME ipacl_static)
install(TARGETS ipacl ipacl_static EXPORT ipaclTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ipacl DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
# The platform declarations, for those who write a platform of their own.
install(FILES ${PROJECT_SOURCE_DIR}/platform/vel.h ${PROJECT_SOURCE_DIR}/platform/if_index.h
              ${PROJECT_SOURCE_DIR}/platform/tivra.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ipacl/platform)

set(IPACL_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/ipacl)
install(EXPORT ipaclTargets NAMESPACE ipacl:: DESTINATION ${IPACL_CMAKE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ipaclConfig.cmake.in
  ${PROJECT_BINARY_DIR}/ipaclConfig.cmake INSTALL_DESTINATION ${IPACL_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ipaclConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ipaclConfig.cmake ${PROJECT_BINARY_DIR}/ipaclConfigVersion.cmake
  DESTINATION ${IPACL_CMAKE_DIR})

# The .pc file finds its prefix relative to itself, so the tree can move.
file(RELATIVE_PATH IPACL_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${PROJECT_SOURCE_DIR}/cmake/ipacl.pc.in ${PROJECT_BINARY_DIR}/ipacl.pc @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/cmake/ipacl-platform-host.pc.in
  ${PROJECT_BINARY_DIR}/ipacl-platform-host.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ipacl.pc ${PROJECT_BINARY_DIR}/ipacl-platform-host.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The netfilter library's pkg-config file, where it is built.
if(TARGET ipacl_netfilter)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/ipacl-netfilter.pc.in
    ${PROJECT_BINARY_DIR}/ipacl-netfilter.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/ipacl-netfilter.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()
