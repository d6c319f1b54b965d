// SPDX-License-Identifier: MIT
#include "commands/commands.h"

namespace quarnel::tool {

void AddCommands(CLI::App& app, const GlobalOptions& global) {
    AddModesCommand(app, global);
    AddLutCommand(app, global);
    AddBlockCommands(app, global);
    AddStringCommands(app, global);
    AddVersionCommand(app, global);
    AddQaCommand(app, global);
    AddDisplayCommands(app, global);
    AddPlotCommand(app, global);
    AddProfileCommands(app, global);
    AddAutostartCommand(app, global);
}

}  // namespace quarnel::tool
