// SPDX-License-Identifier: MIT
#pragma once
// The gamma ramps of a live X11 display: load a mode's curve into the CRTCs
// that drive an output and read it back. Every call connects, does its work
// and disconnects, so nothing outlives the command that asked for it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace quarnel::x11 {

inline constexpr int kCurveLevels = 256;

// Red, green and blue planes of 256 16-bit entries, the shape of a mode's LUT.
using GammaCurve = std::array<std::array<std::uint16_t, kCurveLevels>, 3>;

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

// The neutral ramp: entry i is i x 256, what an X server starts with.
inline GammaCurve IdentityCurve() {
    GammaCurve curve{};
    for (auto& plane : curve)
        for (int i = 0; i < kCurveLevels; ++i) plane[static_cast<std::size_t>(i)] = static_cast<std::uint16_t>(i * 256);
    return curve;
}

// Loads `curve` into every CRTC driving the target, resampled to each CRTC's
// gamma size by linear interpolation.
GammaStatus LoadGammaCurve(const GammaTarget& target, const GammaCurve& curve);

// Reads the ramp of the first CRTC driving the target, resampled to 256
// entries when the CRTC's gamma size differs.
GammaStatus ReadGammaCurve(const GammaTarget& target, GammaCurve& curve);

}  // namespace quarnel::x11
