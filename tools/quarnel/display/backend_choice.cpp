// SPDX-License-Identifier: MIT
// The one place that decides how the session's ramps are reached.

#include <cstdlib>

#include "display/gamma_backend.h"
#include "io/tool_error.h"

namespace quarnel::tool::display {

bool IsBuiltInPanel(const std::string& output) {
    for (const char* prefix : {"eDP", "LVDS", "DSI"})
        if (output.starts_with(prefix)) return true;
    return false;
}

std::unique_ptr<GammaBackend> OpenBackend(const BackendChoice& choice) {
    std::string why;
    if (choice.backend == "wayland" || choice.backend == "x11") {
        auto backend = choice.backend == "wayland" ? OpenWayland(choice.display, why) : OpenX11(choice.display, why);
        if (!backend) throw ToolError(kExitUnavailable, why);
        return backend;
    }
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    std::string found;
    if (wayland != nullptr && *wayland != '\0') {
        if (auto backend = OpenWayland(choice.display, why)) return backend;
        found = why + "; ";
    }
    if (auto backend = OpenX11(choice.display, why)) return backend;
    // GNOME and KDE keep the ramps to themselves and load a profile's curve instead.
    throw ToolError(kExitUnavailable, found + why + "; on GNOME or KDE use `quarnel profile install`");
}

}  // namespace quarnel::tool::display
