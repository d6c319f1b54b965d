// SPDX-License-Identifier: MIT
// The gamma ramps through X11 RandR: each CRTC carries its own ramp, of the
// size its hardware has, set with XRRSetCrtcGamma and read back with
// XRRGetCrtcGamma. The server keeps a ramp after the client that set it is
// gone, but a hotplug, a resume or a mode change may reset it: holding
// watches RandR's change notifications and loads the curve again.

#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "display/gamma_backend.h"
#include "display/ramp.h"
#include "display/resample.h"
#include "io/stop_signals.h"
#include "io/tool_error.h"

namespace quarnel::tool::display {
namespace {

// Gamma ramps per CRTC arrived with RandR 1.2.
constexpr int kRandrMajor = 1;
constexpr int kRandrMinor = 2;

template <auto Free>
struct Freer {
    template <typename T>
    void operator()(T* p) const {
        Free(p);
    }
};
using DisplayPtr = std::unique_ptr<Display, Freer<XCloseDisplay>>;
using ResourcesPtr = std::unique_ptr<XRRScreenResources, Freer<XRRFreeScreenResources>>;
using OutputPtr = std::unique_ptr<XRROutputInfo, Freer<XRRFreeOutputInfo>>;
using CrtcPtr = std::unique_ptr<XRRCrtcInfo, Freer<XRRFreeCrtcInfo>>;
using GammaPtr = std::unique_ptr<XRRCrtcGamma, Freer<XRRFreeGamma>>;

// Xlib's own handlers print several lines and end the process. A protocol
// error is recorded instead and becomes the command's one-line failure; a
// lost connection cannot be returned from, so it ends the run as such.
std::string gProtocolError;

int RecordProtocolError(Display* dpy, XErrorEvent* event) {
    if (!gProtocolError.empty()) return 0;
    char text[256] = {};
    XGetErrorText(dpy, event->error_code, text, sizeof text);
    gProtocolError = std::string(text) + " (request " + std::to_string(event->request_code) + "." +
                     std::to_string(event->minor_code) + ")";
    return 0;
}

[[noreturn]] int LoseConnection(Display*) {
    std::fputs("quarnel: lost the connection to the X display\n", stderr);
    std::_Exit(kExitUnavailable);
}

std::string Hex(unsigned long id) {
    std::ostringstream text;
    text << "0x" << std::hex << id;
    return text.str();
}

class X11Backend final : public GammaBackend {
public:
    X11Backend(DisplayPtr display, std::string name) : display_(std::move(display)), label_("X display " + name) {
        Refresh();
    }

    std::string Label() const override { return label_; }

    std::vector<std::string> Outputs() override {
        std::vector<std::string> names;
        for (const RROutput output : OutputIds()) {
            const OutputPtr info(XRRGetOutputInfo(dpy(), resources_.get(), output));
            if (info && info->connection == RR_Connected) names.emplace_back(info->name, info->nameLen);
        }
        return names;
    }

    std::vector<LoadedOutput> Load(const std::vector<std::string>& outputs, const Curve& curve) override {
        std::vector<LoadedOutput> loaded;
        for (const std::string& output : outputs) {
            std::string detail;
            for (const RRCrtc crtc : DrivingCrtcs(output)) {
                const int size = XRRGetCrtcGammaSize(dpy(), crtc);
                const GammaPtr ramp(size > 0 ? XRRAllocGamma(size) : nullptr);
                if (!ramp)
                    throw ToolError(kExitUnavailable, "CRTC " + Hex(crtc) + " of " + label_ + " has no gamma ramp");
                const std::vector<std::uint16_t> planes = RampPlanes(curve, static_cast<std::size_t>(size));
                const auto entries = static_cast<std::ptrdiff_t>(size);
                std::copy(planes.begin(), planes.begin() + entries, ramp->red);
                std::copy(planes.begin() + entries, planes.begin() + 2 * entries, ramp->green);
                std::copy(planes.begin() + 2 * entries, planes.end(), ramp->blue);
                XRRSetCrtcGamma(dpy(), crtc, ramp.get());
                detail += (detail.empty() ? "CRTC " : ", CRTC ") + Hex(crtc) + ", " + std::to_string(size) + " entries";
            }
            loaded.push_back({output, detail});
        }
        CheckProtocolErrors();
        return loaded;
    }

    Curve Read(const std::string& output, std::string& source) override {
        const RRCrtc crtc = DrivingCrtcs(output).front();
        const GammaPtr ramp(XRRGetCrtcGamma(dpy(), crtc));
        CheckProtocolErrors();
        if (!ramp || ramp->size <= 0)
            throw ToolError(kExitUnavailable, "CRTC " + Hex(crtc) + " of " + label_ + " has no gamma ramp");
        source = "CRTC " + Hex(crtc) + " of " + output + ", " + std::to_string(ramp->size) + " entries";
        Curve curve{};
        const unsigned short* planes[] = {ramp->red, ramp->green, ramp->blue};
        for (std::size_t c = 0; c < curve.size(); ++c)
            std::ranges::transform(Resample(std::span(planes[c], static_cast<std::size_t>(ramp->size)), kCurveSize),
                                   curve[c].begin(), RampToEntry);
        return curve;
    }

    // Loads the curve again after every change RandR reports, onto those of
    // the outputs that are connected and driven then.
    void Hold(const std::vector<std::string>& outputs, const Curve& curve, StopSignals& stop,
              const Reloaded& reloaded) override {
        const Window root = DefaultRootWindow(dpy());
        XRRSelectInput(dpy(), root, RRScreenChangeNotifyMask | RRCrtcChangeNotifyMask | RROutputChangeNotifyMask);
        CheckProtocolErrors();
        for (;;) {
            bool changed = false;
            while (XPending(dpy()) > 0) {
                XEvent event;
                XNextEvent(dpy(), &event);
                XRRUpdateConfiguration(&event);
                changed = true;
            }
            if (changed)
                for (const LoadedOutput& output : Reload(outputs, curve)) reloaded(output);
            if (WaitReadable({ConnectionNumber(dpy()), stop.fd()}) == 1 && stop.Arrived()) return;
        }
    }

    bool RampEndsWithProcess() const override { return false; }

private:
    Display* dpy() const { return display_.get(); }

    void Refresh() {
        resources_.reset(XRRGetScreenResourcesCurrent(dpy(), DefaultRootWindow(dpy())));
        if (!resources_) throw ToolError(kExitUnavailable, label_ + " lists no RandR screen resources");
    }

    std::vector<LoadedOutput> Reload(const std::vector<std::string>& outputs, const Curve& curve) {
        Refresh();
        const std::vector<std::string> connected = Outputs();
        std::vector<std::string> present;
        for (const std::string& output : outputs)
            if (std::ranges::find(connected, output) != connected.end() && HasCrtc(output)) present.push_back(output);
        return Load(present, curve);
    }

    std::span<const RROutput> OutputIds() const {
        return {resources_->outputs, static_cast<std::size_t>(resources_->noutput)};
    }

    RROutput FindOutput(const std::string& name) const {
        for (const RROutput output : OutputIds()) {
            const OutputPtr info(XRRGetOutputInfo(dpy(), resources_.get(), output));
            if (info && std::string(info->name, static_cast<std::size_t>(info->nameLen)) == name) return output;
        }
        throw ToolError(kExitUnavailable, label_ + " has no output named " + name);
    }

    std::vector<RRCrtc> CrtcsOf(RROutput output) const {
        std::vector<RRCrtc> crtcs;
        for (const RRCrtc crtc : std::span(resources_->crtcs, static_cast<std::size_t>(resources_->ncrtc))) {
            const CrtcPtr info(XRRGetCrtcInfo(dpy(), resources_.get(), crtc));
            if (!info) continue;
            const std::span driven(info->outputs, static_cast<std::size_t>(info->noutput));
            if (std::ranges::find(driven, output) != driven.end()) crtcs.push_back(crtc);
        }
        return crtcs;
    }

    bool HasCrtc(const std::string& output) const { return !CrtcsOf(FindOutput(output)).empty(); }

    // Every CRTC that drives the output; one drives several outputs when they mirror.
    std::vector<RRCrtc> DrivingCrtcs(const std::string& output) const {
        std::vector<RRCrtc> crtcs = CrtcsOf(FindOutput(output));
        if (crtcs.empty())
            throw ToolError(kExitUnavailable, "output " + output + " of " + label_ + " is driven by no CRTC");
        return crtcs;
    }

    // Waits for the server to have handled every request sent so far.
    void CheckProtocolErrors() const {
        XSync(dpy(), False);
        if (!gProtocolError.empty())
            throw ToolError(kExitUnavailable, label_ + " refused a RandR request: " + gProtocolError);
    }

    DisplayPtr display_;
    std::string label_;
    ResourcesPtr resources_;
};

}  // namespace

std::unique_ptr<GammaBackend> OpenX11(const std::string& name, std::string& why) {
    const char* env = std::getenv("DISPLAY");
    if (name.empty() && (env == nullptr || *env == '\0')) {
        why = "DISPLAY is not set";
        return nullptr;
    }
    const std::string label = name.empty() ? env : name;
    XSetErrorHandler(RecordProtocolError);
    XSetIOErrorHandler(LoseConnection);
    DisplayPtr display(XOpenDisplay(label.c_str()));
    if (!display) throw ToolError(kExitUnavailable, "cannot open X display " + label);
    int event = 0, error = 0, major = 0, minor = 0;
    if (!XRRQueryExtension(display.get(), &event, &error) || !XRRQueryVersion(display.get(), &major, &minor) ||
        std::pair(major, minor) < std::pair(kRandrMajor, kRandrMinor))
        throw ToolError(kExitUnavailable, "X display " + label + " offers no RandR 1.2 gamma ramps");
    auto backend = std::make_unique<X11Backend>(std::move(display), label);
    // A Wayland compositor's X server for X clients takes ramps without showing them.
    const std::vector<std::string> outputs = backend->Outputs();
    if (!outputs.empty() &&
        std::ranges::all_of(outputs, [](const std::string& o) { return o.starts_with("XWAYLAND"); }))
        throw ToolError(kExitUnavailable, "X display " + label + " is Xwayland, whose ramps do not reach the screen" +
                                              "; on GNOME or KDE use `quarnel profile install`");
    return backend;
}

}  // namespace quarnel::tool::display
