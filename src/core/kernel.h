// SPDX-License-Identifier: MIT
#pragma once
// The LUT loops' helpers are inlined into their loops, where their vectors
// of doubles stay in registers: a 32-byte vector passed to a call that is
// not inlined goes through memory on x86-64.

#if defined(__GNUC__)
#define QUARNEL_KERNEL [[gnu::always_inline]] inline
#else
#define QUARNEL_KERNEL inline
#endif
