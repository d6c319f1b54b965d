// SPDX-License-Identifier: MIT
#pragma once
// Panel measurements for the solver tests, built from chromaticities.

#include "color/gain_types.h"

namespace quarnel::test {

struct RowXyY {
    double x, y, Y;
};

inline void SetRow(GainRequest& r, int row, RowXyY p) {
    r.primaryXyz[row][0] = p.x / p.y * p.Y;
    r.primaryXyz[row][1] = p.Y;
    r.primaryXyz[row][2] = (1.0 - p.x - p.y) / p.y * p.Y;
}

// The white is the sum of the three primaries.
inline GainRequest Panel(RowXyY red, RowXyY green, RowXyY blue) {
    GainRequest r;
    const RowXyY rows[3] = {red, green, blue};
    for (int row = kRed; row <= kBlue; ++row) {
        SetRow(r, row, rows[row]);
        for (int c = 0; c < 3; ++c) r.primaryXyz[kWhite][c] += r.primaryXyz[row][c];
    }
    return r;
}

// sRGB primaries with a D65 white of luminance `whiteY`.
inline GainRequest SrgbPanel(double whiteY = 300.0) {
    return Panel({0.64, 0.33, 0.2126 * whiteY}, {0.30, 0.60, 0.7152 * whiteY}, {0.15, 0.06, 0.0722 * whiteY});
}

// A small triangle around a greenish white well away from every locus.
inline GainRequest GreenishPanel() { return Panel({0.34, 0.40, 80.0}, {0.30, 0.45, 150.0}, {0.29, 0.37, 60.0}); }

inline GainSolverState FreshState() {
    GainSolverState s;
    s.gamma = kSolverGamma;
    return s;
}

}  // namespace quarnel::test
