// SPDX-License-Identifier: MIT
#pragma once
// apply, show and reset: a mode's curve on a live display's gamma ramps.
// apply's options are shared with the login entry that runs it.

#include <CLI/CLI.hpp>
#include <string>

#include "commands/commands.h"
#include "commands/curve_cli.h"
#include "display/gamma_backend.h"

namespace quarnel::tool {

// Which outputs of which display: the built-in panel unless an output is
// named or all are asked for.
struct TargetCli {
    display::BackendChoice backend;
    std::string output;
    bool allOutputs = false;
};

struct ApplyCli {
    CurveCli curve;
    std::string mode;
    TargetCli target;
    bool hold = false;
    bool quiet = false;
};

// MODE, the curve and panel options, the outputs and the display; with
// `hold`, --hold too.
void AddApplyOptions(CLI::App& command, ApplyCli& cli, bool hold);

void AddDisplayCommands(CLI::App& app, const GlobalOptions& global);

}  // namespace quarnel::tool
