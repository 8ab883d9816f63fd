# Install rules: the shared library, the public headers, a CMake package
# (find_package(norvik50) -> norvik50::norvik50) and a pkg-config file; with
# the Qt dialogs also libnorvik50_qt (find_package(norvik50 COMPONENTS qt)
# -> norvik50::qt) and norvik50-qt.pc.
include(CMakePackageConfigHelpers)

install(TARGETS norvik50 EXPORT norvik50Targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/norvik50 DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT norvik50Targets NAMESPACE norvik50::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/norvik50)
if(TARGET norvik50_qt_shared)
  # Its own export file, read only for the component "qt": a host of the
  # headless library must not need Qt to find the package.
  install(TARGETS norvik50_qt_shared EXPORT norvik50QtTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(EXPORT norvik50QtTargets NAMESPACE norvik50::
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/norvik50)
endif()

configure_package_config_file(cmake/norvik50Config.cmake.in
  ${PROJECT_BINARY_DIR}/norvik50Config.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/norvik50)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/norvik50ConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/norvik50Config.cmake
  ${PROJECT_BINARY_DIR}/norvik50ConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/norvik50)

# From the .pc file's folder back to the prefix: two levels for lib/, three
# for a multiarch lib/x86_64-linux-gnu/.
file(RELATIVE_PATH NORVIK50_PC_TO_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" NORVIK50_PC_TO_PREFIX "${NORVIK50_PC_TO_PREFIX}")
configure_file(cmake/norvik50.pc.in ${PROJECT_BINARY_DIR}/norvik50.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/norvik50.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(TARGET norvik50_qt_shared)
  configure_file(cmake/norvik50-qt.pc.in ${PROJECT_BINARY_DIR}/norvik50-qt.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/norvik50-qt.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()
install(DIRECTORY DESTINATION ${CMAKE_INSTALL_DATADIR}/norvik50)

# Installed into the system as root, the library is known to the loader at
# once: a host linked by hand runs without anyone calling ldconfig. Not for
# other prefixes or a staging DESTDIR, where the system cache must not move.
install(CODE [[
  if("$ENV{DESTDIR}" STREQUAL "" AND CMAKE_INSTALL_PREFIX MATCHES "^/usr(/local)?/?$")
    execute_process(COMMAND id -u OUTPUT_VARIABLE uid OUTPUT_STRIP_TRAILING_WHITESPACE)
    find_program(NORVIK50_LDCONFIG ldconfig PATHS /sbin /usr/sbin)
    if(uid STREQUAL "0" AND NORVIK50_LDCONFIG)
      message(STATUS "Refreshing the loader cache: ${NORVIK50_LDCONFIG}")
      execute_process(COMMAND ${NORVIK50_LDCONFIG})
    endif()
  endif()
]])
