// SPDX-License-Identifier: MIT
// Builds without libXrandr keep the display commands, which then report
// why they cannot reach a display.

#include "x11/gamma_ramp.h"

namespace quarnel::x11 {
namespace {

GammaStatus Unavailable() { return {"this quarnel was built without X11 RandR support (libXrandr)"}; }

}  // namespace

GammaStatus LoadGammaCurve(const GammaTarget&, const GammaCurve&) { return Unavailable(); }

GammaStatus ReadGammaCurve(const GammaTarget&, GammaCurve&) { return Unavailable(); }

}  // namespace quarnel::x11
