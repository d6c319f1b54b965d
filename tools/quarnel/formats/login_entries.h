// SPDX-License-Identifier: MIT
#pragma once
// The two ways a desktop starts a command at login: an XDG autostart entry
// and a systemd user unit tied to the graphical session. Both run the same
// command line, each quoted by its own format's rules.

#include <string>
#include <vector>

namespace quarnel::tool {

// The unit the entry leaves to systemd, and the target that wants it.
inline constexpr const char* kLoginUnitName = "quarnel-apply.service";
inline constexpr const char* kLoginTarget = "graphical-session.target";

// Throws ToolError (64) for an argument no line of either file can carry
// (a control character such as a newline).
std::string DesktopEntry(const std::vector<std::string>& command);
std::string SystemdUnit(const std::vector<std::string>& command);

// The command line as each file writes it, for `autostart status` to show.
std::string DesktopExec(const std::vector<std::string>& command);
std::string SystemdExec(const std::vector<std::string>& command);

}  // namespace quarnel::tool
