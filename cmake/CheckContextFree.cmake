# SPDX-License-Identifier: MIT
# Fails when a header of the library core's colour, LUT, calibration or codec
# folders mentions the caller's record: those steps take and return plain
# values, and only api/ reads and writes CctContext.
# Usage: cmake -DSOURCE_DIR=<src> -P CheckContextFree.cmake
get_filename_component(SOURCE_DIR "${SOURCE_DIR}" ABSOLUTE)
set(violations "")
foreach(folder color lut calib codec)
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
