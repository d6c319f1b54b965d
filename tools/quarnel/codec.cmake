# SPDX-License-Identifier: MIT
# quarnel_tool_codec: the tool's readers and writers of blocks, curves and
# LUT strings, apart from its commands, so that the fuzz targets build on
# them too. The tool itself reaches the library through the shared library;
# a build without it (the fuzz build) links the static core instead.
find_package(nlohmann_json REQUIRED)
set(QUARNEL_TOOL_DIR ${CMAKE_CURRENT_LIST_DIR})
add_library(quarnel_tool_codec STATIC
  ${QUARNEL_TOOL_DIR}/io/quiet_stdout.cpp
  ${QUARNEL_TOOL_DIR}/model/hex.cpp
  ${QUARNEL_TOOL_DIR}/model/lut_string.cpp
  ${QUARNEL_TOOL_DIR}/model/block_codec.cpp
  ${QUARNEL_TOOL_DIR}/formats/block_json.cpp
  ${QUARNEL_TOOL_DIR}/formats/json_fields.cpp
  ${QUARNEL_TOOL_DIR}/formats/text_formats.cpp)
target_include_directories(quarnel_tool_codec PUBLIC ${QUARNEL_TOOL_DIR} ${PROJECT_SOURCE_DIR}/include)
if(TARGET quarnel)
  target_link_libraries(quarnel_tool_codec PUBLIC quarnel nlohmann_json::nlohmann_json)
else()
  target_link_libraries(quarnel_tool_codec PUBLIC quarnel_core nlohmann_json::nlohmann_json)
endif()
# The block's layout and CRC are the library's own facts, linked in as plain values.
target_link_libraries(quarnel_tool_codec PUBLIC quarnel_facts)
quarnel_warnings(quarnel_tool_codec)
