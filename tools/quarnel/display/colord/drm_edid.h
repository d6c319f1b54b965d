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

// Whether the connector is a notebook's own panel (eDP, LVDS, DSI).
bool IsBuiltInPanel(const std::string& output);

}  // namespace quarnel::tool::colord
