# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# The Debian package: `cpack -G DEB` in the folder of a release build. See make-deb.sh.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME plotvw)
set(CPACK_PACKAGE_VENDOR "plotvw contributors")
set(CPACK_PACKAGE_CONTACT "plotvw contributors <noreply@plotvw.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "viewer and converter for KORVEL graphs")
set(CPACK_PACKAGE_DESCRIPTION
"plotvw shows PLF files, the graphs that the KORVEL host application
writes as terminal-graphics byte streams. It zooms into them, prints
them and exports JPEG and EPS files.
.
The package also contains plfconvert, which converts graphs to PNG,
JPEG, SVG, PDF and EPS without a display, plfinfo, which lists what a
graph contains, and krvhost, which plays the host for testing.")

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# For texts, of which only boxes are drawn without any font.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core")
# Qt's platform plugin for desktops without an X server.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "qt6-wayland")

set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian/stage.cmake)
# Read by that script.
set(CPACK_PLOTVW_SOURCE ${PROJECT_SOURCE_DIR})

include(CPack)
