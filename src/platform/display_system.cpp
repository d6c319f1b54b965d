// SPDX-License-Identifier: MIT
#include "platform/display_system.h"

namespace quarnel::platform {

DisplaySystem& SystemDisplaySystem();  // per-system backend

DisplaySystem& ActiveDisplaySystem() { return ActiveOr<DisplaySystem>(SystemDisplaySystem); }

}  // namespace quarnel::platform
