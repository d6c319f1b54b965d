// SPDX-License-Identifier: MIT
#pragma once
// apply, show and reset: a mode's curve on a live X11 display's gamma ramps.

#include <CLI/CLI.hpp>

#include "commands/commands.h"

namespace quarnel::tool {

void AddDisplayCommands(CLI::App& app, const GlobalOptions& global);

}  // namespace quarnel::tool
