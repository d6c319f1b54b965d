// SPDX-License-Identifier: MIT
#pragma once
// The display profiles the colour daemon (colord) holds for a display: the
// device it knows the display by, the profile it loads for it, and ours
// among them. Every call connects, does its work and disconnects.

#include <string>
#include <vector>

#include "formats/curve_subject.h"

namespace quarnel::tool::colord {

// Which display a command works on: a colord device id as given, else the
// output whose EDID names it (empty: the notebook's own panel).
struct DisplayChoice {
    std::string output;
    std::string device;
};

// An ICC profile of ours: `file` in the user's ICC folder, `bytes` its content.
struct ProfileFile {
    std::string folder;
    std::string file;
    std::string bytes;
};

struct Registration {
    std::string device;
    std::string profile;  // colord's id
    std::string file;
    bool isDefault = false;
};

// The device id, as a compositor registers the display. Throws ToolError:
// 69 when no EDID is found, 64 when several displays leave it open.
DisplayIdentity ResolveDevice(const DisplayChoice& choice);

// Replaces any profile of ours on the device with `profile`, written into
// its folder, and makes it the device's default. Throws ToolError: 69 when
// colord or the device cannot be reached, 73 when the file cannot be written.
void InstallProfile(const std::string& device, const ProfileFile& profile);

// Takes every profile of ours in `folder` off the device, out of colord and
// off the disk; returns their files.
std::vector<std::string> RemoveProfiles(const std::string& device, const std::string& folder);

// Every profile of every display device; `folder` marks ours.
std::vector<Registration> ListProfiles();

}  // namespace quarnel::tool::colord
