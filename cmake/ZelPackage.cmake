# What the installed program has besides (packaging/), and the Debian package that cpack makes: scripts/package.sh.

# The day of the version: from the head of CHANGELOG.md once it is released, until then the day of the build.
file(STRINGS ${PROJECT_SOURCE_DIR}/CHANGELOG.md changes_head REGEX "^## ${PROJECT_VERSION} " LIMIT_COUNT 1)
if(changes_head MATCHES "([0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9])")
  set(ZEL_RELEASE_DATE ${CMAKE_MATCH_1})
else()
  string(TIMESTAMP ZEL_RELEASE_DATE "%Y-%m-%d" UTC)
endif()

option(ZEL_DEBIAN_PACKAGE "Install what a Debian package has besides, as scripts/package.sh does" OFF)
set(ZEL_PACKAGE_MAINTAINER "Terrain Path Profiler developers <maintainers@terrain-profiler.invalid>"
  CACHE STRING "Maintainer of the Debian package, with a mail address")

# The sanitized build is for tests alone.
if(NOT ZEL_SANITIZE)
  add_subdirectory(packaging)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME terrain-profiler)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT ${ZEL_PACKAGE_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "terrain profiles, clearance and losses of radio paths")
set(CPACK_PACKAGE_DESCRIPTION
"What lies between two radio stations: the ground along the path, the bulge
of the earth, the line of sight, the first Fresnel zone and how much of it
is free, and what the path loses: in free space, and by the Longley-Rice
irregular terrain model.
.
The program is a map on which stations are placed and linked, a profile
window with exports and a printed page, and a command line that does every
job without a window, also for long lists of links.
.
The shared library libzelProfiler01 does the same in programs written in
C, C++ and Python; its headers are included. So is a sample terrain.")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
# Libraries are found by dpkg-shlibdeps; these are read at run time without being linked.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "proj-data, fonts-dejavu-core | fonts-liberation, hicolor-icon-theme")
# gnuplot draws the signal graph, whose data and script are written without it; xdg-utils open the guide.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "gnuplot-nox | gnuplot, qt6-wayland, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "python3 (>= 3.11), python3 (<< 3.12), python3-numpy, pkg-config")
# Which package a host's own needs for the library, and what dpkg does when a library comes or goes.
configure_file(${PROJECT_SOURCE_DIR}/packaging/debian/shlibs.in ${PROJECT_BINARY_DIR}/packaging/shlibs @ONLY)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/packaging/shlibs)
foreach(file postinst prerm postrm triggers)
  list(APPEND CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/debian/${file})
endforeach()
include(CPack)
