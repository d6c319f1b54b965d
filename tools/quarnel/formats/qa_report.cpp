// SPDX-License-Identifier: MIT
#include "formats/qa_report.h"

#include <algorithm>
#include <cmath>

#include "facts/chromaticity.h"
#include "formats/qa_outputs.h"
#include "io/output_stream.h"

namespace quarnel::tool {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr const char* kStyle = R"(
body{font:14px/1.4 sans-serif;margin:24px;color:#222}
h1{font-size:22px}h2{font-size:17px;margin-top:28px}
table{border-collapse:collapse}td,th{padding:2px 8px;border-bottom:1px solid #ddd;text-align:right}
td:nth-child(2),td:nth-child(3),td:nth-child(4),th{text-align:left}
tr.fail td{background:#fde2e1}tr.outlier td{background:#fff3cd}
figure{display:inline-block;margin:0 24px 16px 0;vertical-align:top}figcaption{font-size:13px;color:#555}
svg text{font:11px sans-serif;fill:#444}
.key span{display:inline-block;width:10px;height:10px;margin:0 4px 0 12px;border-radius:5px}
)";

std::string Html(const std::string& text) {
    std::string out;
    for (char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

std::string Px(double v) { return QaNumber(v, 1); }

// A plot area: data ranges onto a box of pixels, y upwards.
struct Plot {
    double x0, x1, y0, y1;
    double width, height;
    static constexpr double kMargin = 40;
    double X(double x) const { return kMargin + (x - x0) / (x1 - x0) * width; }
    double Y(double y) const { return kMargin / 2 + (1 - (y - y0) / (y1 - y0)) * height; }
    std::string Open(const std::string& label) const {
        return "<svg xmlns=\"http://www.w3.org/2000/svg\" role=\"img\" aria-label=\"" + label + "\" width=\"" +
               Px(width + 1.5 * kMargin) + "\" height=\"" + Px(height + 1.5 * kMargin) + "\">" + "<rect x=\"" +
               Px(kMargin) + "\" y=\"" + Px(kMargin / 2) + "\" width=\"" + Px(width) + "\" height=\"" + Px(height) +
               "\" fill=\"#fafafa\" stroke=\"#bbb\"/>";
    }
    std::string Axes(int xDigits, int yDigits) const {
        std::string svg;
        for (int i = 0; i <= 4; ++i) {
            const double fx = x0 + (x1 - x0) * i / 4, fy = y0 + (y1 - y0) * i / 4;
            svg += "<text x=\"" + Px(X(fx)) + "\" y=\"" + Px(Y(y0) + 15) + "\" text-anchor=\"middle\">" +
                   QaNumber(fx, xDigits) + "</text>";
            svg += "<text x=\"" + Px(kMargin - 4) + "\" y=\"" + Px(Y(fy) + 4) + "\" text-anchor=\"end\">" +
                   QaNumber(fy, yDigits) + "</text>";
        }
        return svg;
    }
    // Dots as one path of zero-length strokes with round caps: small for large lots.
    std::string Dots(const std::vector<Xy>& points, const std::string& colour, double size) const {
        std::string d;
        for (const Xy& p : points)
            if (std::isfinite(p.x) && std::isfinite(p.y) && p.x >= x0 && p.x <= x1 && p.y >= y0 && p.y <= y1)
                d += 'M' + Px(X(p.x)) + ' ' + Px(Y(p.y)) + "h0";
        return "<path d=\"" + d + "\" stroke=\"" + colour + "\" stroke-width=\"" + Px(size) +
               "\" stroke-linecap=\"round\" stroke-opacity=\"0.6\"/>";
    }
    std::string Line(const std::vector<Xy>& points, const std::string& colour, bool closed,
                     const char* dash = "") const {
        std::string d;
        for (const Xy& p : points) d += (d.empty() ? 'M' : 'L') + Px(X(p.x)) + ' ' + Px(Y(p.y));
        return "<path d=\"" + d + (closed ? "Z" : "") + "\" fill=\"none\" stroke=\"" + colour +
               "\" stroke-width=\"1.5\" stroke-dasharray=\"" + dash + "\"/>";
    }
};

// The points a u'v' distance r from `centre`, back in xy (v' is 1.5 v).
std::vector<Xy> ToleranceCircle(const Xy& centre, double r) {
    constexpr int kPoints = 72;
    const facts::Uv c = facts::ToUv({centre.x, centre.y});
    std::vector<Xy> points;
    for (int i = 0; i < kPoints; ++i) {
        const double a = 2 * kPi * i / kPoints;
        const facts::Xy p = facts::FromUv({c.u + r * std::cos(a), c.v + r * std::sin(a) / 1.5});
        points.push_back({p.x, p.y});
    }
    return points;
}

struct Collected {
    std::vector<Xy> native, normal, primaries;
    std::vector<double> duv, srgb, p3;
};

Collected Collect(const std::vector<QaResult>& results) {
    Collected c;
    for (const QaResult& r : results) {
        if (r.verdict != kVerdictOk) continue;
        const QaMeasures& m = r.measures;
        c.native.push_back(m.native.white);
        c.normal.push_back(m.modes[kNormalMode].white);
        c.primaries.insert(c.primaries.end(), m.native.primaries.begin(), m.native.primaries.end());
        c.duv.push_back(m.modes[kNormalMode].duv);
        c.srgb.push_back(m.native.srgbCoverage);
        c.p3.push_back(m.native.p3Coverage);
    }
    return c;
}

std::string WhitesFigure(const Collected& c, const QaLot& lot) {
    // Wide enough for the tolerance circle and every white, square in xy.
    const double r = lot.thresholds().maxDuv;
    double x0 = kD65.x - 2.5 * r, x1 = kD65.x + 2.5 * r, y0 = kD65.y - 2.5 * r, y1 = kD65.y + 2.5 * r;
    for (const auto* set : {&c.native, &c.normal})
        for (const Xy& p : *set)
            if (std::isfinite(p.x) && std::isfinite(p.y)) {
                x0 = std::min(x0, p.x), x1 = std::max(x1, p.x), y0 = std::min(y0, p.y), y1 = std::max(y1, p.y);
            }
    const double span = std::max(x1 - x0, y1 - y0) * 1.1, cx = (x0 + x1) / 2, cy = (y0 + y1) / 2;
    const Plot plot{cx - span / 2, cx + span / 2, cy - span / 2, cy + span / 2, 380, 380};
    std::string svg = plot.Open("Native and calibrated whites around D65") + plot.Axes(3, 3);
    std::vector<Xy> planck;
    for (double k = 4000; k <= 12000; k += 100) planck.push_back(PlanckianXy(k));
    std::erase_if(planck,
                  [&](const Xy& p) { return p.x < plot.x0 || p.x > plot.x1 || p.y < plot.y0 || p.y > plot.y1; });
    if (planck.size() > 1) svg += plot.Line(planck, "#a33", false, "4 3");
    svg += plot.Line(ToleranceCircle(kD65, r), "#2a7", true);
    svg += plot.Dots(c.native, "#d95f02", 4) + plot.Dots(c.normal, "#1f78b4", 4);
    svg += "<path d=\"M" + Px(plot.X(kD65.x) - 6) + ' ' + Px(plot.Y(kD65.y)) + "h12M" + Px(plot.X(kD65.x)) + ' ' +
           Px(plot.Y(kD65.y) - 6) + "v12\" stroke=\"#000\" stroke-width=\"2\"/>";
    return "<figure>" + svg +
           "</svg><figcaption class=\"key\"><span style=\"background:#d95f02\"></span>native"
           "<span style=\"background:#1f78b4\"></span>normal (calibrated)<span style=\"background:#000\"></span>D65"
           "<span style=\"background:#2a7\"></span>&Delta;u&prime;v&prime; " +
           QaNumber(r, 4) + "<span style=\"background:#a33\"></span>Planckian locus</figcaption></figure>";
}

std::string PrimariesFigure(const Collected& c) {
    const Plot plot{0, 0.8, 0, 0.9, 340, 382.5};
    std::string svg = plot.Open("Primaries of every panel over sRGB and DCI-P3") + plot.Axes(1, 1);
    std::vector<Xy> locus;
    for (const auto& p : SpectralLocus()) locus.push_back(p.xy);
    svg += plot.Line(locus, "#999", true);
    svg += plot.Line({kSrgbPrimaries.begin(), kSrgbPrimaries.end()}, "#333", true);
    svg += plot.Line({kDciP3Primaries.begin(), kDciP3Primaries.end()}, "#7b3294", true, "5 3");
    svg += plot.Dots(c.primaries, "#d95f02", 3);
    return "<figure>" + svg +
           "</svg><figcaption class=\"key\"><span style=\"background:#d95f02\"></span>panels"
           "<span style=\"background:#333\"></span>sRGB<span style=\"background:#7b3294\"></span>DCI-P3"
           "</figcaption></figure>";
}

std::string Histogram(const std::vector<double>& values, const std::string& title, double threshold) {
    constexpr int kBins = 30;
    double lo = threshold, hi = threshold;
    for (double v : values)
        if (std::isfinite(v)) lo = std::min(lo, v), hi = std::max(hi, v);
    if (!(hi > lo)) hi = lo + 1e-6;
    std::vector<size_t> counts(kBins);
    for (double v : values) {
        // A spread too wide for a double leaves the place NaN: the first bin.
        const double place = (v - lo) / (hi - lo) * kBins;
        if (std::isfinite(v)) ++counts[place >= kBins - 1 ? kBins - 1 : place > 0 ? static_cast<size_t>(place) : 0];
    }
    const double top = static_cast<double>(std::max<size_t>(1, *std::max_element(counts.begin(), counts.end())));
    const Plot plot{lo, hi, 0, top, 300, 160};
    std::string svg = plot.Open(title) + plot.Axes(4, 0);
    for (int i = 0; i < kBins; ++i) {
        const double a = lo + (hi - lo) * i / kBins, b = lo + (hi - lo) * (i + 1) / kBins;
        const double h = plot.Y(0) - plot.Y(static_cast<double>(counts[static_cast<size_t>(i)]));
        svg += "<rect x=\"" + Px(plot.X(a)) + "\" y=\"" + Px(plot.Y(0) - h) + "\" width=\"" +
               Px(std::max(0.5, plot.X(b) - plot.X(a) - 1)) + "\" height=\"" + Px(h) + "\" fill=\"#1f78b4\"/>";
    }
    svg += "<path d=\"M" + Px(plot.X(threshold)) + ' ' + Px(plot.Y(0)) + "V" + Px(plot.Y(top)) +
           "\" stroke=\"#c00\" stroke-dasharray=\"4 3\"/>";
    return "<figure>" + svg + "</svg><figcaption>" + title + " (red: threshold)</figcaption></figure>";
}

std::string Cell(const std::string& text) { return "<td>" + Html(text) + "</td>"; }

std::string Row(size_t index, const std::string& file, const QaResult& r, const QaLot& lot) {
    const QaMeasures& m = r.measures;
    const QaMode& normal = m.modes[kNormalMode];
    const auto flags = lot.Flags(r);
    std::string joined;
    for (const auto& f : flags) joined += (joined.empty() ? "" : " ") + f;
    const char* kind = !lot.Passed(r) ? " class=\"fail\"" : (lot.Outlier(r) ? " class=\"outlier\"" : "");
    std::string row = std::string("<tr") + kind + "><td>" + std::to_string(index + 1) + "</td>" + Cell(file) +
                      Cell(r.verdict) + Cell(joined);
    for (double v : {m.native.white.x, m.native.white.y}) row += Cell(QaNumber(v, 4));
    row += Cell(QaNumber(m.native.whiteY, 1));
    for (double v : {normal.white.x, normal.white.y, normal.duv}) row += Cell(QaNumber(v, 4));
    for (double v : {m.native.srgbCoverage, m.native.p3Coverage}) row += Cell(QaNumber(v, 3));
    for (double v : m.native.gamma) row += Cell(QaNumber(v, 2));
    return row + "</tr>\n";
}

}  // namespace

void WriteQaReport(OutputStream& out, const std::vector<std::string>& files, const std::vector<QaResult>& results,
                   const QaLot& lot) {
    const Collected c = Collect(results);
    std::vector<std::string> outliers;
    for (size_t i = 0; i < files.size(); ++i)
        if (lot.Outlier(results[i])) outliers.push_back(files[i]);
    const QaThresholds& t = lot.thresholds();
    out << "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>Lot QA: "
        << std::to_string(files.size()) << " blocks</title><style>" << kStyle << "</style></head><body>\n";
    out << "<h1>Lot QA: " << std::to_string(files.size()) << " blocks, " << std::to_string(lot.passed())
        << " ok and within thresholds</h1>\n";
    out << "<h2>Whites and primaries</h2>\n" << WhitesFigure(c, lot) << PrimariesFigure(c) << "\n";
    out << "<h2>Distributions (ok blocks)</h2>\n"
        << Histogram(c.duv, "Normal white &Delta;u&prime;v&prime; from D65", t.maxDuv)
        << Histogram(c.srgb, "sRGB coverage", t.minSrgb) << Histogram(c.p3, "DCI-P3 coverage", t.minP3) << "\n";
    out << "<h2>Summary</h2>\n<pre>" << Html(QaSummary(lot, outliers)) << "</pre>\n";
    out << "<h2>Blocks, failing and outlying first</h2>\n<table><thead><tr><th>#</th><th>file</th><th>verdict</th>"
           "<th>flags</th><th>native x</th><th>native y</th><th>native Y</th><th>normal x</th><th>normal y</th>"
           "<th>normal &Delta;u&prime;v&prime;</th><th>sRGB</th><th>P3</th><th>gamma R</th><th>gamma G</th>"
           "<th>gamma B</th></tr></thead>\n<tbody id=\"blocks\">\n";
    for (const bool first : {true, false})
        for (size_t i = 0; i < files.size(); ++i)
            if ((!lot.Passed(results[i]) || lot.Outlier(results[i])) == first) out << Row(i, files[i], results[i], lot);
    out << "</tbody></table>\n</body></html>\n";
}

}  // namespace quarnel::tool
