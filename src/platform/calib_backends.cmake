# SPDX-License-Identifier: MIT
# The firmware's ACPI control device and the display enumeration behind the
# calibration sources.
target_sources(quarnel_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/acpi_device.cpp
  ${CMAKE_CURRENT_LIST_DIR}/display_system.cpp)
if(WIN32)
  target_sources(quarnel_core PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/win32/acpi_device_win32.cpp
    ${CMAKE_CURRENT_LIST_DIR}/win32/display_system_win32.cpp)
else()
  target_sources(quarnel_core PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/posix/acpi_device_posix.cpp
    ${CMAKE_CURRENT_LIST_DIR}/posix/sysfs_display_system.cpp)
endif()
