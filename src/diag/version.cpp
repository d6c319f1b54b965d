// SPDX-License-Identifier: MIT
#include "diag/version.h"

#include "diag/debug.h"
#include "quarnel/cctapi.h"

static_assert(quarnel::kInterfaceVersion == CCTAPI_INTERFACE_VERSION);

namespace quarnel {

int32_t ShowLibraryVersion() { return DebugPrint("; VOK: Quarnel.dll Version: %s\n", kLibraryVersionText); }

}  // namespace quarnel
