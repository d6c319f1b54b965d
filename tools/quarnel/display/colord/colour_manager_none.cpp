// SPDX-License-Identifier: MIT
// A build without libcolord: the profile commands stay and say why they
// cannot work.

#include "display/colord/colour_manager.h"
#include "io/tool_error.h"

namespace quarnel::tool::colord {
namespace {

[[noreturn]] void Unavailable() { throw ToolError(kExitUnavailable, "built without colord support (libcolord)"); }

}  // namespace

DisplayIdentity ResolveDevice(const DisplayChoice&) { Unavailable(); }
void InstallProfile(const std::string&, const ProfileFile&) { Unavailable(); }
std::vector<std::string> RemoveProfiles(const std::string&, const std::string&) { Unavailable(); }
std::vector<Registration> ListProfiles() { Unavailable(); }

}  // namespace quarnel::tool::colord
