// SPDX-License-Identifier: MIT
#include "formats/qa_outputs.h"

#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

namespace quarnel::tool {
namespace {

using Json = nlohmann::ordered_json;
constexpr const char* kChannels[3] = {"red", "green", "blue"};
constexpr int kChromaDigits = 6, kShareDigits = 4, kLuminanceDigits = 3;

Json Value(double v) { return std::isfinite(v) ? Json(v) : Json(nullptr); }
Json XyJson(const Xy& xy) { return Json{{"x", Value(xy.x)}, {"y", Value(xy.y)}}; }

std::string Joined(const std::vector<std::string>& words, const char* separator) {
    std::string text;
    for (const auto& w : words) text += (text.empty() ? "" : separator) + w;
    return text;
}

// RFC 4180: a field with a comma, quote or line end is quoted, quotes doubled.
std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + '"';
}

std::string Padded(std::string text, size_t width) {
    if (text.size() < width) text.insert(0, width - text.size(), ' ');
    return text;
}

}  // namespace

std::string QaNumber(double value, int digits) {
    if (!std::isfinite(value)) return "";
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, digits);
    return end.ec == std::errc() ? std::string(text, end.ptr) : std::string();
}

std::string QaModeKey(size_t mode) {
    if (mode == kNormalMode) return "normal";
    std::string key(ModeName(kPanelModes[mode]));
    std::replace(key.begin(), key.end(), '-', '_');
    return key;
}

std::string QaLine(const std::string& file, const QaResult& result, const QaLot& lot) {
    std::string line = file + ": " + result.verdict;
    const QaMeasures& m = result.measures;
    if (result.verdict != kVerdictOk) return line + '\n';
    const QaMode& normal = m.modes[kNormalMode];
    const auto n = [](double v, int digits) {
        const std::string s = QaNumber(v, digits);
        return s.empty() ? std::string("-") : s;
    };
    line += "  native " + n(m.native.white.x, 4) + ' ' + n(m.native.white.y, 4) + ' ' + n(m.native.whiteY, 1);
    line += "  normal " + n(normal.white.x, 4) + ' ' + n(normal.white.y, 4) + " duv " + n(normal.duv, 4);
    line += "  srgb " + n(m.native.srgbCoverage, 3) + " p3 " + n(m.native.p3Coverage, 3);
    line += "  gamma " + n(m.native.gamma[0], 2) + ' ' + n(m.native.gamma[1], 2) + ' ' + n(m.native.gamma[2], 2);
    const auto flags = lot.Flags(result);
    if (!flags.empty()) line += "  flags " + Joined(flags, " ");
    return line + '\n';
}

std::string QaSummary(const QaLot& lot, const std::vector<std::string>& outliers) {
    const size_t ok = lot.verdicts().contains(std::string(kVerdictOk)) ? lot.verdicts().at(std::string(kVerdictOk)) : 0;
    std::string text = "lot: " + std::to_string(lot.blocks()) + " blocks, " + std::to_string(ok) + " ok, " +
                       std::to_string(lot.passed()) + " within thresholds\n";
    text += "verdicts:\n";
    for (const auto& [verdict, count] : lot.verdicts())
        text += Padded(std::to_string(count), 8) + "  " + verdict + '\n';
    if (!lot.misses().empty()) {
        text += "outside thresholds:\n";
        for (const auto& [name, count] : lot.misses()) text += Padded(std::to_string(count), 8) + "  " + name + '\n';
    }
    text += "metric (ok blocks)          median         p95\n";
    for (size_t i = 0; i < QaMetrics().size(); ++i) {
        std::string name = QaMetrics()[i].name;
        name.resize(24, ' ');
        const MetricSummary& s = lot.summaries()[i];
        text +=
            name + Padded(QaNumber(s.median, kChromaDigits), 12) + Padded(QaNumber(s.p95, kChromaDigits), 12) + '\n';
    }
    text += "outliers: " + std::to_string(outliers.size()) + (outliers.empty() ? "\n" : "");
    constexpr size_t kNamed = 20;
    for (size_t i = 0; i < outliers.size() && i < kNamed; ++i) text += (i == 0 ? ": " : ", ") + outliers[i];
    if (outliers.size() > kNamed) text += " and " + std::to_string(outliers.size() - kNamed) + " more";
    if (!outliers.empty()) text += '\n';
    return text;
}

std::string QaCsvHeader() {
    std::string header =
        "file,verdict,normal_x,normal_y,normal_duv,srgb_coverage,p3_coverage,flags,version,init_status,"
        "native_x,native_y,native_luminance,red_x,red_y,green_x,green_y,blue_x,blue_y,gamma_red,gamma_green,gamma_blue";
    for (size_t i = 0; i < kQaModeCount; ++i)
        for (const char* field : {"_status", "_x", "_y", "_cct", "_duv", "_luminance_share"})
            if (!(i == kNormalMode &&
                  (std::string(field) == "_x" || std::string(field) == "_y" || std::string(field) == "_duv")))
                header += ',' + QaModeKey(i) + field;
    return header + '\n';
}

std::string QaCsvRow(const std::string& file, const QaResult& result, const QaLot& lot) {
    const QaMeasures& m = result.measures;
    const QaMode& normal = m.modes[kNormalMode];
    std::vector<std::string> f{CsvField(file),
                               CsvField(result.verdict),
                               QaNumber(normal.white.x, kChromaDigits),
                               QaNumber(normal.white.y, kChromaDigits),
                               QaNumber(normal.duv, kChromaDigits),
                               QaNumber(m.native.srgbCoverage, kChromaDigits),
                               QaNumber(m.native.p3Coverage, kChromaDigits),
                               Joined(lot.Flags(result), " "),
                               m.version >= 0 ? std::to_string(m.version) : "",
                               m.version >= 0 ? std::to_string(m.initStatus) : "",
                               QaNumber(m.native.white.x, kChromaDigits),
                               QaNumber(m.native.white.y, kChromaDigits),
                               QaNumber(m.native.whiteY, kLuminanceDigits)};
    for (const Xy& p : m.native.primaries) {
        f.push_back(m.measured ? QaNumber(p.x, kChromaDigits) : "");
        f.push_back(m.measured ? QaNumber(p.y, kChromaDigits) : "");
    }
    for (double g : m.native.gamma) f.push_back(QaNumber(g, kShareDigits));
    for (size_t i = 0; i < kQaModeCount; ++i) {
        const QaMode& mode = m.modes[i];
        const bool shown = mode.measured;
        f.push_back(m.modesRun ? std::to_string(mode.status) : "");
        if (i != kNormalMode) {
            f.push_back(shown ? QaNumber(mode.white.x, kChromaDigits) : "");
            f.push_back(shown ? QaNumber(mode.white.y, kChromaDigits) : "");
        }
        f.push_back(shown ? std::to_string(mode.cct) : "");
        if (i != kNormalMode) f.push_back(QaNumber(mode.duv, kChromaDigits));
        f.push_back(QaNumber(mode.luminanceShare, kShareDigits));
    }
    return Joined(f, ",") + '\n';
}

std::string QaJsonHead(const QaLot& lot) {
    const QaThresholds& t = lot.thresholds();
    const Json thresholds{{"max_duv", t.maxDuv},     {"min_srgb", t.minSrgb},
                          {"min_p3", t.minP3},       {"min_luminance_share", t.minLuminanceShare},
                          {"min_gamma", t.minGamma}, {"max_gamma", t.maxGamma},
                          {"outlier", t.outlierK}};
    return "{\"thresholds\":" + thresholds.dump() + ",\"blocks\":[\n";
}

std::string QaJsonRow(const std::string& file, const QaResult& result, const QaLot& lot) {
    const QaMeasures& m = result.measures;
    Json row{{"file", file}, {"verdict", result.verdict}, {"flags", lot.Flags(result)}};
    row["version"] = m.version >= 0 ? Json(m.version) : Json(nullptr);
    row["init_status"] = m.version >= 0 ? Json(m.initStatus) : Json(nullptr);
    if (m.measured) {
        row["native"] = {
            {"white", {{"x", Value(m.native.white.x)}, {"y", Value(m.native.white.y)}, {"Y", Value(m.native.whiteY)}}}};
        for (size_t c = 0; c < 3; ++c) row["native"]["primaries"][kChannels[c]] = XyJson(m.native.primaries[c]);
        row["srgb_coverage"] = Value(m.native.srgbCoverage);
        row["p3_coverage"] = Value(m.native.p3Coverage);
        for (size_t c = 0; c < 3; ++c) row["gamma"][kChannels[c]] = Value(m.native.gamma[c]);
    }
    row["modes"] = Json::array();
    for (size_t i = 0; m.modesRun && i < kQaModeCount; ++i) {
        const QaMode& mode = m.modes[i];
        Json entry{{"mode", ModeName(kPanelModes[i])}, {"status", mode.status}};
        entry["white"] = mode.measured ? XyJson(mode.white) : Json(nullptr);
        entry["cct"] = mode.measured ? Json(mode.cct) : Json(nullptr);
        entry["white_luminance"] = Value(mode.luminance);
        entry["luminance_share"] = Value(mode.luminanceShare);
        entry["aim"] = mode.hasAim ? XyJson(mode.aim) : Json(nullptr);
        entry["duv"] = Value(mode.duv);
        row["modes"].push_back(entry);
    }
    return row.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string QaJsonTail(const QaLot& lot) {
    Json summary{{"blocks", lot.blocks()}, {"within_thresholds", lot.passed()}};
    summary["verdicts"] = lot.verdicts();
    summary["outside_thresholds"] = lot.misses();
    for (size_t i = 0; i < QaMetrics().size(); ++i) {
        const MetricSummary& s = lot.summaries()[i];
        summary["metrics"][QaMetrics()[i].name] = {{"median", s.median}, {"p95", s.p95}, {"mad", s.mad}};
    }
    return "\n],\"summary\":" + summary.dump(-1, ' ', false, Json::error_handler_t::replace) + "}\n";
}

}  // namespace quarnel::tool
