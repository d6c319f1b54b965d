// SPDX-License-Identifier: MIT
// Requests 1 to 7. The initialisation and the gain-driven LUT modes are not
// served by this build yet; they answer -1 through the normal epilogue.

#include "api/handlers.h"

namespace quarnel {

int32_t RunModeRequest(CctContext* /*ctx*/, const RequestArgs& /*args*/) { return CCT_ERR_REQUEST; }

}  // namespace quarnel
