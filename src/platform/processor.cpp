// SPDX-License-Identifier: MIT
#include "platform/processor.h"

namespace quarnel::platform {
namespace {

bool HasAvx2() {
#ifdef QUARNEL_AVX2_BUILT
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") != 0;
#else
    return false;
#endif
}

VectorForm MachineForm() {
    static const VectorForm widest = HasAvx2() ? VectorForm::kAvx2 : VectorForm::kBaseline;
    return widest;
}

}  // namespace

bool ProcessorRuns(VectorForm form) { return form <= MachineForm(); }

VectorForm ActiveVectorForm() {
    const VectorForm* forced = OverrideSlot<const VectorForm>();
    return forced != nullptr ? *forced : MachineForm();
}

}  // namespace quarnel::platform
