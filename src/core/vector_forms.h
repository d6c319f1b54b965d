// SPDX-License-Identifier: MIT
#pragma once
// The forms of the LUT loops. Each loop is one kernel, compiled once per
// form: for the x86-64 baseline (16-byte SSE2 vectors, which every x86-64
// processor has) and for AVX2 (32-byte vectors), whose four double lanes
// the conversions' levels of red, green, blue and a spare lane fill. Both
// forms do the same double arithmetic in the same order, so their results
// agree bit for bit: the core is built without floating-point contraction,
// so no form fuses a multiply into an add. Which form runs is the
// processor's business (facts/loop_forms.h, platform/processor.h).

#include <cstddef>

#include "facts/loop_forms.h"

namespace quarnel {

using facts::kVectorFormCount;
using facts::kVectorFormNames;
using facts::VectorForm;

#ifdef QUARNEL_AVX2_BUILT
#define QUARNEL_AVX2 [[gnu::target("avx2")]]
#else
// Elsewhere the AVX2 form is built like the baseline and never chosen.
#define QUARNEL_AVX2
#endif

// A kernel: inlined into each form's entry point, so that it is compiled
// for that form's instruction set.
#if defined(__GNUC__)
#define QUARNEL_KERNEL [[gnu::always_inline]] inline
#else
#define QUARNEL_KERNEL inline
#endif

// The entry points of one kernel, one per form, in the order of VectorForm.
// (Vectors wider than 16 bytes are never arguments: the baseline form would
// pass them differently.)
template <auto Kernel, typename Signature = decltype(Kernel)>
struct LoopForms;

template <auto Kernel, typename... Args>
struct LoopForms<Kernel, void (*)(Args...)> {
    static void Baseline(Args... args) { Kernel(args...); }
    QUARNEL_AVX2 static void Avx2(Args... args) { Kernel(args...); }
    static constexpr void (*kEntries[kVectorFormCount])(Args...) = {Baseline, Avx2};
};

// How many doubles one of the form's vectors holds.
template <VectorForm Form>
inline constexpr std::size_t kDoubleLanes = Form == VectorForm::kAvx2 ? 4 : 2;

// The entry points of a kernel that lays its data out for its form's vector
// width: Kernel<Form>::Run, written once, one entry per form.
template <template <VectorForm> class Kernel, typename Signature = decltype(&Kernel<VectorForm::kBaseline>::Run)>
struct WidthForms;

template <template <VectorForm> class Kernel, typename... Args>
struct WidthForms<Kernel, void (*)(Args...)> {
    static void Baseline(Args... args) { Kernel<VectorForm::kBaseline>::Run(args...); }
    QUARNEL_AVX2 static void Avx2(Args... args) { Kernel<VectorForm::kAvx2>::Run(args...); }
    static constexpr void (*kEntries[kVectorFormCount])(Args...) = {Baseline, Avx2};
};

}  // namespace quarnel
