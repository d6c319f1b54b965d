// SPDX-License-Identifier: MIT
// Builds without libXrandr keep the display commands, which then report
// why they cannot reach a display.

#include "display/x11/gamma_ramp.h"

namespace quarnel::tool::x11 {
namespace {

GammaStatus Unavailable() { return {"this quarnel was built without X11 RandR support (libXrandr)"}; }

}  // namespace

GammaStatus LoadGammaCurve(const GammaTarget&, const Curve&) { return Unavailable(); }

GammaStatus ReadGammaCurve(const GammaTarget&, Curve&) { return Unavailable(); }

}  // namespace quarnel::tool::x11
