#include "diag/version.h"

#include "diag/debug.h"
#include "quarnel/cctapi.h"

static_assert(quarnel::kInterfaceVersion == CCTAPI_INTERFACE_VERSION);

extern "C" QUARNEL_API int32_t ShowVersion(void) {
    return quarnel::DebugPrint("; VOK: Quarnel.dll Version: %s\n", quarnel::kLibraryVersionText);
}
