// SPDX-License-Identifier: MIT
#pragma once
// Where the user's display profiles live, and which of them are ours.

#include <string>

namespace quarnel::tool::colord {

// $XDG_DATA_HOME/icc, else ~/.local/share/icc; created when missing. Throws
// ToolError (73) when it cannot be.
std::string UserIccFolder();

// The file name a device's profile of ours gets: one per device, so that
// installing another mode replaces the last.
std::string ProfileFileName(const std::string& device);

// Whether `file` is one this tool installed into `folder`.
bool IsOurs(const std::string& file, const std::string& folder);

}  // namespace quarnel::tool::colord
