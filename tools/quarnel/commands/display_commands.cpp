// SPDX-License-Identifier: MIT
#include "commands/commands.h"

#include <memory>
#include <string>

#include "commands/curve_cli.h"
#include "display/x11/gamma_ramp.h"
#include "formats/write_curve.h"
#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

struct ApplyCli {
    CurveCli curve;
    std::string mode;
    x11::GammaTarget target;
};

struct ShowCli {
    x11::GammaTarget target;
    std::string file = "-";
    std::string format;
};

void Check(const x11::GammaStatus& status) {
    if (!status.ok()) throw ToolError(kExitUnavailable, status.cause);
}

void AddTargetOptions(CLI::App& command, x11::GammaTarget& target) {
    command.add_option("--output", target.output, "RandR output whose CRTCs to use (default: every connected one)");
    command.add_option("--display", target.display, "X display to use (default: $DISPLAY)");
}

void Apply(const ApplyCli& cli, const GlobalOptions& global) {
    Check(x11::LoadGammaCurve(cli.target, ComputeCurveOrFail(cli.mode, cli.curve, global).curve));
}

void Show(const ShowCli& cli) {
    const CurveFormat format = ChooseCurveFormat(cli.file, cli.format);
    Curve curve{};
    Check(x11::ReadGammaCurve(cli.target, curve));
    WriteCurve(curve, format, cli.file, {UnknownPanel("X11 display"), "gamma ramp read back", std::nullopt});
}

void AddApplyCommand(CLI::App& app, const GlobalOptions& global) {
    auto cli = std::make_shared<ApplyCli>();
    auto* command = app.add_subcommand("apply", "Load one mode's curve as the gamma ramp of an X11 display");
    AddModeArguments(*command, cli->mode, cli->curve);
    AddTargetOptions(*command, cli->target);
    command->footer(
        "The curve is the one `quarnel lut` writes for the same options. It goes to every CRTC that drives\n"
        "the output; a CRTC whose gamma size is not 256 gets it resampled by linear interpolation.\n"
        "Example:\n  quarnel apply slider --interval 0.7 --output eDP-1");
    command->callback([cli, &global] { Apply(*cli, global); });
}

void AddShowCommand(CLI::App& app) {
    auto cli = std::make_shared<ShowCli>();
    auto* command = app.add_subcommand("show", "Read back the gamma ramp of an X11 display");
    AddTargetOptions(*command, cli->target);
    command->add_option("-o", cli->file, "Output file, - for standard output")
        ->type_name("FILE")
        ->capture_default_str();
    command->add_option("--format", cli->format, "csv, json, cal, icc, png or svg (default: from the extension)");
    command->footer(
        "Reads the first CRTC that drives the output; a gamma size other than 256 is resampled to 256\n"
        "entries by linear interpolation.\nExample:\n  quarnel show -o now.cal");
    command->callback([cli] { Show(*cli); });
}

void AddResetCommand(CLI::App& app) {
    auto target = std::make_shared<x11::GammaTarget>();
    auto* command = app.add_subcommand("reset", "Load the identity gamma ramp (i x 65535 / (size - 1))");
    AddTargetOptions(*command, *target);
    command->footer("Example:\n  quarnel reset --output eDP-1");
    command->callback([target] { Check(x11::LoadGammaCurve(*target, IdentityCurve())); });
}

}  // namespace

void AddDisplayCommands(CLI::App& app, const GlobalOptions& global) {
    AddApplyCommand(app, global);
    AddShowCommand(app);
    AddResetCommand(app);
}

}  // namespace quarnel::tool
