// SPDX-License-Identifier: MIT
#pragma once
// Divides x by the 16-bit full scale, x / 65280, to the same bits as the
// division but in multiplies and adds, which run several times faster.
//
// Why the bits agree, for finite x of normal size (every 16-bit entry, and
// every value between two of them, is):
// - r = 1/65280 rounds down to (1 - 2^-56) / 65280, since 1/255 is
//   0.00000001 repeated in binary. So q = x r lies within 5/8 of an ulp of
//   the quotient Q = x / 65280: q is one of Q's two neighbours.
// - The remainder e = x - 65280 q is then exact in two steps, x - 65536 q and
//   + 256 q: the products are by powers of two, and each step subtracts
//   numbers within a factor of two of each other.
// - q + e r lies within 2^-52 ulp of Q, rounding of e r included.
// - Q is either exact or at least 2^-9 ulp from every halfway point between
//   doubles: x is a multiple of 2^15 ulp(Q), a halfway point times 65280 a
//   multiple of 2^7 ulp(Q), and their gap is divided by 65280 < 2^16.
// So rounding q + e r gives the rounded quotient.
//
// T is double or a vector of doubles (taken by reference: a 32-byte vector
// is not passed by value on x86-64).

#include "core/constants.h"
#include "core/kernel.h"

namespace quarnel {

template <typename T>
QUARNEL_KERNEL void DivideByFullScale(T& x) {
    constexpr double kInverse = 1.0 / kLutFullScale;
    constexpr double kStep = kLutStep;
    constexpr double kAbove = kLutFullScale + kStep;  // 65536
    const T q = x * kInverse;
    const T e = (x - q * kAbove) + q * kStep;
    x = q + e * kInverse;
}

// x / 65280 for a whole 16-bit entry x, to the same bits, in two multiplies
// and no add. 65280 is 255 x 2^8, and 255 divides 2^40 - 1, leaving
// K = 0x0101010101 (the entry repeated every eight bits), so
//   x / 65280 = x K 2^-48 / (1 - 2^-40) = x K c / (1 - 2^-80),
// with c = 2^-48 (1 + 2^-40), a double. x K has at most 16 + 33 significant
// bits, so the first product is exact, and the second is the quotient times
// 1 - 2^-80, rounded once: within 2^-27 ulp below the quotient. That is far
// nearer than the 2^-9 ulp that keeps an inexact quotient from every halfway
// point between doubles (see above), and an exact quotient is a double with
// its neighbour below at least half an ulp away, so either way it rounds to
// the rounded quotient. All 65536 entries give the division's bits.
template <typename T>
QUARNEL_KERNEL void DivideEntryByFullScale(T& x) {
    constexpr double kRepeated = 0x0101010101p0;
    constexpr double kScale = 0x1p-48 * (1.0 + 0x1p-40);
    static_assert(kLutFullScale == 255.0 * 0x1p8 && kRepeated * 255.0 == 0x1p40 - 1.0);
    x = x * kRepeated * kScale;
}

}  // namespace quarnel
