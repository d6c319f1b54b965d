// SPDX-License-Identifier: MIT
#pragma once
// The LUT loops are built twice on x86: for the baseline (16-byte SSE2
// vectors, which every x86-64 processor has) and for 32-byte AVX2 vectors,
// chosen by what the processor offers (platform/processor.h). Both forms do the
// same double arithmetic in the same order, so their results are identical
// bit for bit; the wide form only does four lanes per instruction where the
// baseline does two. The library is built without floating-point
// contraction, so neither form fuses a multiply into an add.

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#define QUARNEL_WIDE_VECTORS 1
// Marks the wide form of a loop; its body is the shared kernel, inlined.
// Elsewhere the wide form is built like the baseline and never chosen.
#define QUARNEL_WIDE [[gnu::target("avx2")]]
#else
#define QUARNEL_WIDE
#endif

// Marks a kernel that both forms inline, so that each is compiled for its
// caller's vector width.
#if defined(__GNUC__)
#define QUARNEL_KERNEL [[gnu::always_inline]] inline
#else
#define QUARNEL_KERNEL inline
#endif
