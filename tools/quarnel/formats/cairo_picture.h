// SPDX-License-Identifier: MIT
#pragma once
// A picture drawn with cairo, as PNG or SVG bytes.

#include <cairo.h>

#include <functional>
#include <string>

namespace quarnel::tool {

using DrawOnSurface = std::function<void(cairo_surface_t*)>;

// Throws ToolError (73) naming `what` when cairo fails.
std::string RenderPng(int width, int height, const DrawOnSurface& draw, const std::string& what);
std::string RenderSvg(int width, int height, const DrawOnSurface& draw, const std::string& what);

}  // namespace quarnel::tool
