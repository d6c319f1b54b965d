// SPDX-License-Identifier: MIT
// quarnel profile install, remove and list: a mode's display profile in the
// user's ICC folder, registered with colord as the display's default, so that
// the desktop loads its calibration curve and uses its colours.

#include <iostream>
#include <memory>

#include "commands/commands.h"
#include "commands/curve_cli.h"
#include "display/colord/colour_manager.h"
#include "display/colord/icc_folder.h"
#include "formats/binary_formats.h"

namespace quarnel::tool {
namespace {

struct InstallCli {
    CurveCli curve;
    std::string mode;
    colord::DisplayChoice display;
};

void AddDisplayOptions(CLI::App& command, colord::DisplayChoice& display) {
    auto* output = command.add_option("--output", display.output,
                                      "Display connector whose EDID names the device (default: the built-in panel)");
    command.add_option("--device", display.device, "colord device id, e.g. xrandr-<vendor>-<model>-<serial>")
        ->excludes(output);
}

// The display profile of the mode's curve, as `quarnel lut MODE -o x.icc`
// writes it, for this display.
std::string ModeProfile(const InstallCli& cli, const GlobalOptions& global, const DisplayIdentity& display) {
    SubjectCurve result = ComputeCurveOrFail(cli.mode, cli.curve, global);
    result.subject.display = display;
    return CurveToIcc(result.curve, result.subject);
}

void Install(const InstallCli& cli, const GlobalOptions& global) {
    RequirePanelSource(cli.curve);
    const DisplayIdentity display = colord::ResolveDevice(cli.display);
    const std::string& device = display.deviceId;
    const colord::ProfileFile file{colord::UserIccFolder(), colord::ProfileFileName(device),
                                   ModeProfile(cli, global, display)};
    colord::InstallProfile(device, file);
    std::cout << device << ": " << file.folder << '/' << file.file << " is the default profile\n";
}

void Remove(const colord::DisplayChoice& display) {
    const std::string device = colord::ResolveDevice(display).deviceId;
    for (const auto& file : colord::RemoveProfiles(device, colord::UserIccFolder()))
        std::cout << device << ": removed " << file << '\n';
}

void List() {
    for (const auto& r : colord::ListProfiles()) {
        if (r.profile.empty()) {
            std::cout << r.device << "  (no profile)\n";
            continue;
        }
        std::cout << r.device << (r.isDefault ? "  default  " : "           ") << r.profile << "  " << r.file << '\n';
    }
}

}  // namespace

void AddProfileCommands(CLI::App& app, const GlobalOptions& global) {
    auto* profile = app.add_subcommand("profile", "A mode's display profile installed for the desktop through colord");
    profile->require_subcommand(1);
    profile->footer(
        "Example:\n  quarnel profile install slider --calib panel.bin --interval 0.7\n  quarnel profile list");

    auto install = std::make_shared<InstallCli>();
    auto* command = profile->add_subcommand("install", "Install one mode's profile as the display's default");
    AddModeArguments(*command, install->mode, install->curve);
    AddDisplayOptions(*command, install->display);
    command->footer(
        "Writes the profile into $XDG_DATA_HOME/icc (default ~/.local/share/icc), replacing the last one\n"
        "installed for the display, and makes it the default of the display's colord device, which\n"
        "GNOME and other colord clients then load.\nExample:\n  quarnel profile install slider --calib panel.bin "
        "--interval 0.7");
    command->callback([install, &global] { Install(*install, global); });

    auto display = std::make_shared<colord::DisplayChoice>();
    command =
        profile->add_subcommand("remove", "Take the installed profile off the display, out of colord and the folder");
    AddDisplayOptions(*command, *display);
    command->footer("Example:\n  quarnel profile remove --output eDP-1");
    command->callback([display] { Remove(*display); });

    command = profile->add_subcommand("list", "Show the profiles colord holds for each display");
    command->footer("Example:\n  quarnel profile list");
    command->callback(List);
}

}  // namespace quarnel::tool
