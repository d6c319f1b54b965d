// SPDX-License-Identifier: MIT
#include "formats/login_entries.h"

#include <algorithm>
#include <string_view>

#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

void CheckPrintable(const std::string& argument) {
    if (std::ranges::any_of(argument, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }))
        throw ToolError(kExitUsage, "an argument with a control character cannot go into a login entry");
}

// Characters an autostart entry's Exec line may hold only inside quotes.
bool NeedsQuotes(const std::string& argument) {
    return argument.empty() || argument.find_first_of(" \t\"'\\><~|&;$*?#()`") != std::string::npos;
}

// Inside double quotes the command line escapes ", `, $ and \ with a
// backslash; the entry's value then doubles every backslash, and % stands
// for a field code unless doubled.
std::string DesktopArgument(const std::string& argument) {
    std::string quoted;
    for (const char c : argument) {
        if (c == '"' || c == '`' || c == '$' || c == '\\') quoted += '\\';
        quoted += c;
    }
    if (NeedsQuotes(argument)) quoted = '"' + quoted + '"';
    std::string value;
    for (const char c : quoted) {
        if (c == '\\') value += '\\';
        if (c == '%') value += '%';
        value += c;
    }
    return value;
}

// systemd splits its command line at spaces outside quotes, reads C escapes
// inside them, and expands % specifiers and $ variables: each argument is
// quoted, with \ and " escaped and % and $ doubled.
std::string SystemdArgument(const std::string& argument) {
    std::string quoted = "\"";
    for (const char c : argument) {
        if (c == '\\' || c == '"') quoted += '\\';
        if (c == '%' || c == '$') quoted += c;
        quoted += c;
    }
    return quoted + '"';
}

template <typename Quote>
std::string Joined(const std::vector<std::string>& command, Quote quote) {
    std::string line;
    for (const std::string& argument : command) {
        CheckPrintable(argument);
        if (!line.empty()) line += ' ';
        line += quote(argument);
    }
    return line;
}

}  // namespace

std::string DesktopExec(const std::vector<std::string>& command) { return Joined(command, DesktopArgument); }

std::string SystemdExec(const std::vector<std::string>& command) { return Joined(command, SystemdArgument); }

std::string DesktopEntry(const std::vector<std::string>& command) {
    // Sessions run by systemd start the unit instead, so the curve is held once.
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Panel calibration\n"
           "Comment=Loads the notebook panel's calibration curve and holds it for the session\n"
           "Exec=" +
           DesktopExec(command) +
           "\n"
           "Terminal=false\n"
           "NoDisplay=true\n"
           "X-GNOME-HiddenUnderSystemd=true\n";
}

std::string SystemdUnit(const std::vector<std::string>& command) {
    return std::string(
               "[Unit]\n"
               "Description=Panel calibration curve, held for the graphical session\n"
               "PartOf=") +
           kLoginTarget + "\nAfter=" + kLoginTarget +
           "\n\n"
           "[Service]\n"
           "ExecStart=" +
           SystemdExec(command) +
           "\n"
           "Restart=on-failure\n"
           "RestartSec=5\n"
           "# Bad options, a damaged block or a missing one do not mend by trying again.\n"
           "RestartPreventExitStatus=64 65 66\n"
           "\n"
           "[Install]\n"
           "WantedBy=" +
           kLoginTarget + "\n";
}

}  // namespace quarnel::tool
