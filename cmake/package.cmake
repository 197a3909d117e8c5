# The library as a Debian package: `cpack -G DEB` in a build directory that was configured with the prefix /usr.
set(CPACK_PACKAGE_NAME vornik1d)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "The vornik1d project")
set(CPACK_PACKAGE_DESCRIPTION "vornik1d meshes lines and networks of lines, in the plane and in space.
It cuts them into line elements whose lengths follow the sizes or metric
tensors given at their nodes.
.
This package contains the shared library, its C++ headers, a CMake package
and a pkg-config file.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS # whatever the umask
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_PACKAGE_NAME libvornik1d-dev)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
include(CPack)
