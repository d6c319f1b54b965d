// SPDX-License-Identifier: MIT
#pragma once
// Each command registers itself with the command line and runs from its
// callback.

#include <CLI/CLI.hpp>
#include <string>

namespace quarnel::tool {

// Options every command honours.
struct GlobalOptions {
    bool verbose = false;  // library chatter to standard error
};

void AddModesCommand(CLI::App& app, const GlobalOptions& global);
void AddLutCommand(CLI::App& app, const GlobalOptions& global);
void AddBlockCommands(CLI::App& app, const GlobalOptions& global);
void AddStringCommands(CLI::App& app, const GlobalOptions& global);
void AddVersionCommand(CLI::App& app, const GlobalOptions& global);
// What `quarnel version` and `quarnel --version` print, without the last newline.
std::string VersionText(bool verbose);

// `quarnel` with no command shows the modes of the sample panel.
void RunDefaultModes(const GlobalOptions& global);

}  // namespace quarnel::tool
