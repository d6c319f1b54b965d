// SPDX-License-Identifier: MIT
// The chromaticity picture, drawn with cairo. On the left the whole diagram
// (x 0..0.8, y 0..0.9): spectral locus, the panel's and sRGB's gamuts, the
// Planckian locus, the whites. On the right the whites enlarged, with colour
// temperatures marked on the Planckian locus, so that a shift of a few
// hundred kelvin is plain to see.

#include "formats/chromaticity_plot.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "formats/cairo_picture.h"
#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

constexpr int kWidth = 1140, kHeight = 620;

// A square-scaled view of the xy plane: `scale` pixels per unit, `origin` at
// the bottom-left corner of a width x height box.
struct Frame {
    double left, top, width, height, scale;
    Xy origin;
    double X(double x) const { return left + (x - origin.x) * scale; }
    double Y(double y) const { return top + height - (y - origin.y) * scale; }
    Xy Max() const { return {origin.x + width / scale, origin.y + height / scale}; }
};

constexpr double kWholeScale = 600;  // 0.8 x 0.9 of xy in 480 x 540 pixels
constexpr Frame kWhole{60, 30, 0.8 * kWholeScale, 0.9 * kWholeScale, kWholeScale, {0, 0}};
constexpr double kZoomLeft = 610, kZoomTop = 30, kZoomWidth = 510, kZoomHeight = 360;
// The whites take the left part of the enlarged view, their labels the right.
constexpr double kZoomMinSpan = 0.04, kDotsWidth = 0.42, kDotsHeight = 0.7, kDotsLeft = 0.1;
constexpr double kLegendTop = 430, kLegendRow = 19;

struct Colour {
    double r, g, b;
};
constexpr Colour kBlack{0, 0, 0}, kGrid{0.88, 0.88, 0.88}, kLocusFill{0.965, 0.965, 0.975};
constexpr Colour kPanelColour{0.85, 0.33, 0.0}, kSrgbColour{0.35, 0.35, 0.35}, kPlanckColour{0.55, 0.1, 0.1};
constexpr Colour kWhiteColours[] = {{0.0, 0.45, 0.70},  {0.80, 0.47, 0.65}, {0.0, 0.62, 0.45},  {0.90, 0.62, 0.0},
                                    {0.34, 0.71, 0.91}, {0.84, 0.37, 0.0},  {0.45, 0.25, 0.60}, {0.0, 0.0, 0.0}};
constexpr double kDash[] = {6, 4};
constexpr int kLabelledNanometres[] = {460, 480, 490, 500, 510, 520, 540, 560, 580, 600, 620, 700};
constexpr double kInsideLabelX = 0.1;
constexpr double kKelvinTicks[] = {1800, 2000, 2500, 3000, 3500, 4000,  4500,  5000,  5500, 6000,
                                   6500, 7000, 7500, 8000, 9000, 10000, 12000, 15000, 20000};
constexpr int kPlanckSteps = 400;  // even in mired between the ends of the approximation
constexpr double kTickLength = 7, kDotRadius = 5, kSmallDotRadius = 3, kLabelGap = 28, kLabelColumnGap = 24;
constexpr Colour kLeaderColour{0.6, 0.6, 0.6};
constexpr double kPatchAlpha = 0.8;

void SetColour(cairo_t* cr, const Colour& c) { cairo_set_source_rgb(cr, c.r, c.g, c.b); }
const Colour& WhiteColour(size_t i) { return kWhiteColours[i % std::size(kWhiteColours)]; }

double TextWidth(cairo_t* cr, const std::string& text) {
    cairo_text_extents_t extents;
    cairo_text_extents(cr, text.c_str(), &extents);
    return extents.x_advance;
}

void Text(cairo_t* cr, double x, double y, const std::string& text, double align = 0.0) {
    cairo_move_to(cr, x - align * TextWidth(cr, text), y);
    cairo_show_text(cr, text.c_str());
}

// Text on a pale patch, readable over the lines it crosses.
void LabelText(cairo_t* cr, double x, double y, const std::string& text, const Colour& colour, double align = 0.0) {
    cairo_text_extents_t e;
    cairo_text_extents(cr, text.c_str(), &e);
    const double left = x - align * e.x_advance;
    cairo_set_source_rgba(cr, 1, 1, 1, kPatchAlpha);
    cairo_rectangle(cr, left + e.x_bearing - 1, y + e.y_bearing - 1, e.width + 2, e.height + 2);
    cairo_fill(cr);
    SetColour(cr, colour);
    Text(cr, x, y, text, align);
}

std::string Decimal(double v, const char* format = "%.1f") {
    char text[32];
    std::snprintf(text, sizeof text, format, v);
    return text;
}

void ClipTo(cairo_t* cr, const Frame& f) {
    cairo_rectangle(cr, f.left, f.top, f.width, f.height);
    cairo_clip(cr);
}

void DrawGrid(cairo_t* cr, const Frame& f, double step, const char* format) {
    cairo_set_line_width(cr, 1);
    cairo_set_font_size(cr, 11);
    const Xy max = f.Max();
    for (double v = std::ceil(f.origin.x / step) * step; v <= max.x + 1e-9; v += step) {
        SetColour(cr, kGrid);
        cairo_move_to(cr, f.X(v), f.top);
        cairo_line_to(cr, f.X(v), f.top + f.height);
        cairo_stroke(cr);
        SetColour(cr, kBlack);
        Text(cr, f.X(v), f.top + f.height + 14, Decimal(v, format), 0.5);
    }
    for (double v = std::ceil(f.origin.y / step) * step; v <= max.y + 1e-9; v += step) {
        SetColour(cr, kGrid);
        cairo_move_to(cr, f.left, f.Y(v));
        cairo_line_to(cr, f.left + f.width, f.Y(v));
        cairo_stroke(cr);
        SetColour(cr, kBlack);
        Text(cr, f.left - 5, f.Y(v) + 4, Decimal(v, format), 1.0);
    }
}

void DrawFrameBox(cairo_t* cr, const Frame& f) {
    SetColour(cr, kBlack);
    cairo_set_line_width(cr, 1);
    cairo_rectangle(cr, f.left, f.top, f.width, f.height);
    cairo_stroke(cr);
    cairo_set_font_size(cr, 13);
    Text(cr, f.left + f.width / 2, f.top + f.height + 30, "x", 0.5);
    Text(cr, f.left - 40, f.top + f.height / 2, "y", 0.5);
}

void DrawSpectralLocus(cairo_t* cr, const Frame& f, bool labelled) {
    const auto locus = SpectralLocus();
    cairo_new_path(cr);
    for (const auto& p : locus) cairo_line_to(cr, f.X(p.xy.x), f.Y(p.xy.y));
    cairo_close_path(cr);
    SetColour(cr, kLocusFill);
    cairo_fill_preserve(cr);
    SetColour(cr, kBlack);
    cairo_set_line_width(cr, 1.5);
    cairo_stroke(cr);
    if (!labelled) return;
    cairo_set_font_size(cr, 10);
    const Xy centre = kD65;
    for (const auto& p : locus) {
        if (std::find(std::begin(kLabelledNanometres), std::end(kLabelledNanometres), p.nanometres) ==
            std::end(kLabelledNanometres))
            continue;
        // Outward from the white, beyond the curve.
        const double dx = p.xy.x - centre.x, dy = p.xy.y - centre.y, length = std::hypot(dx, dy);
        // Near the y axis the labels go inside the curve, clear of the axis labels.
        const bool inside = p.xy.x < kInsideLabelX;
        const double out = inside ? -10 : 14;
        const double px = f.X(p.xy.x) + out * dx / length, py = f.Y(p.xy.y) - out * dy / length;
        Text(cr, px, py + 4, std::to_string(p.nanometres), dx < 0 && !inside ? 1.0 : 0.0);
    }
}

// Each edge its own sub-path, so that every dash pattern starts at a vertex.
void DrawTriangle(cairo_t* cr, const Frame& f, const std::array<Xy, 3>& t, const Colour& colour, bool dashed) {
    SetColour(cr, colour);
    cairo_set_line_width(cr, dashed ? 1.5 : 3);
    cairo_set_dash(cr, kDash, dashed ? 2 : 0, 0);
    for (size_t i = 0; i < 3; ++i) {
        cairo_move_to(cr, f.X(t[i].x), f.Y(t[i].y));
        cairo_line_to(cr, f.X(t[(i + 1) % 3].x), f.Y(t[(i + 1) % 3].y));
    }
    cairo_stroke(cr);
    cairo_set_dash(cr, nullptr, 0, 0);
}

double KelvinAt(int step) {  // even steps in mired, the scale on which the locus is even
    const double hot = 1e6 / kPlanckianMaxKelvin, cold = 1e6 / kPlanckianMinKelvin;
    return 1e6 / (hot + (cold - hot) * step / kPlanckSteps);
}

void DrawPlanckianLocus(cairo_t* cr, const Frame& f, bool ticks) {
    SetColour(cr, kPlanckColour);
    cairo_set_line_width(cr, 1.5);
    cairo_new_path(cr);
    for (int i = 0; i <= kPlanckSteps; ++i) {
        const Xy p = PlanckianXy(KelvinAt(i));
        cairo_line_to(cr, f.X(p.x), f.Y(p.y));
    }
    cairo_stroke(cr);
    if (!ticks) return;
    cairo_set_font_size(cr, 10);
    for (double kelvin : kKelvinTicks) {
        const Xy a = PlanckianXy(kelvin * 0.99), b = PlanckianXy(kelvin * 1.01), p = PlanckianXy(kelvin);
        // The normal in device space, pointing below the locus.
        double nx = f.Y(b.y) - f.Y(a.y), ny = -(f.X(b.x) - f.X(a.x));
        const double length = std::hypot(nx, ny);
        nx /= length;
        ny /= length;
        if (ny < 0) nx = -nx, ny = -ny;
        const double x = f.X(p.x), y = f.Y(p.y);
        cairo_move_to(cr, x - nx * kTickLength, y - ny * kTickLength);
        cairo_line_to(cr, x + nx * kTickLength, y + ny * kTickLength);
        cairo_stroke(cr);
        LabelText(cr, x + nx * (kTickLength + 4), y + ny * (kTickLength + 12), Decimal(kelvin, "%.0f K"), kPlanckColour,
                  0.5);
    }
}

void Dot(cairo_t* cr, double x, double y, double radius, const Colour& colour) {
    cairo_new_path(cr);
    cairo_arc(cr, x, y, radius, 0, 2 * M_PI);
    SetColour(cr, colour);
    cairo_fill_preserve(cr);
    SetColour(cr, kBlack);
    cairo_set_line_width(cr, 1);
    cairo_stroke(cr);
}

void DrawSliderTrack(cairo_t* cr, const Frame& f, const std::vector<Xy>& track) {
    if (track.size() < 2) return;
    SetColour(cr, kWhiteColours[0]);
    cairo_set_line_width(cr, 1.5);
    cairo_set_dash(cr, kDash, 2, 0);
    cairo_new_path(cr);
    for (const Xy& p : track) cairo_line_to(cr, f.X(p.x), f.Y(p.y));
    cairo_stroke(cr);
    cairo_set_dash(cr, nullptr, 0, 0);
    cairo_set_font_size(cr, 10);
    Text(cr, f.X(track.front().x) + 6, f.Y(track.front().y) - 4, "0.5");
    Text(cr, f.X(track.back().x) - 6, f.Y(track.back().y) + 12, "1.5", 1.0);
}

struct PlacedLabel {
    double dotX, dotY, y;
    size_t index;
};

// Labels stand in a column right of every dot, each as high as its dot
// unless that would overlap its neighbour.
std::vector<PlacedLabel> PlaceLabels(const Frame& f, const std::vector<LabelledWhite>& whites) {
    std::vector<PlacedLabel> placed;
    for (size_t i = 0; i < whites.size(); ++i)
        placed.push_back({f.X(whites[i].xy.x), f.Y(whites[i].xy.y), f.Y(whites[i].xy.y) + 4, i});
    std::sort(placed.begin(), placed.end(), [](const auto& a, const auto& b) { return a.y < b.y; });
    for (size_t i = 1; i < placed.size(); ++i) placed[i].y = std::max(placed[i].y, placed[i - 1].y + kLabelGap);
    const double bottom = f.top + f.height - 18;  // room for the second line
    for (size_t i = placed.size(); i-- > 0;) {
        const double limit = i + 1 < placed.size() ? placed[i + 1].y - kLabelGap : bottom;
        placed[i].y = std::min(placed[i].y, limit);
    }
    return placed;
}

std::string Coordinates(const LabelledWhite& white) {
    char text[64];
    std::snprintf(text, sizeof text, "%d K   x %.4f  y %.4f", white.cct, white.xy.x, white.xy.y);
    return text;
}

void DrawWhites(cairo_t* cr, const Frame& f, const std::vector<LabelledWhite>& whites, bool labelled) {
    if (!labelled) {
        for (size_t i = 0; i < whites.size(); ++i)
            Dot(cr, f.X(whites[i].xy.x), f.Y(whites[i].xy.y), kSmallDotRadius, WhiteColour(i));
        return;
    }
    cairo_set_font_size(cr, 12);
    const auto placed = PlaceLabels(f, whites);
    double column = 0;
    for (const auto& label : placed) column = std::max(column, label.dotX + kLabelColumnGap);
    for (const auto& label : placed) {
        SetColour(cr, kLeaderColour);
        cairo_set_line_width(cr, 1);
        cairo_move_to(cr, label.dotX, label.dotY);
        cairo_line_to(cr, column - 3, label.y - 4);
        cairo_stroke(cr);
        cairo_set_font_size(cr, 12);
        LabelText(cr, column, label.y, whites[label.index].label, kBlack);
        cairo_set_font_size(cr, 10);
        LabelText(cr, column, label.y + 12, Coordinates(whites[label.index]), kBlack);
    }
    for (size_t i = 0; i < whites.size(); ++i)
        Dot(cr, f.X(whites[i].xy.x), f.Y(whites[i].xy.y), kDotRadius, WhiteColour(i));
}

void DrawD65(cairo_t* cr, const Frame& f, bool labelled) {
    const double x = f.X(kD65.x), y = f.Y(kD65.y);
    SetColour(cr, kSrgbColour);
    cairo_set_line_width(cr, 1.5);
    cairo_move_to(cr, x - 6, y);
    cairo_line_to(cr, x + 6, y);
    cairo_move_to(cr, x, y - 6);
    cairo_line_to(cr, x, y + 6);
    cairo_stroke(cr);
    if (!labelled) return;
    cairo_set_font_size(cr, 11);
    Text(cr, x - 8, y - 8, "D65", 1.0);
}

// A view around the whites and D65 at the same scale in x and y, the whites
// in its left part so that their labels fit on the right.
Frame ZoomFrame(const std::vector<LabelledWhite>& whites) {
    Xy lo = kD65, hi = kD65;
    for (const auto& w : whites) {
        lo = {std::min(lo.x, w.xy.x), std::min(lo.y, w.xy.y)};
        hi = {std::max(hi.x, w.xy.x), std::max(hi.y, w.xy.y)};
    }
    const double scale = std::min({kDotsWidth * kZoomWidth / (hi.x - lo.x + 1e-9),
                                   kDotsHeight * kZoomHeight / (hi.y - lo.y + 1e-9), kZoomHeight / kZoomMinSpan});
    const double left = lo.x - kDotsLeft * kZoomWidth / scale;
    const double bottom = (lo.y + hi.y) / 2 - kZoomHeight / scale / 2;
    return {kZoomLeft, kZoomTop, kZoomWidth, kZoomHeight, scale, {left, bottom}};
}

void DrawLegendLine(cairo_t* cr, int row, const Colour& colour, bool dashed, const std::string& text) {
    const double y = kLegendTop + row * kLegendRow;
    SetColour(cr, colour);
    cairo_set_line_width(cr, 2);
    cairo_set_dash(cr, kDash, dashed ? 2 : 0, 0);
    cairo_move_to(cr, kZoomLeft, y - 4);
    cairo_line_to(cr, kZoomLeft + 28, y - 4);
    cairo_stroke(cr);
    cairo_set_dash(cr, nullptr, 0, 0);
    SetColour(cr, kBlack);
    Text(cr, kZoomLeft + 36, y, text);
}

void DrawLegend(cairo_t* cr, const ChromaticityScene& scene) {
    cairo_set_font_size(cr, 12);
    DrawLegendLine(cr, 0, kPanelColour, false, scene.gamutLabel);
    DrawLegendLine(cr, 1, kSrgbColour, true, "sRGB primaries, + its D65 white");
    DrawLegendLine(cr, 2, kPlanckColour, false, "Planckian locus (black body), colour temperature");
    if (scene.sliderTrack.size() > 1)
        DrawLegendLine(cr, 3, kWhiteColours[0], true, "slider from warm (0.5) to cold (1.5)");
    SetColour(cr, kBlack);
    Text(cr, kZoomLeft, kLegendTop + 4.5 * kLegendRow, "Dots: the white of full drive in each mode.");
}

void DrawWholeDiagram(cairo_t* cr, const ChromaticityScene& scene, const Frame& zoom) {
    DrawGrid(cr, kWhole, 0.1, "%.1f");
    DrawSpectralLocus(cr, kWhole, true);
    DrawTriangle(cr, kWhole, scene.primaries, kPanelColour, false);
    DrawTriangle(cr, kWhole, kSrgbPrimaries, kSrgbColour, true);
    DrawPlanckianLocus(cr, kWhole, false);
    DrawWhites(cr, kWhole, scene.whites, false);
    SetColour(cr, kBlack);
    cairo_set_line_width(cr, 1);
    const Xy max = zoom.Max();
    cairo_rectangle(cr, kWhole.X(zoom.origin.x), kWhole.Y(max.y), (max.x - zoom.origin.x) * kWhole.scale,
                    (max.y - zoom.origin.y) * kWhole.scale);
    cairo_stroke(cr);
    DrawFrameBox(cr, kWhole);
    cairo_set_font_size(cr, 15);
    Text(cr, kWhole.X(0.44), kWhole.Y(0.85), "CIE 1931 xy");
    cairo_set_font_size(cr, 12);
    Text(cr, kWhole.X(0.44), kWhole.Y(0.85) + 18, scene.title);
}

void DrawZoom(cairo_t* cr, const ChromaticityScene& scene, const Frame& zoom) {
    const double span = zoom.height / zoom.scale;
    const double step = span > 0.15 ? 0.05 : span > 0.06 ? 0.02 : 0.01;
    DrawGrid(cr, zoom, step, "%.2f");
    cairo_save(cr);
    ClipTo(cr, zoom);
    DrawSpectralLocus(cr, zoom, false);
    DrawTriangle(cr, zoom, scene.primaries, kPanelColour, false);
    DrawTriangle(cr, zoom, kSrgbPrimaries, kSrgbColour, true);
    DrawPlanckianLocus(cr, zoom, true);
    DrawD65(cr, zoom, true);
    DrawSliderTrack(cr, zoom, scene.sliderTrack);
    DrawWhites(cr, zoom, scene.whites, true);
    cairo_restore(cr);
    DrawFrameBox(cr, zoom);
}

void Draw(cairo_surface_t* surface, const ChromaticityScene& scene) {
    cairo_t* cr = cairo_create(surface);
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_paint(cr);
    cairo_select_font_face(cr, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    const Frame zoom = ZoomFrame(scene.whites);
    DrawWholeDiagram(cr, scene, zoom);
    DrawZoom(cr, scene, zoom);
    DrawLegend(cr, scene);
    cairo_destroy(cr);
}

}  // namespace

std::string ChromaticityToPng(const ChromaticityScene& scene) {
    return RenderPng(
        kWidth, kHeight, [&](cairo_surface_t* surface) { Draw(surface, scene); }, "picture");
}

std::string ChromaticityToSvg(const ChromaticityScene& scene) {
    return RenderSvg(
        kWidth, kHeight, [&](cairo_surface_t* surface) { Draw(surface, scene); }, "picture");
}

}  // namespace quarnel::tool
