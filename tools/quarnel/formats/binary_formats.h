// SPDX-License-Identifier: MIT
#pragma once
// The curve as a display profile and as a plot.

#include <string>

#include "curve.h"

namespace quarnel::tool {

std::string CurveToIcc(const Curve& curve);

// The three curves over the identity, axes and legend labelled.
std::string CurveToPng(const Curve& curve);
std::string CurveToSvg(const Curve& curve);

}  // namespace quarnel::tool
