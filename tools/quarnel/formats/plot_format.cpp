// SPDX-License-Identifier: MIT
// The three curves drawn over the identity, for a quick look at a mode.

#include <cairo.h>

#include "formats/binary_formats.h"
#include "formats/cairo_picture.h"
#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

constexpr int kWidth = 640, kHeight = 480;
// The plot area inside the margins that hold the labels.
constexpr double kLeft = 72, kTop = 24, kAreaWidth = 544, kAreaHeight = 392;
constexpr double kFullScale = 65535.0;
constexpr double kCurveWidth = 2.5;

struct Colour {
    double r, g, b;
};
constexpr Colour kPlaneColours[3] = {{0.8, 0.0, 0.0}, {0.0, 0.6, 0.0}, {0.0, 0.0, 0.8}};
constexpr Colour kIdentityColour = {0.6, 0.6, 0.6};
constexpr const char* kPlaneNames[3] = {"red", "green", "blue"};

double X(double input) { return kLeft + input / (kCurveSize - 1) * kAreaWidth; }
double Y(double output) { return kTop + kAreaHeight - output / kFullScale * kAreaHeight; }

void SetColour(cairo_t* cr, const Colour& c) { cairo_set_source_rgb(cr, c.r, c.g, c.b); }

void Text(cairo_t* cr, double x, double y, const char* text, double align) {
    cairo_text_extents_t extents;
    cairo_text_extents(cr, text, &extents);
    cairo_move_to(cr, x - align * extents.width, y);
    cairo_show_text(cr, text);
}

void DrawAxes(cairo_t* cr) {
    cairo_set_source_rgb(cr, 0, 0, 0);
    cairo_set_line_width(cr, 1);
    cairo_rectangle(cr, kLeft, kTop, kAreaWidth, kAreaHeight);
    cairo_stroke(cr);
    cairo_set_font_size(cr, 11);
    for (int tick = 0; tick <= 4; ++tick) {
        const int input = tick == 4 ? 255 : tick * 64;
        Text(cr, X(input), kTop + kAreaHeight + 14, std::to_string(input).c_str(), 0.5);
        const int output = tick * 16384 - (tick == 4 ? 1 : 0);
        Text(cr, kLeft - 6, Y(output) + 4, std::to_string(output).c_str(), 1.0);
    }
    cairo_set_font_size(cr, 13);
    Text(cr, kLeft + kAreaWidth / 2, kHeight - 8, "input level", 0.5);
    cairo_save(cr);
    cairo_translate(cr, 16, kTop + kAreaHeight / 2);
    cairo_rotate(cr, -1.5707963267948966);
    Text(cr, 0, 0, "output (16-bit)", 0.5);
    cairo_restore(cr);
}

void DrawLine(cairo_t* cr, const Colour& colour, double width, auto&& valueAt) {
    SetColour(cr, colour);
    cairo_set_line_width(cr, width);
    for (int i = 0; i < kCurveSize; ++i) (i == 0 ? cairo_move_to : cairo_line_to)(cr, X(i), Y(valueAt(i)));
    cairo_stroke(cr);
}

void DrawLegend(cairo_t* cr) {
    cairo_set_font_size(cr, 12);
    for (int row = 0; row < 4; ++row) {
        const double y = kTop + 18 + row * 18;
        SetColour(cr, row < 3 ? kPlaneColours[row] : kIdentityColour);
        cairo_rectangle(cr, kLeft + 12, y - 8, 18, 8);
        cairo_fill(cr);
        cairo_set_source_rgb(cr, 0, 0, 0);
        Text(cr, kLeft + 36, y, row < 3 ? kPlaneNames[row] : "identity", 0.0);
    }
}

void Draw(cairo_surface_t* surface, const Curve& curve) {
    cairo_t* cr = cairo_create(surface);
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_paint(cr);
    DrawLine(cr, kIdentityColour, 1.0, [](int i) { return i / 255.0 * kFullScale; });
    for (size_t c = 0; c < 3; ++c)
        DrawLine(cr, kPlaneColours[c], kCurveWidth, [&](int i) { return curve[c][static_cast<size_t>(i)]; });
    DrawAxes(cr);
    DrawLegend(cr);
    cairo_destroy(cr);
}

}  // namespace

std::string CurveToPng(const Curve& curve) {
    return RenderPng(
        kWidth, kHeight, [&](cairo_surface_t* surface) { Draw(surface, curve); }, "plot");
}

std::string CurveToSvg(const Curve& curve) {
    return RenderSvg(
        kWidth, kHeight, [&](cairo_surface_t* surface) { Draw(surface, curve); }, "plot");
}

}  // namespace quarnel::tool
