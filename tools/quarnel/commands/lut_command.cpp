// SPDX-License-Identifier: MIT
// quarnel lut: one mode's curve, written in a format other tools load.

#include <memory>

#include "commands/commands.h"
#include "commands/curve_cli.h"
#include "formats/write_curve.h"

namespace quarnel::tool {
namespace {

struct LutCli {
    CurveCli curve;
    std::string mode;
    std::string output;
    std::string format;
};

void Run(const LutCli& cli, const GlobalOptions& global) {
    const CurveFormat format = ChooseCurveFormat(cli.output, cli.format);
    const SubjectCurve result = ComputeCurveOrFail(cli.mode, cli.curve, global);
    WriteCurve(result.curve, format, cli.output, result.subject);
}

}  // namespace

void AddLutCommand(CLI::App& app, const GlobalOptions& global) {
    auto cli = std::make_shared<LutCli>();
    auto* command = app.add_subcommand("lut", "Write one mode's curve as CSV, JSON, calibration file, profile or plot");
    AddModeArguments(*command, cli->mode, cli->curve);
    command->add_option("-o", cli->output, "Output file, - for standard output")->required()->type_name("FILE");
    command->add_option("--format", cli->format, "csv, json, cal, icc, png or svg (default: from the extension)");
    command->footer(
        "Example:\n  quarnel lut slider --interval 0.7 -o warm.cal\n"
        "  quarnel lut vx-curve --curve tone.csv -o vx.icc");
    command->callback([cli, &global] { Run(*cli, global); });
}

}  // namespace quarnel::tool
