// SPDX-License-Identifier: MIT
#pragma once
// The LUT loops are built twice on x86: for the baseline (16-byte SSE2
// vectors, which every x86-64 processor has) and for 32-byte AVX2 vectors,
// chosen once per process by what the processor offers. Both forms do the
// same double arithmetic in the same order, so their results are identical
// bit for bit; the wide form only does four lanes per instruction where the
// baseline does two. The library is built without floating-point
// contraction, so neither form fuses a multiply into an add.

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#define QUARNEL_WIDE_VECTORS 1
// Marks the wide form of a loop; its body is the shared kernel, inlined.
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

namespace quarnel {

// Whether this processor runs the wide form, asked once per process.
inline bool WideVectorsAvailable() {
#ifdef QUARNEL_WIDE_VECTORS
    static const bool wide = [] {
        __builtin_cpu_init();
        return __builtin_cpu_supports("avx2") != 0;
    }();
    return wide;
#else
    return false;
#endif
}

}  // namespace quarnel
