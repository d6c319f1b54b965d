// SPDX-License-Identifier: MIT
#pragma once
// The LUT loops are built twice on x86: for the baseline (16-byte SSE2
// vectors, which every x86-64 processor has) and for 32-byte AVX2 vectors,
// chosen by what the processor offers (platform/processor.h). Both forms do the
// same double arithmetic in the same order, so their results are identical
// bit for bit; the wide form only does four lanes per instruction where the
// baseline does two. The library is built without floating-point
// contraction, so no form fuses a multiply into an add.

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#define QUARNEL_WIDE_VECTORS 1
// Marks the wide form of a loop; its body is the shared kernel, inlined.
// Elsewhere the wide form is built like the baseline and never chosen.
#define QUARNEL_WIDE [[gnu::target("avx2")]]
#else
#define QUARNEL_WIDE
#endif

// Loops that gain from 64-byte vectors are built a third time, for AVX-512
// (the foundation and its 16-bit lanes), and run where the processor has
// it; elsewhere the wide form serves. GCC for 64-bit Windows keeps the
// stack 16-byte aligned and does not realign it for 64-byte vectors, so
// there this form is not built.
#if defined(QUARNEL_WIDE_VECTORS) && defined(__x86_64__) && !defined(_WIN32)
#define QUARNEL_WIDER_VECTORS 1
#if defined(__clang__)
#define QUARNEL_WIDER [[gnu::target("avx512f,avx512bw")]]
#else
// GCC vectorises a loop for 32-byte vectors unless told to prefer wider.
#define QUARNEL_WIDER [[gnu::target("avx512f,avx512bw,prefer-vector-width=512")]]
#endif
#endif

// Marks a kernel that both forms inline, so that each is compiled for its
// caller's vector width.
#if defined(__GNUC__)
#define QUARNEL_KERNEL [[gnu::always_inline]] inline
#else
#define QUARNEL_KERNEL inline
#endif
