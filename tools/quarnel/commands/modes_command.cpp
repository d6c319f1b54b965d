// SPDX-License-Identifier: MIT
// quarnel modes: every mode of one panel, side by side.

#include <cstdio>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <vector>

#include "commands/commands.h"
#include "commands/curve_cli.h"
#include "model/panel_model.h"
#include "session/library_session.h"
#include "session/mode_curve.h"

namespace quarnel::tool {
namespace {

constexpr size_t kDigestEntries[] = {0, 64, 128, 192, 255};
constexpr const char* kPlaneNames[3] = {"red", "green", "blue"};
constexpr size_t kNameWidth = 14;

// The white a mode's curve gives on the panel.
struct White {
    Chromaticity xy;
    int cct = 0;
    double luminance = 0.0;  // Y, in the measurements' unit
};

struct ModeRow {
    Mode mode;
    ModeCurve result;
    std::optional<White> white;
};

std::optional<White> ModeWhite(const PanelModel& panel, const Curve& curve) {
    const Xyz xyz = CalibratedWhite(panel, curve);
    const auto xy = ToChromaticity(xyz);
    if (!xy) return std::nullopt;
    return White{*xy, Cct(*xy), xyz[1]};
}

std::array<double, 3> FullInputDrive(const Curve& curve) {
    return {CurveDrive(curve[0], 1.0), CurveDrive(curve[1], 1.0), CurveDrive(curve[2], 1.0)};
}

struct PanelReport {
    std::string source;
    int32_t initStatus = 0;
    int32_t calibrationVersion = -1;
    bool factoryData = false;
    std::vector<ModeRow> rows;
};

PanelReport Collect(const CurveOptions& options) {
    LibrarySession session(options);
    PanelReport report{session.sourceName(), session.Init(), 0, false, {}};
    report.calibrationVersion = session.context().biosVer;
    report.factoryData = session.context().fromBios != 0;
    const PanelModel panel = FromMeasurements(DescribePanel(session).measured);
    for (Mode mode : kPanelModes) {
        ModeRow row{mode, RunMode(session, mode, options), std::nullopt};
        // Without a successful initialisation only the native mode's curve means anything.
        const bool meaningful = row.result.status == 0 && (report.initStatus == 0 || mode == Mode::Native);
        if (meaningful) row.white = ModeWhite(panel, row.result.curve);
        report.rows.push_back(row);
    }
    return report;
}

std::string Fixed(double v, const char* format = "%7.4f") {
    char text[32];
    std::snprintf(text, sizeof text, format, v);
    return text;
}

void PrintTable(const PanelReport& report) {
    std::cout << "# " << report.source << ": calibration version " << report.calibrationVersion
              << (report.factoryData ? ", factory data" : ", no factory data") << ", init status " << report.initStatus
              << "\n";
    std::cout << "mode            status drive R drive G drive B  white x white y   CCT  white Y"
                 "  curve at 0 64 128 192 255 (R | G | B)\n";
    for (const auto& row : report.rows) {
        std::string line(ModeName(row.mode));
        line.resize(kNameWidth, ' ');
        line += Fixed(row.result.status, "%8.0f");
        for (double drive : FullInputDrive(row.result.curve)) line += Fixed(drive, "%8.4f");
        line += row.white ? Fixed(row.white->xy.x, "%9.4f") + Fixed(row.white->xy.y, "%8.4f") +
                                Fixed(row.white->cct, "%6.0f") + Fixed(row.white->luminance, "%9.2f")
                          : "        -       -     -        -";
        for (size_t c = 0; c < 3; ++c) {
            line += c == 0 ? "  " : " |";
            for (size_t i : kDigestEntries) line += Fixed(row.result.curve[c][i], "%6.0f");
        }
        std::cout << line << '\n';
    }
}

void PrintJson(const PanelReport& report) {
    nlohmann::ordered_json json{{"source", report.source},
                                {"calibration_version", report.calibrationVersion},
                                {"factory_data", report.factoryData},
                                {"init_status", report.initStatus}};
    json["modes"] = nlohmann::ordered_json::array();
    for (const auto& row : report.rows) {
        nlohmann::ordered_json mode{{"mode", ModeName(row.mode)}, {"status", row.result.status}};
        mode["full_input_drive"] = FullInputDrive(row.result.curve);
        mode["white"] = row.white ? nlohmann::ordered_json{{"x", row.white->xy.x}, {"y", row.white->xy.y}} : nullptr;
        mode["cct"] = row.white ? nlohmann::ordered_json(row.white->cct) : nullptr;
        mode["white_luminance"] = row.white ? nlohmann::ordered_json(row.white->luminance) : nullptr;
        for (size_t c = 0; c < 3; ++c)
            for (size_t i : kDigestEntries) mode["curve"][kPlaneNames[c]].push_back(row.result.curve[c][i]);
        json["modes"].push_back(mode);
    }
    std::cout << json.dump(2) << '\n';
}

void Run(const CurveOptions& options, bool json) {
    const PanelReport report = Collect(options);
    if (report.initStatus != 0)
        std::cerr << "quarnel: " << report.source << ": initialisation answered status " << report.initStatus << '\n';
    json ? PrintJson(report) : PrintTable(report);
}

}  // namespace

void AddModesCommand(CLI::App& app, const GlobalOptions& global) {
    auto cli = std::make_shared<CurveCli>();
    auto json = std::make_shared<bool>(false);
    auto* command = app.add_subcommand("modes", "Show every colour mode of a panel: drive, white point, curve");
    AddCurveOptions(*command, *cli);
    command->add_flag("--json", *json, "Print JSON instead of a table");
    command->footer("Example:\n  quarnel modes --calib panel.bin --interval 0.75");
    command->callback([cli, json, &global] { Run(ResolveCurveOptions(*cli, global), *json); });
}

void RunDefaultModes(const GlobalOptions& global) {
    CurveOptions options;
    options.verbose = global.verbose;
    Run(options, false);
}

}  // namespace quarnel::tool
