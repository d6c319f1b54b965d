// SPDX-License-Identifier: MIT
#pragma once
// The forms the library's LUT loops are built in, and the rule that picks
// the one a processor runs: the library runs its loops by this rule, and the
// tool says which form runs by the same rule.

#include <cstddef>

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
// The compiler can build the AVX2 form and ask the processor for it.
#define QUARNEL_AVX2_BUILT 1
#endif

namespace quarnel::facts {

// From the narrowest to the widest: a processor that runs a form runs every
// form before it.
enum class VectorForm { kBaseline, kAvx2 };
inline constexpr std::size_t kVectorFormCount = 2;

// How the forms are named where a person reads them.
inline constexpr const char* kVectorFormNames[kVectorFormCount] = {"baseline (SSE2)", "AVX2"};

// The widest form this processor runs, of those this build has.
VectorForm WidestForm();

}  // namespace quarnel::facts
