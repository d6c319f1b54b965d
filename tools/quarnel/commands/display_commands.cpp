// SPDX-License-Identifier: MIT
#include "commands/display_commands.h"

#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "formats/write_curve.h"
#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

struct ShowCli {
    TargetCli target;
    std::string file = "-";
    std::string format;
};

void AddTargetOptions(CLI::App& command, TargetCli& target, bool several) {
    auto* output = command
                       .add_option("--output", target.output,
                                   "Output to use, e.g. eDP-1 (default: the built-in panel, eDP, LVDS or DSI)")
                       ->type_name("NAME");
    if (several) command.add_flag("--all-outputs", target.allOutputs, "Use every connected output")->excludes(output);
    command.add_option("--backend", target.backend.backend, "wayland or x11 (default: from the session)")
        ->check(CLI::IsMember({"wayland", "x11"}))
        ->type_name("BACKEND");
    command
        .add_option("--display", target.backend.display,
                    "Wayland socket or X display to use (default: $WAYLAND_DISPLAY, else $DISPLAY)")
        ->type_name("DISPLAY");
}

std::string Listed(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
    return list.empty() ? "none" : list;
}

// The outputs the target names, each connected.
std::vector<std::string> ChosenOutputs(display::GammaBackend& backend, const TargetCli& target) {
    const std::vector<std::string> connected = backend.Outputs();
    if (!target.output.empty()) {
        if (std::ranges::find(connected, target.output) == connected.end())
            throw ToolError(kExitUnavailable, backend.Label() + " has no connected output named " + target.output +
                                                  " (connected: " + Listed(connected) + ")");
        return {target.output};
    }
    if (connected.empty()) throw ToolError(kExitUnavailable, backend.Label() + " has no connected output");
    if (target.allOutputs) return connected;
    std::vector<std::string> panels;
    std::ranges::copy_if(connected, std::back_inserter(panels), display::IsBuiltInPanel);
    if (panels.empty())
        throw ToolError(kExitUnavailable, backend.Label() + " has no built-in panel (eDP, LVDS, DSI) among " +
                                              Listed(connected) + "; name one with --output or use --all-outputs");
    return panels;
}

void Apply(const ApplyCli& cli, const GlobalOptions& global) {
    RequirePanelSource(cli.curve);
    const SubjectCurve curve = ComputeCurveOrFail(cli.mode, cli.curve, global);
    const auto backend = display::OpenBackend(cli.target.backend);
    const std::vector<std::string> outputs = ChosenOutputs(*backend, cli.target);
    const bool hold = cli.hold || backend->RampEndsWithProcess();
    // From the first ramp on, a stop signal ends the hold in order.
    std::optional<StopSignals> stop;
    if (hold) stop.emplace();
    const auto say = [&](const display::LoadedOutput& loaded, const char* what) {
        if (!cli.quiet)
            std::cerr << "quarnel: " << loaded.output << ": " << curve.subject.mode << ' ' << what << " ("
                      << loaded.detail << ")\n";
    };
    for (const display::LoadedOutput& loaded : backend->Load(outputs, curve.curve)) say(loaded, "loaded");
    if (!hold) return;
    if (!cli.quiet)
        std::cerr << "quarnel: holding " << Listed(outputs) << " on " << backend->Label() << " until SIGINT or SIGTERM"
                  << (backend->RampEndsWithProcess() ? ", which give the ramp back\n" : "\n");
    backend->Hold(outputs, curve.curve, *stop,
                  [&](const display::LoadedOutput& loaded) { say(loaded, "loaded again"); });
}

void Show(const ShowCli& cli) {
    const CurveFormat format = ChooseCurveFormat(cli.file, cli.format);
    const auto backend = display::OpenBackend(cli.target.backend);
    const std::string output = ChosenOutputs(*backend, cli.target).front();
    std::string source;
    const Curve curve = backend->Read(output, source);
    std::cerr << "quarnel: read " << source << '\n';
    WriteCurve(curve, format, cli.file, {UnknownPanel(backend->Label()), "gamma ramp read back", std::nullopt});
}

void Reset(const TargetCli& target) {
    const auto backend = display::OpenBackend(target.backend);
    backend->Load(ChosenOutputs(*backend, target), IdentityCurve());
}

}  // namespace

void AddApplyOptions(CLI::App& command, ApplyCli& cli, bool hold) {
    AddModeArguments(command, cli.mode, cli.curve);
    AddTargetOptions(command, cli.target, true);
    if (hold) command.add_flag("--hold", cli.hold, "Stay, and on X11 load the curve again after every RandR change");
    command.add_flag("-q,--quiet", cli.quiet, "Say nothing but failures");
}

void AddDisplayCommands(CLI::App& app, const GlobalOptions& global) {
    auto apply = std::make_shared<ApplyCli>();
    auto* command = app.add_subcommand("apply", "Load one mode's curve as the gamma ramp of a live display");
    AddApplyOptions(*command, *apply, true);
    command->footer(
        "The curve is the one `quarnel lut` writes for the same options, as entry x 65535 / 65280, resampled\n"
        "to each ramp's size by linear interpolation. It needs a panel: --calib, --firmware or --sample.\n"
        "On Wayland (wlroots-style compositors) the compositor keeps the ramp only while quarnel holds it:\n"
        "apply stays until Ctrl-C or SIGTERM. On X11 the ramp stays after apply exits; --hold keeps\n"
        "watching and loads it again after a hotplug, a resume or a mode change.\n"
        "Example:\n  quarnel apply slider --interval 0.7 --calib panel.bin");
    command->callback([apply, &global] { Apply(*apply, global); });

    auto show = std::make_shared<ShowCli>();
    command = app.add_subcommand("show", "Read back the gamma ramp of an X11 display");
    AddTargetOptions(*command, show->target, false);
    command->add_option("-o", show->file, "Output file, - for standard output")
        ->type_name("FILE")
        ->capture_default_str();
    command->add_option("--format", show->format, "csv, json, cal, icc, png or svg (default: from the extension)");
    command->footer(
        "Reads the first CRTC that drives the output and names it on standard error; a gamma size other\n"
        "than 256 is resampled to 256 entries by linear interpolation. Wayland's gamma control cannot\n"
        "read a ramp back.\nExample:\n  quarnel show -o now.cal");
    command->callback([show] { Show(*show); });

    auto reset = std::make_shared<TargetCli>();
    command = app.add_subcommand("reset", "Load the identity gamma ramp (i x 65535 / (size - 1))");
    AddTargetOptions(*command, *reset, true);
    command->footer(
        "On Wayland the identity is held for a moment and given back, which restores the compositor's own\n"
        "ramp.\nExample:\n  quarnel reset --all-outputs");
    command->callback([reset] { Reset(*reset); });
}

}  // namespace quarnel::tool
