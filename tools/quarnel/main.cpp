// SPDX-License-Identifier: MIT
// quarnel: shows and exports what the calibration library makes of a panel.
// Data goes to standard output, messages to standard error; the exit code
// follows sysexits.

#include <CLI/CLI.hpp>
#include <iostream>

#include "commands/commands.h"
#include "commands/panel_commands.h"
#include "tool_error.h"
#include "x11/display_commands.h"

namespace {

using namespace quarnel::tool;

int ParseFailure(const CLI::App& app, const CLI::ParseError& e) {
    const int code = app.exit(e);
    return code == static_cast<int>(CLI::ExitCodes::Success) ? kExitOk : kExitUsage;
}

}  // namespace

int main(int argc, char** argv) {
    GlobalOptions global;
    CLI::App app("Display calibration curves of a notebook panel, through the quarnel library.", "quarnel");
    app.require_subcommand(0, 1);
    app.fallthrough();
    app.add_flag("-v,--verbose", global.verbose, "Pass the library's own messages on to standard error");
    app.footer("Example:\n  quarnel modes\n  quarnel lut slider --interval 0.6 -o warm.icc");
    app.failure_message(
        [](const CLI::App*, const CLI::Error& e) { return "quarnel: " + std::string(e.what()) + " (see --help)\n"; });
    AddModesCommand(app, global);
    AddLutCommand(app, global);
    AddBlockCommands(app, global);
    AddStringCommands(app, global);
    AddVersionCommand(app, global);
    AddDisplayCommands(app, global);
    AddPlotCommand(app, global);
    AddProfileCommands(app, global);
    try {
        app.parse(argc, argv);
        if (app.get_subcommands().empty()) RunDefaultModes(global);
    } catch (const CLI::ParseError& e) {
        return ParseFailure(app, e);
    } catch (const ToolError& e) {
        std::cout.flush();
        std::cerr << "quarnel: " << e.what() << '\n';
        return e.code();
    }
    return kExitOk;
}
