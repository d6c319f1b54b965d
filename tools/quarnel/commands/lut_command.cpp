// SPDX-License-Identifier: MIT
// quarnel lut: one mode's curve, written in a format other tools load.

#include <iostream>
#include <memory>

#include "commands/commands.h"
#include "commands/curve_cli.h"
#include "formats/write_curve.h"
#include "mode_run.h"
#include "tool_error.h"

namespace quarnel::tool {
namespace {

struct LutCli {
    CurveCli curve;
    std::string mode;
    std::string output;
    std::string format;
};

void Run(const LutCli& cli, const GlobalOptions& global) {
    const Mode mode = *ParseMode(cli.mode);
    const CurveFormat format = ChooseCurveFormat(cli.output, cli.format);
    const ModeCurve result = ComputeModeCurve(mode, ResolveCurveOptions(cli.curve, global));
    if (result.initStatus != 0) std::cerr << "quarnel: initialisation answered status " << result.initStatus << '\n';
    if (result.status != 0)
        throw ToolError(kExitData, cli.mode + ": the library could not build the curve (status " +
                                       std::to_string(result.status) + ")");
    WriteCurve(result.curve, format, cli.output);
}

}  // namespace

void AddLutCommand(CLI::App& app, const GlobalOptions& global) {
    auto cli = std::make_shared<LutCli>();
    auto* command = app.add_subcommand("lut", "Write one mode's curve as CSV, JSON, calibration file, profile or plot");
    command->add_option("MODE", cli->mode, "Colour mode")->required()->check(CLI::IsMember(ModeNames()));
    AddCurveOptions(*command, cli->curve);
    command->add_option("--curve", cli->curve.curveFile, "Tone curve for vx-curve (CSV or JSON)");
    command->add_option("-o,--output", cli->output, "Output file, - for standard output")->required();
    command->add_option("--format", cli->format, "csv, json, cal, icc, png or svg (default: from the extension)");
    command->footer(
        "Example:\n  quarnel lut slider --interval 0.7 -o warm.cal\n"
        "  quarnel lut vx-curve --curve tone.csv -o vx.icc");
    command->callback([cli, &global] { Run(*cli, global); });
}

}  // namespace quarnel::tool
