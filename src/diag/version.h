// SPDX-License-Identifier: MIT
#pragma once
// Version numbers the library reports.

#include <cstdint>

namespace quarnel {

// Interface version: stored by request 0 and printed in every context dump.
inline constexpr unsigned kInterfaceMajor = 8;
inline constexpr unsigned kInterfaceMinor = 11;
inline constexpr unsigned kInterfaceBuild = 0;
inline constexpr unsigned kInterfaceVersion = (kInterfaceMajor << 16) | (kInterfaceMinor << 8) | kInterfaceBuild;

// Build string printed by ShowVersion.
inline constexpr const char* kLibraryVersionText = "v1.0.0.2_20210802";

// ShowVersion: prints the build string; returns what printf returns.
int32_t ShowLibraryVersion();

}  // namespace quarnel
