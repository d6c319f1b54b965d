// SPDX-License-Identifier: MIT
#pragma once
// What a written curve belongs to: a display profile describes that panel
// with the curve loaded.

#include <optional>
#include <string>

#include "session/panel_source.h"

namespace quarnel::tool {

// The display the panel is known as, when the tool found it.
struct DisplayIdentity {
    std::string manufacturer;  // from its EDID
    std::string model;
    std::string edidMd5;   // of the raw EDID, in lower-case hex
    std::string deviceId;  // the colour daemon's device id
};

struct CurveSubject {
    PanelSubject panel;
    std::string mode;  // ModeSummary, or what the curve is
    std::optional<DisplayIdentity> display;
};

}  // namespace quarnel::tool
