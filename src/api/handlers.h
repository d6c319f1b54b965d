// SPDX-License-Identifier: MIT
#pragma once
// The request handlers that CCTAPI dispatches to after its prologue.

#include <cstdint>

#include "api/request.h"
#include "quarnel/cctapi.h"

namespace quarnel {

// Requests 1 to 7: initialisation and the gain-driven LUT modes.
int32_t RunModeRequest(CctContext* ctx, const RequestArgs& args);

// Request 8: the neutral LUT in the driver's form.
int32_t RunNativeMode(CctContext* ctx);

}  // namespace quarnel
