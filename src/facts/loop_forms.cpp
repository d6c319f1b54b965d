// SPDX-License-Identifier: MIT
#include "facts/loop_forms.h"

namespace quarnel::facts {

VectorForm WidestForm() {
#ifdef QUARNEL_AVX2_BUILT
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2") != 0) return VectorForm::kAvx2;
#endif
    return VectorForm::kBaseline;
}

}  // namespace quarnel::facts
