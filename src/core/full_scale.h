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
// is not passed by value in the baseline form).

#include <cstdint>

#include "core/constants.h"
#include "core/vector_forms.h"

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
// and an add. The inverse is split into a head of 37 significant bits,
// floor(2^52 / 65280) / 2^52, whose product with a 16-bit x is exact, and
// the rest of it as a double. Their sum lies within 2^-90 of x / 65280,
// relative, far nearer than the 2^-9 ulp that keeps the quotient from every
// halfway point between doubles (see above), so it rounds to the rounded
// quotient. All 65536 entries give the division's bits.
template <typename T>
QUARNEL_KERNEL void DivideEntryByFullScale(T& x) {
    constexpr double kTwo52 = 4503599627370496.0;
    constexpr auto kHeadBits = (uint64_t{1} << 52) / static_cast<uint64_t>(kLutFullScale);
    constexpr double kHead = static_cast<double>(kHeadBits) / kTwo52;
    constexpr double kTail = (kTwo52 - kLutFullScale * static_cast<double>(kHeadBits)) / kLutFullScale / kTwo52;
    x = x * kHead + x * kTail;
}

}  // namespace quarnel
