// SPDX-License-Identifier: MIT
#pragma once
// The debugger channel: where the library's wide Enter/Exit messages go.

#include "platform/seam.h"

namespace quarnel::platform {

class DebugChannel {
public:
    virtual ~DebugChannel() = default;
    // `text` ends at its NUL; a channel nobody listens to need not look
    // further than the pointer.
    virtual void Write(const wchar_t* text) = 0;
};

// The channel in use: the system debugger on Windows, standard error (when
// QUARNEL_DEBUG is 1) elsewhere, unless a test has put its own in place.
DebugChannel& ActiveDebugChannel();

// Test seam: routes the debugger channel to a fake for the object's lifetime.
using ScopedDebugChannel = ScopedOverride<DebugChannel>;

}  // namespace quarnel::platform
