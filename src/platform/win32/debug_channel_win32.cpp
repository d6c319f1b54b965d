// SPDX-License-Identifier: MIT
#include <windows.h>

#include <string>

#include "platform/debug_channel.h"

namespace quarnel::platform {
namespace {

class SystemDebuggerChannel final : public DebugChannel {
public:
    void Write(std::wstring_view text) override {
        const std::wstring terminated(text);
        OutputDebugStringW(terminated.c_str());
    }
};

}  // namespace

DebugChannel& SystemDebugChannel() {
    static SystemDebuggerChannel channel;
    return channel;
}

}  // namespace quarnel::platform
