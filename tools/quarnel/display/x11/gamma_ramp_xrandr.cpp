// SPDX-License-Identifier: MIT
// The gamma ramps through X11 RandR: each CRTC carries its own ramp, of the
// size its hardware has, set with XRRSetCrtcGamma and read back with
// XRRGetCrtcGamma.

#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "display/x11/gamma_ramp.h"
#include "display/x11/resample.h"
#include "io/tool_error.h"

namespace quarnel::tool::x11 {
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

GammaStatus Fail(std::string cause) { return GammaStatus{std::move(cause)}; }

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

// One connection with the screen's current CRTCs and outputs.
struct Session {
    std::string label;
    DisplayPtr display;
    ResourcesPtr resources;
};

// Waits for the server to have handled every request sent so far.
GammaStatus ProtocolErrors(const Session& session) {
    XSync(session.display.get(), False);
    if (gProtocolError.empty()) return {};
    return Fail("X display " + session.label + " refused a RandR request: " + gProtocolError);
}

GammaStatus Connect(const std::string& name, Session& session) {
    const char* env = std::getenv("DISPLAY");
    if (name.empty() && (env == nullptr || *env == '\0')) return Fail("DISPLAY is not set and no --display was given");
    session.label = name.empty() ? env : name;
    XSetErrorHandler(RecordProtocolError);
    XSetIOErrorHandler(LoseConnection);
    session.display.reset(XOpenDisplay(session.label.c_str()));
    Display* dpy = session.display.get();
    if (dpy == nullptr) return Fail("cannot open X display " + session.label);
    int event = 0, error = 0, major = 0, minor = 0;
    if (!XRRQueryExtension(dpy, &event, &error) || !XRRQueryVersion(dpy, &major, &minor) ||
        std::pair(major, minor) < std::pair(kRandrMajor, kRandrMinor))
        return Fail("X display " + session.label + " offers no RandR 1.2 gamma ramps");
    session.resources.reset(XRRGetScreenResourcesCurrent(dpy, DefaultRootWindow(dpy)));
    if (!session.resources) return Fail("X display " + session.label + " lists no RandR screen resources");
    return {};
}

// The outputs a target names: the one called `name`, or every connected one.
std::vector<RROutput> ChosenOutputs(const Session& session, const std::string& name) {
    std::vector<RROutput> chosen;
    const auto* res = session.resources.get();
    for (const RROutput output : std::span(res->outputs, static_cast<std::size_t>(res->noutput))) {
        const OutputPtr info(XRRGetOutputInfo(session.display.get(), session.resources.get(), output));
        if (!info) continue;
        const bool wanted = name.empty() ? info->connection == RR_Connected
                                         : std::string(info->name, static_cast<std::size_t>(info->nameLen)) == name;
        if (wanted) chosen.push_back(output);
    }
    return chosen;
}

// Every CRTC that drives one of the chosen outputs, each once even when it
// drives several of them.
GammaStatus DrivingCrtcs(const Session& session, const std::string& name, std::vector<RRCrtc>& crtcs) {
    const std::vector<RROutput> chosen = ChosenOutputs(session, name);
    if (chosen.empty())
        return Fail(name.empty() ? "X display " + session.label + " has no connected output"
                                 : "X display " + session.label + " has no output named " + name);
    const auto* res = session.resources.get();
    for (const RRCrtc crtc : std::span(res->crtcs, static_cast<std::size_t>(res->ncrtc))) {
        const CrtcPtr info(XRRGetCrtcInfo(session.display.get(), session.resources.get(), crtc));
        if (!info) continue;
        const std::span driven(info->outputs, static_cast<std::size_t>(info->noutput));
        if (std::ranges::any_of(driven, [&](RROutput o) { return std::ranges::find(chosen, o) != chosen.end(); }))
            crtcs.push_back(crtc);
    }
    if (crtcs.empty())
        return Fail((name.empty() ? "no connected output" : "output " + name) + " of X display " + session.label +
                    " is driven by no CRTC");
    return {};
}

GammaStatus OpenCrtcs(const GammaTarget& target, Session& session, std::vector<RRCrtc>& crtcs) {
    if (GammaStatus status = Connect(target.display, session); !status.ok()) return status;
    if (GammaStatus status = DrivingCrtcs(session, target.output, crtcs); !status.ok()) return status;
    return ProtocolErrors(session);
}

}  // namespace

GammaStatus LoadGammaCurve(const GammaTarget& target, const Curve& curve) {
    Session session;
    std::vector<RRCrtc> crtcs;
    if (GammaStatus status = OpenCrtcs(target, session, crtcs); !status.ok()) return status;
    Display* dpy = session.display.get();
    for (const RRCrtc crtc : crtcs) {
        const int size = XRRGetCrtcGammaSize(dpy, crtc);
        const GammaPtr ramp(size > 0 ? XRRAllocGamma(size) : nullptr);
        if (!ramp) return Fail("a CRTC of X display " + session.label + " has no gamma ramp");
        unsigned short* planes[] = {ramp->red, ramp->green, ramp->blue};
        for (std::size_t c = 0; c < curve.size(); ++c) {
            CurvePlane scaled{};
            std::ranges::transform(curve[c], scaled.begin(), EntryToRamp);
            std::ranges::copy(Resample(scaled, static_cast<std::size_t>(size)), planes[c]);
        }
        XRRSetCrtcGamma(dpy, crtc, ramp.get());
    }
    return ProtocolErrors(session);
}

GammaStatus ReadGammaCurve(const GammaTarget& target, Curve& curve) {
    Session session;
    std::vector<RRCrtc> crtcs;
    if (GammaStatus status = OpenCrtcs(target, session, crtcs); !status.ok()) return status;
    const GammaPtr ramp(XRRGetCrtcGamma(session.display.get(), crtcs.front()));
    if (GammaStatus status = ProtocolErrors(session); !status.ok()) return status;
    if (!ramp || ramp->size <= 0) return Fail("a CRTC of X display " + session.label + " has no gamma ramp");
    const unsigned short* planes[] = {ramp->red, ramp->green, ramp->blue};
    for (std::size_t c = 0; c < curve.size(); ++c)
        std::ranges::transform(Resample(std::span(planes[c], static_cast<std::size_t>(ramp->size)), kCurveSize),
                               curve[c].begin(), RampToEntry);
    return {};
}

}  // namespace quarnel::tool::x11
