// SPDX-License-Identifier: MIT
// quarnel: shows and exports what the calibration library makes of a panel.
// Data goes to standard output, messages to standard error; the exit code
// follows sysexits.

#include <CLI/CLI.hpp>
#include <iostream>

#include "commands/commands.h"
#include "io/atomic_file.h"
#include "io/exit_cleanup.h"
#include "io/standard_streams.h"
#include "io/tool_error.h"

namespace {

using namespace quarnel::tool;

int ParseFailure(const CLI::App& app, const CLI::ParseError& e) {
    const int code = app.exit(e);
    return code == static_cast<int>(CLI::ExitCodes::Success) ? kExitOk : kExitUsage;
}

int Failure(const ToolError& e) {
    std::cout.flush();
    std::cout.clear();
    std::cerr << "quarnel: " << e.what() << '\n';
    return e.code();
}

}  // namespace

int main(int argc, char** argv) {
    HoldClosedStandardStreams();
    InstallExitCleanup();
    GlobalOptions global;
    CLI::App app("Display calibration curves of a notebook panel, through the quarnel library.", "quarnel");
    app.require_subcommand(0, 1);
    app.fallthrough();
    app.add_flag("-v,--verbose", global.verbose, "Pass the library's own messages on to standard error");
    app.set_version_flag(
        "--version", [&global] { return VersionText(global.verbose); }, "Show the tool's and the library's versions");
    app.footer("Example:\n  quarnel modes\n  quarnel lut slider --interval 0.6 -o warm.icc");
    app.failure_message(
        [](const CLI::App*, const CLI::Error& e) { return "quarnel: " + std::string(e.what()) + " (see --help)\n"; });
    AddCommands(app, global);
    int code = kExitOk;
    try {
        app.parse(argc, argv);
        if (app.get_subcommands().empty()) RunDefaultModes(global);
    } catch (const CLI::ParseError& e) {
        code = ParseFailure(app, e);
    } catch (const ToolError& e) {
        return Failure(e);
    }
    try {
        // Help, version and every command's data: all of it reached its reader, or the run failed.
        if (code == kExitOk) FlushStandardOutput();
    } catch (const ToolError& e) {
        return Failure(e);
    }
    return code;
}
