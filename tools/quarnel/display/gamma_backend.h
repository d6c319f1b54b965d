// SPDX-License-Identifier: MIT
#pragma once
// A live display's gamma ramps, whichever way the session reaches them: the
// outputs it has and a curve loaded into, read back from or held on them.
// Failures throw ToolError with one line for the user (69 for a display that
// cannot be reached or refuses).

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "io/stop_signals.h"
#include "model/curve.h"

namespace quarnel::tool::display {

// What a load did to one output, for the line the user sees.
struct LoadedOutput {
    std::string output;  // "eDP-1"
    std::string detail;  // "CRTC 0x3f, 256 entries"
};

class GammaBackend {
public:
    virtual ~GammaBackend() = default;

    // The display as the user names it: "X display :0", "Wayland compositor wayland-1".
    virtual std::string Label() const = 0;
    // The connected outputs' names.
    virtual std::vector<std::string> Outputs() = 0;
    // Loads `curve` into each output, each at the size of its own ramp.
    virtual std::vector<LoadedOutput> Load(const std::vector<std::string>& outputs, const Curve& curve) = 0;
    // The curve on `output`, at 256 entries; `source` says which ramp was read.
    virtual Curve Read(const std::string& output, std::string& source) = 0;
    // Keeps `curve` on the outputs, as Load left it, until `stop` says SIGINT
    // or SIGTERM arrived; `reloaded` hears of each output the curve had to be
    // loaded into again.
    using Reloaded = std::function<void(const LoadedOutput&)>;
    virtual void Hold(const std::vector<std::string>& outputs, const Curve& curve, StopSignals& stop,
                      const Reloaded& reloaded) = 0;
    // Whether the display gives the ramp back when the process that loaded it ends.
    virtual bool RampEndsWithProcess() const = 0;
};

// Which backend and display the user asked for: "wayland", "x11" or empty
// for the session's own; an empty display is the session's.
struct BackendChoice {
    std::string backend;
    std::string display;
};

// Wayland when WAYLAND_DISPLAY is set and the compositor offers gamma
// control, else X11 RandR when DISPLAY is set.
std::unique_ptr<GammaBackend> OpenBackend(const BackendChoice& choice);

// Each backend, or nothing when the session has no such display (with the
// reason in `why`); throws when one is there but fails.
std::unique_ptr<GammaBackend> OpenWayland(const std::string& display, std::string& why);
std::unique_ptr<GammaBackend> OpenX11(const std::string& display, std::string& why);

// A connector of the notebook's own panel: eDP, LVDS or DSI.
bool IsBuiltInPanel(const std::string& output);

}  // namespace quarnel::tool::display
