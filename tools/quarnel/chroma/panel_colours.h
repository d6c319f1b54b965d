// SPDX-License-Identifier: MIT
#pragma once
// What the chromaticity picture and the profile installer know of a panel,
// all from the one panel model: its primaries, the white a mode gives it,
// and a mode's display profile.

#include <array>
#include <optional>
#include <string>

#include "chroma/cie1931.h"
#include "commands/curve_cli.h"
#include "formats/curve_subject.h"
#include "mode_curve.h"

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

// The display profile of the mode's curve, as `quarnel lut MODE -o x.icc`
// writes it, for the display when it is known.
std::string ModeProfile(const std::string& modeName, const CurveCli& cli, const GlobalOptions& global,
                        const std::optional<DisplayIdentity>& display = std::nullopt);

}  // namespace quarnel::tool
