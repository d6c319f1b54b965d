// SPDX-License-Identifier: MIT
#pragma once
// Commands about the panel as a whole rather than one curve: its picture in
// the chromaticity diagram and its display profile installed for the desktop.

#include <CLI/CLI.hpp>

#include "commands/commands.h"

namespace quarnel::tool {

void AddPlotCommand(CLI::App& app, const GlobalOptions& global);
void AddProfileCommands(CLI::App& app, const GlobalOptions& global);

}  // namespace quarnel::tool
