// SPDX-License-Identifier: MIT
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/debug_channel.h"
#include "platform/utf8.h"

namespace quarnel::platform {
namespace {

bool DebugRequested() {
    const char* flag = std::getenv("QUARNEL_DEBUG");
    return flag != nullptr && std::strcmp(flag, "1") == 0;
}

// Without a system debugger, the wide messages become UTF-8 lines on standard
// error, and only when the user asks for them. The request is read once per
// process, as the channel comes into use: the requests send dozens of
// messages each.
class StderrDebugChannel final : public DebugChannel {
public:
    void Write(const wchar_t* text) override {
        if (!enabled_) return;
        const std::string utf8 = ToUtf8(text);
        std::fwrite(utf8.data(), 1, utf8.size(), stderr);
    }

private:
    const bool enabled_ = DebugRequested();
};

}  // namespace

DebugChannel& SystemDebugChannel() {
    static StderrDebugChannel channel;
    return channel;
}

}  // namespace quarnel::platform
