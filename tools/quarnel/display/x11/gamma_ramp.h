// SPDX-License-Identifier: MIT
#pragma once
// The gamma ramps of a live X11 display: load a mode's curve into the CRTCs
// that drive an output and read it back. Every call connects, does its work
// and disconnects, so nothing outlives the command that asked for it.

#include <string>

#include "model/curve.h"

namespace quarnel::tool::x11 {

// Which ramps a command works on: an empty display means $DISPLAY, an empty
// output every connected output.
struct GammaTarget {
    std::string display;
    std::string output;
};

// Why the display's ramps could not be reached, as one line for the user;
// empty when they were.
struct GammaStatus {
    std::string cause;
    bool ok() const { return cause.empty(); }
};

// Loads `curve` into every CRTC driving the target, resampled to each CRTC's
// gamma size by linear interpolation.
GammaStatus LoadGammaCurve(const GammaTarget& target, const Curve& curve);

// Reads the ramp of the first CRTC driving the target, resampled to 256
// entries when the CRTC's gamma size differs.
GammaStatus ReadGammaCurve(const GammaTarget& target, Curve& curve);

}  // namespace quarnel::tool::x11
