// SPDX-License-Identifier: MIT
#pragma once
// Display enumeration over the kernel's DRM class folder: adapters are the
// cards, monitors the connected connectors, and a connector's only value is
// "EDID", the contents of its edid file.

#include <filesystem>
#include <memory>

#include "platform/display_system.h"

namespace quarnel::platform {

inline constexpr const char* kDrmClassFolder = "/sys/class/drm";

std::unique_ptr<DisplaySystem> MakeSysfsDisplaySystem(std::filesystem::path drmClass);

}  // namespace quarnel::platform
