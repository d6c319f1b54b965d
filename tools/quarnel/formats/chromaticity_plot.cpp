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
#include <initializer_list>
#include <optional>

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
// sRGB's dashes are dark and drawn over the panel's wider line, so that they
// show even where the panel's primaries are sRGB's own.
constexpr Colour kPanelColour{0.85, 0.33, 0.0}, kSrgbColour{0.15, 0.15, 0.15}, kPlanckColour{0.55, 0.1, 0.1};
constexpr Colour kWhiteColours[] = {{0.0, 0.45, 0.70},  {0.80, 0.47, 0.65}, {0.0, 0.62, 0.45},  {0.90, 0.62, 0.0},
                                    {0.34, 0.71, 0.91}, {0.84, 0.37, 0.0},  {0.45, 0.25, 0.60}, {0.0, 0.0, 0.0}};
constexpr double kDash[] = {6, 4};
constexpr int kLabelledNanometres[] = {460, 480, 490, 500, 510, 520, 540, 560, 580, 600, 620, 700};
constexpr double kInsideLabelX = 0.1;
// Marked in this order where marks crowd: the round thousands, the
// daylight whites and the slider's cold end first, the steps between after.
constexpr double kKelvinTicks[] = {2000, 3000, 4000, 5000, 6000, 6500, 7500, 10000, 20000, 1800,
                                   2500, 3500, 4500, 5500, 7000, 8000, 9000, 12000, 15000};
constexpr int kPlanckSteps = 400;  // even in mired between the ends of the approximation
constexpr double kLabelGapToTick = 4;
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

// What a label or a mark covers, in device space.
struct Box {
    double left, top, right, bottom;
    bool Overlaps(const Box& o) const { return left < o.right && o.left < right && top < o.bottom && o.top < bottom; }
    bool Inside(const Frame& f) const {
        return left >= f.left && right <= f.left + f.width && top >= f.top && bottom <= f.top + f.height;
    }
};

Box TextBox(cairo_t* cr, double x, double y, const std::string& text, double align) {
    cairo_text_extents_t e;
    cairo_text_extents(cr, text.c_str(), &e);
    const double left = x - align * e.x_advance + e.x_bearing;
    return {left - 1, y + e.y_bearing - 1, left + e.width + 1, y + e.y_bearing + e.height + 1};
}

Box Around(double x, double y, double radius) { return {x - radius, y - radius, x + radius, y + radius}; }

bool Clear(const Box& box, const std::vector<Box>& taken) {
    return std::none_of(taken.begin(), taken.end(), [&](const Box& t) { return t.Overlaps(box); });
}

// Where a label may stand: its text's anchor and alignment.
struct Place {
    double x, y, align;
};

// The first place where the text stays inside the frame and clear of
// everything taken; that place is then taken too. None when all are taken:
// a label left out reads better than one over a dot or cut by the frame.
std::optional<Place> FreePlace(cairo_t* cr, const Frame& f, std::initializer_list<Place> places,
                               const std::string& text, std::vector<Box>& taken) {
    for (const Place& p : places) {
        const Box box = TextBox(cr, p.x, p.y, text, p.align);
        if (box.Inside(f) && Clear(box, taken)) {
            taken.push_back(box);
            return p;
        }
    }
    return std::nullopt;
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

// The locus; with `taken`, its temperatures marked where a tick and its label
// stay clear of the dots and labels already placed.
void DrawPlanckianLocus(cairo_t* cr, const Frame& f, std::vector<Box>* taken = nullptr) {
    SetColour(cr, kPlanckColour);
    cairo_set_line_width(cr, 1.5);
    cairo_new_path(cr);
    for (int i = 0; i <= kPlanckSteps; ++i) {
        const Xy p = PlanckianXy(KelvinAt(i));
        cairo_line_to(cr, f.X(p.x), f.Y(p.y));
    }
    cairo_stroke(cr);
    if (taken == nullptr) return;
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
        const Box tick{std::min(x - nx * kTickLength, x + nx * kTickLength) - 1, y - ny * kTickLength - 1,
                       std::max(x - nx * kTickLength, x + nx * kTickLength) + 1, y + ny * kTickLength + 1};
        if (!tick.Inside(f) || !Clear(tick, *taken)) continue;
        // A tick goes with its label, below the locus or else above it, or not at all.
        taken->push_back(tick);
        const std::string text = Decimal(kelvin, "%.0f K");
        cairo_text_extents_t e;
        cairo_text_extents(cr, text.c_str(), &e);
        // Just beyond the tick's end below the locus, else beyond its other end above.
        const double ends[2][2] = {{x + nx * kTickLength, y + ny * kTickLength},
                                   {x - nx * kTickLength, y - ny * kTickLength}};
        const auto place =
            FreePlace(cr, f,
                      {{ends[0][0] + nx * kLabelGapToTick, ends[0][1] + kLabelGapToTick - e.y_bearing, 0.5},
                       {ends[1][0] - nx * kLabelGapToTick, ends[1][1] - kLabelGapToTick - e.y_bearing - e.height, 0.5}},
                      text, *taken);
        if (!place) {
            taken->pop_back();
            continue;
        }
        cairo_move_to(cr, x - nx * kTickLength, y - ny * kTickLength);
        cairo_line_to(cr, x + nx * kTickLength, y + ny * kTickLength);
        cairo_stroke(cr);
        LabelText(cr, place->x, place->y, text, kPlanckColour, place->align);
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

void DrawSliderTrack(cairo_t* cr, const Frame& f, const std::vector<Xy>& track, std::vector<Box>& taken) {
    if (track.size() < 2) return;
    SetColour(cr, kWhiteColours[0]);
    cairo_set_line_width(cr, 1.5);
    cairo_set_dash(cr, kDash, 2, 0);
    cairo_new_path(cr);
    for (const Xy& p : track) cairo_line_to(cr, f.X(p.x), f.Y(p.y));
    cairo_stroke(cr);
    cairo_set_dash(cr, nullptr, 0, 0);
    cairo_set_font_size(cr, 10);
    const auto end = [&](const Xy& p, const std::string& text) {
        const double x = f.X(p.x), y = f.Y(p.y);
        const auto place = FreePlace(
            cr, f, {{x + 6, y - 4, 0.0}, {x - 6, y + 12, 1.0}, {x - 6, y - 4, 1.0}, {x + 6, y + 12, 0.0}}, text, taken);
        if (place) Text(cr, place->x, place->y, text, place->align);
    };
    end(track.front(), "0.5");
    end(track.back(), "1.5");
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

struct WhiteLabels {
    std::vector<PlacedLabel> placed;
    double column = 0;  // where every label starts
};

// The labels' column right of every dot; each dot and label is then taken.
WhiteLabels LayOutWhites(cairo_t* cr, const Frame& f, const std::vector<LabelledWhite>& whites,
                         std::vector<Box>& taken) {
    WhiteLabels labels{PlaceLabels(f, whites), 0};
    for (const auto& label : labels.placed) labels.column = std::max(labels.column, label.dotX + kLabelColumnGap);
    for (const auto& label : labels.placed) {
        taken.push_back(Around(label.dotX, label.dotY, kDotRadius + 2));
        cairo_set_font_size(cr, 12);
        taken.push_back(TextBox(cr, labels.column, label.y, whites[label.index].label, 0));
        cairo_set_font_size(cr, 10);
        taken.push_back(TextBox(cr, labels.column, label.y + 12, Coordinates(whites[label.index]), 0));
    }
    return labels;
}

// Each dot's line to its label, drawn before the temperature marks, whose
// labels' patches may then cover a stretch of it.
void DrawLeaders(cairo_t* cr, const WhiteLabels& labels) {
    SetColour(cr, kLeaderColour);
    cairo_set_line_width(cr, 1);
    for (const auto& label : labels.placed) {
        cairo_move_to(cr, label.dotX, label.dotY);
        cairo_line_to(cr, labels.column - 3, label.y - 4);
    }
    cairo_stroke(cr);
}

void DrawWhites(cairo_t* cr, const Frame& f, const std::vector<LabelledWhite>& whites,
                const WhiteLabels* labels = nullptr) {
    if (labels == nullptr) {
        for (size_t i = 0; i < whites.size(); ++i)
            Dot(cr, f.X(whites[i].xy.x), f.Y(whites[i].xy.y), kSmallDotRadius, WhiteColour(i));
        return;
    }
    const double column = labels->column;
    for (const auto& label : labels->placed) {
        cairo_set_font_size(cr, 12);
        LabelText(cr, column, label.y, whites[label.index].label, kBlack);
        cairo_set_font_size(cr, 10);
        LabelText(cr, column, label.y + 12, Coordinates(whites[label.index]), kBlack);
    }
    for (size_t i = 0; i < whites.size(); ++i)
        Dot(cr, f.X(whites[i].xy.x), f.Y(whites[i].xy.y), kDotRadius, WhiteColour(i));
}

void DrawD65(cairo_t* cr, const Frame& f, std::vector<Box>* taken = nullptr) {
    const double x = f.X(kD65.x), y = f.Y(kD65.y);
    SetColour(cr, kSrgbColour);
    cairo_set_line_width(cr, 1.5);
    cairo_move_to(cr, x - 6, y);
    cairo_line_to(cr, x + 6, y);
    cairo_move_to(cr, x, y - 6);
    cairo_line_to(cr, x, y + 6);
    cairo_stroke(cr);
    if (taken == nullptr) return;
    cairo_set_font_size(cr, 11);
    const auto place = FreePlace(
        cr, f, {{x - 8, y - 8, 1.0}, {x + 8, y - 8, 0.0}, {x - 8, y + 16, 1.0}, {x + 8, y + 16, 0.0}}, "D65", *taken);
    if (place) Text(cr, place->x, place->y, "D65", place->align);
}

// A view around the whites, the slider's whole track and D65 at the same
// scale in x and y, the whites in its left part so that their labels fit on
// the right.
Frame ZoomFrame(const ChromaticityScene& scene) {
    Xy lo = kD65, hi = kD65;
    const auto hold = [&](const Xy& p) {
        lo = {std::min(lo.x, p.x), std::min(lo.y, p.y)};
        hi = {std::max(hi.x, p.x), std::max(hi.y, p.y)};
    };
    for (const auto& w : scene.whites) hold(w.xy);
    for (const auto& p : scene.sliderTrack) hold(p);
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
    DrawPlanckianLocus(cr, kWhole);
    DrawWhites(cr, kWhole, scene.whites);
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
    // The whites' dots and labels first, then the marks that must keep clear of them.
    std::vector<Box> taken;
    const WhiteLabels labels = LayOutWhites(cr, zoom, scene.whites, taken);
    const double d65X = zoom.X(kD65.x), d65Y = zoom.Y(kD65.y);
    taken.push_back(Around(d65X, d65Y, 7));
    DrawD65(cr, zoom, &taken);
    DrawSliderTrack(cr, zoom, scene.sliderTrack, taken);
    DrawLeaders(cr, labels);
    DrawPlanckianLocus(cr, zoom, &taken);
    DrawWhites(cr, zoom, scene.whites, &labels);
    cairo_restore(cr);
    DrawFrameBox(cr, zoom);
}

void Draw(cairo_surface_t* surface, const ChromaticityScene& scene) {
    cairo_t* cr = cairo_create(surface);
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_paint(cr);
    cairo_select_font_face(cr, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    const Frame zoom = ZoomFrame(scene);
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
