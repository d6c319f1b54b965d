// SPDX-License-Identifier: MIT
#include "io/exit_cleanup.h"

#include <unistd.h>

#include <array>
#include <climits>
#include <csignal>
#include <cstring>

namespace quarnel::tool {
namespace {

// The handler may only read memory it cannot see half-written, so the paths
// live in fixed slots, each published by its flag after it is filled.
constexpr int kSlots = 4;  // an output's temporary and the sample block, with room to spare
std::array<std::array<char, PATH_MAX>, kSlots> gPaths{};
std::array<volatile sig_atomic_t, kSlots> gInUse{};
constexpr int kFatalSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

extern "C" void RemoveAndDie(int signal) {
    for (int i = 0; i < kSlots; ++i)
        if (gInUse[static_cast<size_t>(i)] != 0) ::unlink(gPaths[static_cast<size_t>(i)].data());
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

}  // namespace

void InstallExitCleanup() {
    std::signal(SIGPIPE, SIG_IGN);
    struct sigaction action {};
    action.sa_handler = RemoveAndDie;
    sigemptyset(&action.sa_mask);
    for (int s : kFatalSignals) sigaddset(&action.sa_mask, s);
    for (int s : kFatalSignals) {
        struct sigaction previous {};
        // A signal the caller chose to ignore (nohup, a background job) stays ignored.
        if (sigaction(s, nullptr, &previous) == 0 && previous.sa_handler != SIG_IGN) sigaction(s, &action, nullptr);
    }
}

RemoveOnSignal::RemoveOnSignal(const char* path) {
    if (std::strlen(path) >= PATH_MAX) return;
    for (int i = 0; i < kSlots && slot_ < 0; ++i)
        if (gInUse[static_cast<size_t>(i)] == 0) slot_ = i;
    if (slot_ < 0) return;
    std::strcpy(gPaths[static_cast<size_t>(slot_)].data(), path);
    gInUse[static_cast<size_t>(slot_)] = 1;
}

RemoveOnSignal::~RemoveOnSignal() {
    if (slot_ >= 0) gInUse[static_cast<size_t>(slot_)] = 0;
}

}  // namespace quarnel::tool
