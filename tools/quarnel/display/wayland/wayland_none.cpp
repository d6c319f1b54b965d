// SPDX-License-Identifier: MIT
// Builds without libwayland keep the backend's entry, which reports why it
// cannot reach a compositor.

#include "display/gamma_backend.h"

namespace quarnel::tool::display {

std::unique_ptr<GammaBackend> OpenWayland(const std::string&, std::string& why) {
    why = "this quarnel was built without Wayland support (libwayland-client)";
    return nullptr;
}

}  // namespace quarnel::tool::display
