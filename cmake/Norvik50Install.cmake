# Install rules: the shared library, the public headers, a CMake package
# (find_package(norvik50) -> norvik50::norvik50) and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS norvik50 EXPORT norvik50Targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/norvik50 DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT norvik50Targets NAMESPACE norvik50::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/norvik50)

configure_package_config_file(cmake/norvik50Config.cmake.in
  ${PROJECT_BINARY_DIR}/norvik50Config.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/norvik50)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/norvik50ConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/norvik50Config.cmake
  ${PROJECT_BINARY_DIR}/norvik50ConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/norvik50)

configure_file(cmake/norvik50.pc.in ${PROJECT_BINARY_DIR}/norvik50.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/norvik50.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(DIRECTORY DESTINATION ${CMAKE_INSTALL_DATADIR}/norvik50)
