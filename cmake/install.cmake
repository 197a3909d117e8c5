# What a program needs to use the library: the shared library, its headers, those of the containers and the one
# of neighbours, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vornik1d)
install(TARGETS vornik1d EXPORT vornik1d-targets)
install(DIRECTORY include/vornik1d src/foundation/trelk TYPE INCLUDE FILES_MATCHING PATTERN "*.h")
install(FILES src/foundation/vornik/neighbors.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vornik)
install(EXPORT vornik1d-targets NAMESPACE vornik1d:: DESTINATION ${package_dir})

configure_package_config_file(cmake/vornik1d-config.cmake.in ${PROJECT_BINARY_DIR}/vornik1d-config.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vornik1d-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/vornik1d-config.cmake ${PROJECT_BINARY_DIR}/vornik1d-config-version.cmake
    DESTINATION ${package_dir})

# The prefix is told from where the file lies, so that what is installed may be moved.
file(RELATIVE_PATH PKGCONFIG_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/vornik1d.pc.in ${PROJECT_BINARY_DIR}/vornik1d.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vornik1d.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
