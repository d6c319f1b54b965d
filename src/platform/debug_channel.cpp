// SPDX-License-Identifier: MIT
#include "platform/debug_channel.h"

namespace quarnel::platform {

DebugChannel& SystemDebugChannel();  // per-system backend

DebugChannel& ActiveDebugChannel() { return ActiveOr<DebugChannel>(SystemDebugChannel); }

}  // namespace quarnel::platform
