# SPDX-License-Identifier: MIT
# Fails when a header of any folder of the library core below api/ mentions
# the caller's record: those steps take and return plain values, the trace
# log writes what it is given, and only api/ reads and writes CctContext.
# Usage: cmake -DSOURCE_DIR=<src> -P CheckContextFree.cmake
get_filename_component(SOURCE_DIR "${SOURCE_DIR}" ABSOLUTE)
set(violations "")
foreach(folder core platform diag color lut calib codec)
  file(GLOB headers RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/${folder}/*.h)
  foreach(header IN LISTS headers)
    file(STRINGS ${SOURCE_DIR}/${header} lines REGEX "CctContext")
    if(lines)
      string(APPEND violations "  ${header}\n")
    endif()
  endforeach()
endforeach()
if(violations)
  message(FATAL_ERROR "These headers mention CctContext:\n${violations}")
endif()
