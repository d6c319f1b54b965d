// SPDX-License-Identifier: MIT
#pragma once
// The curve as a display profile and as a plot.

#include <string>

#include "formats/curve_subject.h"
#include "model/curve.h"

namespace quarnel::tool {

// A version 2.4 display profile of the subject's panel with `curve` loaded:
// its colourants and tone curves, and the curve itself in `vcgt`. Throws
// ToolError (65) when the curve turns a channel off, 73 when LittleCMS fails.
std::string CurveToIcc(const Curve& curve, const CurveSubject& subject);

// The three curves over the identity, axes and legend labelled.
std::string CurveToPng(const Curve& curve);
std::string CurveToSvg(const Curve& curve);

}  // namespace quarnel::tool
