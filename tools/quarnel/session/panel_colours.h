// SPDX-License-Identifier: MIT
#pragma once
// What the chromaticity picture knows of a panel, all from the one panel
// model: its primaries and the white a mode gives it.

#include <array>
#include <optional>
#include <string>

#include "model/cie1931.h"
#include "session/curve_options.h"

namespace quarnel::tool {

struct PanelPrimaries {
    std::string source;           // the panel, for titles
    bool factoryData = false;     // measured primaries, else the record's colour space
    std::array<Xy, 3> primaries;  // red, green, blue
};

struct WhitePoint {
    double x = 0.0, y = 0.0;
    int cct = 0;  // kelvin
};

// Throws ToolError like LibrarySession for a calibration file it cannot use.
PanelPrimaries ReadPanelPrimaries(const CurveOptions& options);

// The calibrated white of the mode: full input through its curve on the
// panel; none when the mode cannot be built for this panel.
std::optional<WhitePoint> ModeWhite(Mode mode, const CurveOptions& options);

}  // namespace quarnel::tool
