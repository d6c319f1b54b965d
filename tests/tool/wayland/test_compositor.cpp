// SPDX-License-Identifier: MIT
// A compositor with nothing to show: named outputs and the gamma control,
// for the tool's Wayland backend to talk to over a real socket. Every ramp
// it is given and every control that goes away is written to the log, one
// line each:
//   ramp OUTPUT SIZE V0 V1 ...   (red, green, blue: 3 x SIZE entries)
//   destroy OUTPUT               (the client gave the ramp back)
//   gone OUTPUT                  (the client went away holding it)
//   failed OUTPUT                (a control was refused)
// Usage: test_compositor SOCKET GAMMA_SIZE LOG OUTPUT... ; runs until SIGTERM.
// A GAMMA_SIZE of "none" offers no gamma control at all.
// SOCKET is made in XDG_RUNTIME_DIR; "ready" on standard output says it listens.

#include <unistd.h>
#include <wayland-server.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "wlr-gamma-control-unstable-v1-server-protocol.h"

namespace {

struct Output {
    std::string name;
    wl_resource* holder = nullptr;  // the control whose ramp the output shows
};

struct Control {
    Output* output;
    bool destroyRequested = false;
};

std::uint32_t gGammaSize = 0;
std::FILE* gLog = nullptr;

void Log(const std::string& line) {
    std::fprintf(gLog, "%s\n", line.c_str());
    std::fflush(gLog);
}

// Reads the ramp as older compositors do, from the file's current offset.
bool ReadRamp(int fd, std::vector<std::uint16_t>& ramp) {
    auto* bytes = reinterpret_cast<char*>(ramp.data());
    std::size_t left = ramp.size() * sizeof ramp[0];
    while (left > 0) {
        const ssize_t n = read(fd, bytes, left);
        if (n <= 0) return false;
        bytes += n;
        left -= static_cast<std::size_t>(n);
    }
    char extra = 0;
    return read(fd, &extra, 1) == 0;
}

void SetGamma(wl_client*, wl_resource* resource, int32_t fd) {
    auto* control = static_cast<Control*>(wl_resource_get_user_data(resource));
    if (control->output == nullptr || control->output->holder != resource) {
        close(fd);
        return;
    }
    std::vector<std::uint16_t> ramp(3 * gGammaSize);
    const bool whole = ReadRamp(fd, ramp);
    close(fd);
    if (!whole) {
        wl_resource_post_error(resource, ZWLR_GAMMA_CONTROL_V1_ERROR_INVALID_GAMMA, "not three ramps of %u entries",
                               gGammaSize);
        return;
    }
    std::string line =
        std::string("ramp ").append(control->output->name).append(" ").append(std::to_string(gGammaSize));
    for (const std::uint16_t v : ramp) line.append(" ").append(std::to_string(v));
    Log(line);
}

void DestroyControl(wl_client*, wl_resource* resource) {
    static_cast<Control*>(wl_resource_get_user_data(resource))->destroyRequested = true;
    wl_resource_destroy(resource);
}

const struct zwlr_gamma_control_v1_interface kControlRequests = {SetGamma, DestroyControl};

void ControlGone(wl_resource* resource) {
    std::unique_ptr<Control> control(static_cast<Control*>(wl_resource_get_user_data(resource)));
    if (control->output == nullptr || control->output->holder != resource) return;
    control->output->holder = nullptr;
    std::string line = control->destroyRequested ? "destroy " : "gone ";
    Log(line.append(control->output->name));
}

void GetGammaControl(wl_client* client, wl_resource* manager, uint32_t id, wl_resource* outputResource) {
    wl_resource* resource = wl_resource_create(client, &zwlr_gamma_control_v1_interface, 1, id);
    if (resource == nullptr) {
        wl_resource_post_no_memory(manager);
        return;
    }
    auto* output = static_cast<Output*>(wl_resource_get_user_data(outputResource));
    const bool refused = gGammaSize == 0 || output->holder != nullptr;
    auto* control = new Control{refused ? nullptr : output};
    wl_resource_set_implementation(resource, &kControlRequests, control, ControlGone);
    if (refused) {
        Log(std::string("failed ").append(output->name));
        zwlr_gamma_control_v1_send_failed(resource);
        return;
    }
    output->holder = resource;
    zwlr_gamma_control_v1_send_gamma_size(resource, gGammaSize);
}

void DestroyManager(wl_client*, wl_resource* resource) { wl_resource_destroy(resource); }

const struct zwlr_gamma_control_manager_v1_interface kManagerRequests = {GetGammaControl, DestroyManager};

void BindManager(wl_client* client, void*, uint32_t version, uint32_t id) {
    wl_resource* resource =
        wl_resource_create(client, &zwlr_gamma_control_manager_v1_interface, static_cast<int>(version), id);
    if (resource == nullptr) {
        wl_client_post_no_memory(client);
        return;
    }
    wl_resource_set_implementation(resource, &kManagerRequests, nullptr, nullptr);
}

void ReleaseOutput(wl_client*, wl_resource* resource) { wl_resource_destroy(resource); }

const struct wl_output_interface kOutputRequests = {ReleaseOutput};

void BindOutput(wl_client* client, void* data, uint32_t version, uint32_t id) {
    wl_resource* resource = wl_resource_create(client, &wl_output_interface, static_cast<int>(version), id);
    if (resource == nullptr) {
        wl_client_post_no_memory(client);
        return;
    }
    auto* output = static_cast<Output*>(data);
    wl_resource_set_implementation(resource, &kOutputRequests, output, nullptr);
    wl_output_send_geometry(resource, 0, 0, 300, 200, WL_OUTPUT_SUBPIXEL_UNKNOWN, "Quarnel", "Test",
                            WL_OUTPUT_TRANSFORM_NORMAL);
    wl_output_send_mode(resource, WL_OUTPUT_MODE_CURRENT, 1920, 1080, 60000);
    if (version >= WL_OUTPUT_SCALE_SINCE_VERSION) wl_output_send_scale(resource, 1);
    if (version >= WL_OUTPUT_NAME_SINCE_VERSION) wl_output_send_name(resource, output->name.c_str());
    if (version >= WL_OUTPUT_DONE_SINCE_VERSION) wl_output_send_done(resource);
}

int Terminate(int, void* display) {
    wl_display_terminate(static_cast<wl_display*>(display));
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 5) {
        std::fprintf(stderr, "usage: %s SOCKET GAMMA_SIZE LOG OUTPUT...\n", argv[0]);
        return 64;
    }
    gGammaSize = static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10));
    gLog = std::fopen(argv[3], "a");
    if (gLog == nullptr) return 73;
    wl_display* display = wl_display_create();
    if (display == nullptr || wl_display_add_socket(display, argv[1]) != 0) return 69;
    std::vector<std::unique_ptr<Output>> outputs;
    for (int i = 4; i < argc; ++i) {
        outputs.push_back(std::make_unique<Output>(Output{argv[i]}));
        wl_global_create(display, &wl_output_interface, 4, outputs.back().get(), BindOutput);
    }
    if (std::string(argv[2]) != "none")
        wl_global_create(display, &zwlr_gamma_control_manager_v1_interface, 1, nullptr, BindManager);
    wl_event_loop* loop = wl_display_get_event_loop(display);
    wl_event_source* term = wl_event_loop_add_signal(loop, SIGTERM, Terminate, display);
    std::printf("ready\n");
    std::fflush(stdout);
    wl_display_run(display);
    wl_event_source_remove(term);
    wl_display_destroy_clients(display);
    wl_display_destroy(display);
    std::fclose(gLog);
    return 0;
}
