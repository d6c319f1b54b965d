// SPDX-License-Identifier: MIT
#pragma once
// The record's fields as the library core's plain values, and back: the
// request handlers read their inputs and write their outputs through these.

#include <algorithm>
#include <cstdint>

#include "color/gain_types.h"
#include "core/calibration_source.h"
#include "quarnel/cctapi.h"

namespace quarnel {

// The base LUT of every gain-driven mode: the factory gamma LUT when factory
// data was found and carries one, else the panel's own base LUT.
inline const uint16_t* BaseLut(const CctContext& ctx) {
    return ctx.fromBios != 0 && ctx.gammaK != 0 ? &ctx.gammaLut[0][0] : &ctx.oriLut[0][0];
}

inline CalibrationSource SourceOf(const CctContext& ctx) {
    return {ctx.enableUserK, ctx.kalzenPath, ctx.kalzenFilename, ctx.panelIndex};
}

inline XyzTable TableOf(const double (&rows)[4][3]) {
    XyzTable t;
    std::copy_n(&rows[0][0], 4 * 3, &t.row[0][0]);
    return t;
}

inline GainTriple TripleOf(const double (&g)[3]) { return {g[0], g[1], g[2]}; }

inline ModeGains GainsOf(const CctContext& ctx) {
    return {TripleOf(ctx.gainNormal), TripleOf(ctx.gainWarm), TripleOf(ctx.gainCold), TripleOf(ctx.gainReadWeak),
            TripleOf(ctx.gainReadStrong)};
}

inline void StoreGains(const ModeGains& g, CctContext& ctx) {
    std::copy(g.normal.begin(), g.normal.end(), ctx.gainNormal);
    std::copy(g.warm.begin(), g.warm.end(), ctx.gainWarm);
    std::copy(g.cold.begin(), g.cold.end(), ctx.gainCold);
    std::copy(g.readWeak.begin(), g.readWeak.end(), ctx.gainReadWeak);
    std::copy(g.readStrong.begin(), g.readStrong.end(), ctx.gainReadStrong);
}

}  // namespace quarnel
