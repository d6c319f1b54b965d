# SPDX-License-Identifier: MIT
# What an install puts down: the public header, the shared library with its
# CMake package (quarnel::quarnel) and pkg-config file, and the tool. Builds
# without the shared library install nothing.
if(NOT TARGET quarnel)
  return()
endif()
include(CMakePackageConfigHelpers)
set(QUARNEL_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/quarnel)

install(TARGETS quarnel EXPORT quarnelTargets FILE_SET HEADERS)
if(TARGET quarnel_tool)
  if(NOT WIN32)
    # The tool finds the library installed beside it, under whatever prefix
    # the tree is installed or moved to.
    file(RELATIVE_PATH tool_to_lib /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
    set_target_properties(quarnel_tool PROPERTIES INSTALL_RPATH "$ORIGIN/${tool_to_lib}")
  endif()
  install(TARGETS quarnel_tool)
endif()

install(EXPORT quarnelTargets NAMESPACE quarnel:: DESTINATION ${QUARNEL_CMAKE_DIR})
configure_package_config_file(cmake/quarnelConfig.cmake.in quarnelConfig.cmake
  INSTALL_DESTINATION ${QUARNEL_CMAKE_DIR})
# A caller built against 1.x keeps working with any later 1.y.
write_basic_package_version_file(quarnelConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/quarnelConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/quarnelConfigVersion.cmake
  DESTINATION ${QUARNEL_CMAKE_DIR})

if(WIN32)
  # The zip unpacks anywhere, so its pkg-config file finds the tree from
  # where it lies; the .def lets other toolchains make their own import library.
  set(QUARNEL_PC_PREFIX "\${pcfiledir}/../..")
  install(FILES src/quarnel.def DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(FILES LICENSE DESTINATION . RENAME LICENSE.txt)
else()
  # The prefix is only known at install time (cmake --install --prefix, or
  # /usr inside the .deb), so the file is finished then.
  set(QUARNEL_PC_PREFIX "@CMAKE_INSTALL_PREFIX@")
  install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)
endif()
configure_file(cmake/quarnel.pc.in quarnel.pc.in @ONLY)
install(CODE "configure_file(\"${CMAKE_CURRENT_BINARY_DIR}/quarnel.pc.in\" \"${CMAKE_CURRENT_BINARY_DIR}/quarnel.pc\" @ONLY)")
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quarnel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
