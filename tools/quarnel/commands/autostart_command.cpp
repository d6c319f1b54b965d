// SPDX-License-Identifier: MIT
// quarnel autostart enable, disable and status: `quarnel apply ... --hold`
// at every login, as an XDG autostart entry for sessions that read those
// and a systemd user unit for sessions run by systemd.

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <sstream>

#include "commands/commands.h"
#include "commands/display_commands.h"
#include "formats/login_entries.h"
#include "io/atomic_file.h"
#include "io/executable_path.h"
#include "io/input_file.h"
#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

namespace fs = std::filesystem;

struct LoginFiles {
    fs::path entry;  // the autostart entry
    fs::path unit;   // the systemd user unit
    fs::path wants;  // the target's link to the unit
};

LoginFiles FindLoginFiles() {
    fs::path config;
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg != nullptr && *xdg == '/') {
        config = xdg;
    } else if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') {
        config = fs::path(home) / ".config";
    } else {
        throw ToolError(kExitUnavailable, "neither XDG_CONFIG_HOME nor HOME names a folder for login entries");
    }
    const fs::path units = config / "systemd" / "user";
    return {config / "autostart" / "quarnel.desktop", units / kLoginUnitName,
            units / (std::string(kLoginTarget) + ".wants") / kLoginUnitName};
}

// Files named on the command line, made absolute: the login runs elsewhere.
bool NamesFile(const std::string& option) { return option == "--calib" || option == "--curve"; }

// `quarnel apply` with the options this command was given, and --hold.
std::vector<std::string> LoginCommand(const CLI::App& command, const ApplyCli& cli) {
    std::vector<std::string> line{RunningExecutable(), "apply", cli.mode};
    for (const CLI::Option* option : command.get_options()) {
        if (option->count() == 0 || option->get_positional()) continue;
        const std::string name = option->get_name();
        line.push_back(name);
        if (option->get_expected_min() == 0) continue;  // a flag
        for (const std::string& value : option->results())
            line.push_back(NamesFile(name) ? fs::absolute(value).string() : value);
    }
    line.push_back("--hold");
    return line;
}

void Enable(const CLI::App& command, const ApplyCli& cli, const GlobalOptions& global) {
    // Checked now, where the user sees it, rather than at the next login.
    RequirePanelSource(cli.curve);
    ComputeCurveOrFail(cli.mode, cli.curve, global);
    const std::vector<std::string> line = LoginCommand(command, cli);
    const std::string entry = DesktopEntry(line), unit = SystemdUnit(line);
    const LoginFiles files = FindLoginFiles();
    std::error_code error;
    for (const fs::path& folder : {files.entry.parent_path(), files.wants.parent_path()})
        if (fs::create_directories(folder, error); error)
            throw ToolError(kExitCantCreate, folder.string() + ": cannot create the folder");
    WriteFileAtomically(files.entry.string(), entry);
    WriteFileAtomically(files.unit.string(), unit);
    fs::remove(files.wants, error);
    fs::create_symlink(fs::path("..") / kLoginUnitName, files.wants, error);
    if (error) throw ToolError(kExitCantCreate, files.wants.string() + ": cannot link the unit to its target");
    std::cout << "wrote " << files.entry.string() << '\n'
              << "wrote " << files.unit.string() << " (wanted by " << kLoginTarget << ")\n";
}

void Disable() {
    const LoginFiles files = FindLoginFiles();
    bool any = false;
    for (const fs::path& file : {files.wants, files.unit, files.entry}) {
        std::error_code error;
        if (!fs::remove(file, error)) {
            if (error) throw ToolError(kExitIoError, file.string() + ": cannot remove it");
            continue;
        }
        if (file != files.wants) std::cout << "removed " << file.string() << '\n';
        any = true;
    }
    if (!any) std::cout << "nothing to remove: no login entry of quarnel\n";
}

// The line that starts with `key` in the file, without the key.
std::string ValueOf(const fs::path& file, const std::string& key) {
    std::istringstream in(ReadInputFile(file.string()));
    for (std::string line; std::getline(in, line);)
        if (line.starts_with(key)) return line.substr(key.size());
    return "";
}

void Status() {
    const LoginFiles files = FindLoginFiles();
    if (fs::exists(files.entry))
        std::cout << "autostart entry  " << files.entry.string() << "\n  " << ValueOf(files.entry, "Exec=") << '\n';
    else
        std::cout << "autostart entry  not set\n";
    if (fs::exists(files.unit))
        std::cout << "systemd unit     " << files.unit.string()
                  << (fs::exists(files.wants) ? "" : std::string(" (not wanted by ") + kLoginTarget + ")") << "\n  "
                  << ValueOf(files.unit, "ExecStart=") << '\n';
    else
        std::cout << "systemd unit     not set\n";
}

}  // namespace

void AddAutostartCommand(CLI::App& app, const GlobalOptions& global) {
    auto* autostart = app.add_subcommand("autostart", "Load a mode's curve at every login and hold it");
    autostart->require_subcommand(1);
    autostart->footer("Example:\n  quarnel autostart enable slider --calib panel.bin\n  quarnel autostart status");

    auto cli = std::make_shared<ApplyCli>();
    auto* enable = autostart->add_subcommand("enable", "Run `quarnel apply MODE ... --hold` at every login");
    AddApplyOptions(*enable, *cli, false);
    enable->footer(
        "Writes $XDG_CONFIG_HOME/autostart/quarnel.desktop (default ~/.config) and the systemd user unit\n"
        "$XDG_CONFIG_HOME/systemd/user/" +
        std::string(kLoginUnitName) + ", wanted by " + kLoginTarget +
        ", both running this\n"
        "quarnel by its absolute path with the options given here (--calib and --curve made absolute).\n"
        "Example:\n  quarnel autostart enable slider --interval 0.7 --calib panel.bin");
    enable->callback([enable, cli, &global] { Enable(*enable, *cli, global); });

    autostart->add_subcommand("disable", "Remove the login entry and unit that enable wrote")
        ->callback(Disable)
        ->footer("Example:\n  quarnel autostart disable");
    autostart->add_subcommand("status", "Show the login entry and unit, and the command they run")
        ->callback(Status)
        ->footer("Example:\n  quarnel autostart status");
}

}  // namespace quarnel::tool
