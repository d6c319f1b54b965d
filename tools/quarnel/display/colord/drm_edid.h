// SPDX-License-Identifier: MIT
#pragma once
// The EDID of every connected display, as the kernel's DRM connectors show
// them under /sys/class/drm.

#include <string>
#include <vector>

namespace quarnel::tool::colord {

struct OutputEdid {
    std::string output;  // connector name, e.g. eDP-1
    std::string edid;    // raw bytes
};

std::vector<OutputEdid> ConnectedEdids();

}  // namespace quarnel::tool::colord
