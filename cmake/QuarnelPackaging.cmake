# SPDX-License-Identifier: MIT
# cpack: a .deb on Linux (library, header, tool; dependencies from
# dpkg-shlibdeps) and a .zip from the Windows cross build (DLL, import
# library, .def, header).
set(CPACK_PACKAGE_NAME quarnel)
set(CPACK_PACKAGE_VENDOR "The Quarnel developers")
set(CPACK_PACKAGE_CONTACT "The Quarnel developers <dev@quarnel.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Display colour-calibration library for notebook panels")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_SYSTEM_NAME win64)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
endif()
include(CPack)
