// SPDX-License-Identifier: MIT
#include "platform/processor.h"

namespace quarnel::platform {
namespace {

VectorForm MachineForm() {
    static const VectorForm widest = facts::WidestForm();
    return widest;
}

}  // namespace

bool ProcessorRuns(VectorForm form) { return form <= MachineForm(); }

VectorForm ActiveVectorForm() {
    const VectorForm* forced = OverrideSlot<const VectorForm>();
    return forced != nullptr ? *forced : MachineForm();
}

}  // namespace quarnel::platform
