// SPDX-License-Identifier: MIT
#pragma once
// The processor's side of the LUT loops' forms (core/vector_forms.h): which
// forms it runs, and the one that every loop runs in.

#include <utility>

#include "core/vector_forms.h"
#include "platform/seam.h"

namespace quarnel::platform {

// Whether this processor runs `form`; it always runs the baseline.
bool ProcessorRuns(VectorForm form);

// The form the loops run in: the widest this processor runs, asked once per
// process, unless a test or benchmark has forced one.
VectorForm ActiveVectorForm();

// Runs `Kernel` in the active form.
template <auto Kernel, typename... Args>
void RunLoop(Args&&... args) {
    LoopForms<Kernel>::kEntries[static_cast<std::size_t>(ActiveVectorForm())](std::forward<Args>(args)...);
}

// Runs a kernel that follows its form's vector width in the active form.
template <template <VectorForm> class Kernel, typename... Args>
void RunLoop(Args&&... args) {
    WidthForms<Kernel>::kEntries[static_cast<std::size_t>(ActiveVectorForm())](std::forward<Args>(args)...);
}

// Test and benchmark seam: forces a form for the object's lifetime. Only a
// form the processor runs may be forced.
using ScopedVectorForm = ScopedOverride<const VectorForm>;

}  // namespace quarnel::platform
