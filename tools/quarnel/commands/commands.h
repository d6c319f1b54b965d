// SPDX-License-Identifier: MIT
#pragma once
// Each command registers itself with the command line and runs from its
// callback; AddCommands registers them all.

#include <CLI/CLI.hpp>
#include <string>

namespace quarnel::tool {

// Options every command honours.
struct GlobalOptions {
    bool verbose = false;  // library chatter to standard error
};

// Every command of the tool, in the order help lists them.
void AddCommands(CLI::App& app, const GlobalOptions& global);

void AddModesCommand(CLI::App& app, const GlobalOptions& global);
void AddLutCommand(CLI::App& app, const GlobalOptions& global);
void AddBlockCommands(CLI::App& app, const GlobalOptions& global);
void AddStringCommands(CLI::App& app, const GlobalOptions& global);
void AddVersionCommand(CLI::App& app, const GlobalOptions& global);
// Factory QA over a production lot of blocks.
void AddQaCommand(CLI::App& app, const GlobalOptions& global);
// `block lot`, under the block command.
void AddBlockLotCommand(CLI::App& block);
// apply, show and reset: a mode's curve on a live display's gamma ramps.
void AddDisplayCommands(CLI::App& app, const GlobalOptions& global);
// apply at every login.
void AddAutostartCommand(CLI::App& app, const GlobalOptions& global);
// The panel's picture in the chromaticity diagram.
void AddPlotCommand(CLI::App& app, const GlobalOptions& global);
// The panel's display profile installed for the desktop.
void AddProfileCommands(CLI::App& app, const GlobalOptions& global);
// What `quarnel version` and `quarnel --version` print, without the last newline.
std::string VersionText(bool verbose);

// `quarnel` with no command shows the modes of the sample panel.
void RunDefaultModes(const GlobalOptions& global);

}  // namespace quarnel::tool
