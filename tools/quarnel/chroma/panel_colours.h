// SPDX-License-Identifier: MIT
#pragma once
// What the chromaticity picture and the profile installer know of a panel,
// behind one seam: its primaries, the white a mode gives it, and a mode's
// display profile.

#include <array>
#include <optional>
#include <string>

#include "chroma/cie1931.h"
#include "commands/curve_cli.h"
#include "mode_curve.h"
#include "mode_gains.h"

namespace quarnel::tool {

struct PanelPrimaries {
    std::string source;           // the panel, for titles
    bool factoryData = false;     // measured primaries, else the record's colour space
    std::array<Xy, 3> primaries;  // red, green, blue
};

// Throws ToolError like LibrarySession for a calibration file it cannot use.
PanelPrimaries ReadPanelPrimaries(const CurveOptions& options);

// The white of full drive through the mode's curve; none when the mode
// cannot be built for this panel.
std::optional<WhitePoint> ModeWhite(Mode mode, const CurveOptions& options);

// The display profile of the mode's curve, as `quarnel lut MODE -o x.icc`
// writes it.
std::string ModeProfile(const std::string& modeName, const CurveCli& cli, const GlobalOptions& global);

}  // namespace quarnel::tool
