# SPDX-License-Identifier: MIT
# cpack: the .zip of the Windows cross build (DLL, import library, .def,
# header). The Debian packages are built from debian/ by scripts/package.sh.
if(NOT WIN32)
  return()
endif()
set(CPACK_PACKAGE_NAME quarnel)
set(CPACK_PACKAGE_VENDOR "The Quarnel developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Display colour-calibration library for notebook panels")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR ZIP)
set(CPACK_SYSTEM_NAME win64)
include(CPack)
