// SPDX-License-Identifier: MIT
#include <windows.h>

#include "platform/debug_channel.h"

namespace quarnel::platform {
namespace {

class SystemDebuggerChannel final : public DebugChannel {
public:
    void Write(const wchar_t* text) override { OutputDebugStringW(text); }
};

}  // namespace

DebugChannel& SystemDebugChannel() {
    static SystemDebuggerChannel channel;
    return channel;
}

}  // namespace quarnel::platform
