// SPDX-License-Identifier: MIT
// Builds without libXrandr keep the backend's entry, which reports why it
// cannot reach an X display.

#include "display/gamma_backend.h"

namespace quarnel::tool::display {

std::unique_ptr<GammaBackend> OpenX11(const std::string&, std::string& why) {
    why = "this quarnel was built without X11 RandR support (libXrandr)";
    return nullptr;
}

}  // namespace quarnel::tool::display
