#include "platform/debug_channel.h"

namespace quarnel::platform {

DebugChannel& SystemDebugChannel();  // per-system backend

namespace {
DebugChannel*& Slot() {
    static DebugChannel* active = nullptr;
    return active;
}
}  // namespace

DebugChannel& ActiveDebugChannel() {
    DebugChannel* active = Slot();
    return active != nullptr ? *active : SystemDebugChannel();
}

ScopedDebugChannel::ScopedDebugChannel(DebugChannel& channel) : previous_(Slot()) {
    Slot() = &channel;
}

ScopedDebugChannel::~ScopedDebugChannel() { Slot() = previous_; }

}  // namespace quarnel::platform
