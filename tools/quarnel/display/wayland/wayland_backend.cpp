// SPDX-License-Identifier: MIT
// The gamma ramps of a wlroots-style Wayland compositor, through its gamma
// control: one control per output, answered by the output's ramp size or by
// `failed`. The compositor restores an output's ramp when its control goes
// away, so a curve stays only as long as this process holds it.

#include <wayland-client.h>

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "display/gamma_backend.h"
#include "display/ramp.h"
#include "io/anonymous_file.h"
#include "io/stop_signals.h"
#include "io/tool_error.h"
#include "wlr-gamma-control-unstable-v1-client-protocol.h"

namespace quarnel::tool::display {
namespace {

// Output names arrived with wl_output version 4.
constexpr std::uint32_t kNamedOutputVersion = 4;

// libwayland prints what went wrong itself; it is kept for the one line
// that says so instead.
std::string gLastLog;

void KeepLog(const char* format, va_list args) {
    char text[512] = {};
    std::vsnprintf(text, sizeof text, format, args);
    gLastLog = text;
    while (!gLastLog.empty() && gLastLog.back() == '\n') gLastLog.pop_back();
}

struct Output {
    wl_output* output = nullptr;
    std::uint32_t global = 0;
    std::string name;
    zwlr_gamma_control_v1* control = nullptr;
    std::uint32_t size = 0;
    bool answered = false;
    bool failed = false;
};

// Every event the outputs send; only the name is kept.
void OnGeometry(void*, wl_output*, int32_t, int32_t, int32_t, int32_t, int32_t, const char*, const char*, int32_t) {}
void OnMode(void*, wl_output*, uint32_t, int32_t, int32_t, int32_t) {}
void OnDone(void*, wl_output*) {}
void OnScale(void*, wl_output*, int32_t) {}
void OnName(void* data, wl_output*, const char* name) { static_cast<Output*>(data)->name = name; }
void OnDescription(void*, wl_output*, const char*) {}
const wl_output_listener kOutputListener{OnGeometry, OnMode, OnDone, OnScale, OnName, OnDescription};

void OnGammaSize(void* data, zwlr_gamma_control_v1*, uint32_t size) {
    auto* output = static_cast<Output*>(data);
    output->size = size;
    output->answered = true;
}
void OnFailed(void* data, zwlr_gamma_control_v1*) {
    auto* output = static_cast<Output*>(data);
    output->failed = true;
    output->answered = true;
}
const zwlr_gamma_control_v1_listener kControlListener{OnGammaSize, OnFailed};

class WaylandBackend final : public GammaBackend {
public:
    WaylandBackend(wl_display* display, std::string label) : display_(display), label_(std::move(label)) {
        registry_ = wl_display_get_registry(display_);
        wl_registry_add_listener(registry_, &kRegistryListener, this);
        // The first round trip lists the globals, the second the outputs' names.
        Roundtrip();
        Roundtrip();
    }

    ~WaylandBackend() override {
        for (auto& o : outputs_) {
            if (o->control != nullptr) zwlr_gamma_control_v1_destroy(o->control);
            if (o->output != nullptr) wl_output_destroy(o->output);
        }
        if (manager_ != nullptr) zwlr_gamma_control_manager_v1_destroy(manager_);
        wl_registry_destroy(registry_);
        // The destroys reach the compositor before the connection closes.
        wl_display_roundtrip(display_);
        wl_display_disconnect(display_);
    }

    bool OffersGammaControl() const { return manager_ != nullptr; }
    std::string Label() const override { return label_; }

    std::vector<std::string> Outputs() override {
        std::vector<std::string> names;
        for (const auto& o : outputs_) names.push_back(o->name);
        return names;
    }

    std::vector<LoadedOutput> Load(const std::vector<std::string>& names, const Curve& curve) override {
        std::vector<Output*> chosen;
        for (const std::string& name : names) chosen.push_back(&Find(name));
        for (Output* o : chosen) TakeControl(*o);
        Roundtrip();
        for (Output* o : chosen) CheckControl(*o);
        std::vector<LoadedOutput> loaded;
        for (Output* o : chosen) {
            const std::vector<std::uint16_t> planes = RampPlanes(curve, o->size);
            // A fresh file for every ramp: the compositor may read it from the current offset.
            const AnonymousFile file(
                std::string_view(reinterpret_cast<const char*>(planes.data()), planes.size() * sizeof planes[0]));
            zwlr_gamma_control_v1_set_gamma(o->control, file.fd());
            Roundtrip();
            CheckControl(*o);
            loaded.push_back({o->name, std::to_string(o->size) + " entries"});
        }
        return loaded;
    }

    Curve Read(const std::string&, std::string&) override {
        throw ToolError(kExitUnavailable, label_ + ": Wayland gamma control cannot read a ramp back");
    }

    void Hold(const std::vector<std::string>& names, const Curve&, StopSignals& stop, const Reloaded&) override {
        while (!stop.Arrived()) {
            while (wl_display_prepare_read(display_) != 0) Dispatched(wl_display_dispatch_pending(display_));
            wl_display_flush(display_);
            if (WaitReadable({wl_display_get_fd(display_), stop.fd()}) == 0) {
                Dispatched(wl_display_read_events(display_));
                Dispatched(wl_display_dispatch_pending(display_));
            } else {
                wl_display_cancel_read(display_);
            }
            for (const std::string& name : names)
                if (Find(name).failed)
                    throw ToolError(kExitUnavailable,
                                    name + ": " + label_ + " took the ramp back (output gone or taken)");
        }
    }

    bool RampEndsWithProcess() const override { return true; }

private:
    static void OnGlobal(void* data, wl_registry* registry, uint32_t name, const char* interface, uint32_t version) {
        auto* self = static_cast<WaylandBackend*>(data);
        if (std::strcmp(interface, wl_output_interface.name) == 0) {
            auto output = std::make_unique<Output>();
            output->global = name;
            output->name = "wl_output-" + std::to_string(name);  // until the compositor names it
            output->output = static_cast<wl_output*>(
                wl_registry_bind(registry, name, &wl_output_interface, std::min(version, kNamedOutputVersion)));
            wl_output_add_listener(output->output, &kOutputListener, output.get());
            self->outputs_.push_back(std::move(output));
        } else if (std::strcmp(interface, zwlr_gamma_control_manager_v1_interface.name) == 0) {
            self->manager_ = static_cast<zwlr_gamma_control_manager_v1*>(
                wl_registry_bind(registry, name, &zwlr_gamma_control_manager_v1_interface, 1));
        }
    }
    static void OnGlobalRemove(void*, wl_registry*, uint32_t) {}
    static constexpr wl_registry_listener kRegistryListener{OnGlobal, OnGlobalRemove};

    Output& Find(const std::string& name) {
        for (auto& o : outputs_)
            if (o->name == name) return *o;
        throw ToolError(kExitUnavailable, label_ + " has no output named " + name);
    }

    void TakeControl(Output& o) {
        if (o.control != nullptr) return;
        o.control = zwlr_gamma_control_manager_v1_get_gamma_control(manager_, o.output);
        zwlr_gamma_control_v1_add_listener(o.control, &kControlListener, &o);
    }

    void CheckControl(const Output& o) const {
        if (o.failed || (o.answered && o.size == 0))
            throw ToolError(kExitUnavailable, o.name + ": " + label_ +
                                                  " refused its gamma ramp (none, or another client such as a "
                                                  "night-light tool holds it)");
        if (!o.answered) throw ToolError(kExitUnavailable, o.name + ": " + label_ + " did not give a ramp size");
    }

    void Roundtrip() { Dispatched(wl_display_roundtrip(display_)); }

    // A negative count: the connection broke or the compositor raised a protocol error.
    void Dispatched(int count) const {
        if (count >= 0) return;
        const wl_interface* interface = nullptr;
        std::uint32_t id = 0;
        const std::uint32_t code = wl_display_get_protocol_error(display_, &interface, &id);
        if (interface != nullptr)
            throw ToolError(kExitUnavailable, label_ + " refused a request: " + interface->name + " error " +
                                                  std::to_string(code) +
                                                  (gLastLog.empty() ? "" : " (" + gLastLog + ")"));
        throw ToolError(kExitUnavailable, "lost the connection to " + label_);
    }

    wl_display* display_;
    std::string label_;
    wl_registry* registry_ = nullptr;
    zwlr_gamma_control_manager_v1* manager_ = nullptr;
    std::vector<std::unique_ptr<Output>> outputs_;
};

}  // namespace

std::unique_ptr<GammaBackend> OpenWayland(const std::string& name, std::string& why) {
    const char* env = std::getenv("WAYLAND_DISPLAY");
    wl_log_set_handler_client(KeepLog);
    const std::string label =
        "Wayland compositor " + (name.empty() ? (env != nullptr && *env != '\0' ? env : "wayland-0") : name);
    wl_display* display = wl_display_connect(name.empty() ? nullptr : name.c_str());
    if (display == nullptr) {
        why = "cannot connect to " + label;
        return nullptr;
    }
    auto backend = std::make_unique<WaylandBackend>(display, label);
    if (!backend->OffersGammaControl()) {
        why = label + " offers no gamma control (zwlr_gamma_control_manager_v1)";
        return nullptr;
    }
    return backend;
}

}  // namespace quarnel::tool::display
