// SPDX-License-Identifier: MIT
#pragma once
// Running one mode inside an initialised session, for callers that show
// several modes of one panel.

#include <string>
#include <vector>

#include "library_session.h"
#include "mode_curve.h"

namespace quarnel::tool {

// The mode's request (CCTAPI 2..8 or a VX mode) and its curve and gains.
ModeCurve RunMode(LibrarySession& session, Mode mode, const CurveOptions& options);

std::vector<std::string> ModeNames();

}  // namespace quarnel::tool
