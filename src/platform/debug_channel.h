#pragma once
// The debugger channel: where the library's wide Enter/Exit messages go.

#include <string_view>

namespace quarnel::platform {

class DebugChannel {
public:
    virtual ~DebugChannel() = default;
    virtual void Write(std::wstring_view text) = 0;
};

// The channel in use: the system debugger on Windows, standard error (when
// QUARNEL_DEBUG is 1) elsewhere, unless a test has put its own in place.
DebugChannel& ActiveDebugChannel();

// Test seam: routes the channel to `channel` for the object's lifetime.
class ScopedDebugChannel {
public:
    explicit ScopedDebugChannel(DebugChannel& channel);
    ~ScopedDebugChannel();
    ScopedDebugChannel(const ScopedDebugChannel&) = delete;
    ScopedDebugChannel& operator=(const ScopedDebugChannel&) = delete;

private:
    DebugChannel* previous_;
};

}  // namespace quarnel::platform
