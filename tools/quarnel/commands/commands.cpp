// SPDX-License-Identifier: MIT
#include "commands/commands.h"

#include <regex>

namespace quarnel::tool {
namespace {

// The parser names an option's type after the C++ value it fills (FLOAT,
// INT, UINT) and adds its checks' own names ("FLOAT in [0 - 1]",
// "NONNEGATIVE"); help shows a word a person reads and the range it allows.
std::string TypeForPeople(const std::string& parsed) {
    static const std::regex range(R"(^[A-Z]+ in \[(.+) - (.+)\]$)");
    const size_t colon = parsed.find(':');
    const std::string base = parsed.substr(0, colon);
    std::string text = base == "FLOAT" ? "NUMBER" : "WHOLE NUMBER";
    const std::string check = colon == std::string::npos ? "" : parsed.substr(colon + 1);
    std::smatch bounds;
    if (std::regex_match(check, bounds, range)) return text + " " + bounds[1].str() + " to " + bounds[2].str();
    if (check == "NONNEGATIVE") return text + " 0 or more";
    if (check == "POSITIVE") return text + " above 0";
    return check.empty() ? text : text + ":" + check;
}

void NameTypesForPeople(CLI::App& app) {
    for (CLI::Option* option : app.get_options()) {
        const std::string parsed = option->get_type_name();
        const std::string base = parsed.substr(0, parsed.find(':'));
        if (base != "FLOAT" && base != "INT" && base != "UINT") continue;
        // The checks' names now stand in the type itself.
        for (int i = 0;; ++i) try {
                option->get_validator(i)->description("");
            } catch (const CLI::OptionNotFound&) {
                break;
            }
        option->type_name(TypeForPeople(parsed));
    }
    for (CLI::App* command : app.get_subcommands([](CLI::App*) { return true; })) NameTypesForPeople(*command);
}

}  // namespace

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
    NameTypesForPeople(app);
}

}  // namespace quarnel::tool
