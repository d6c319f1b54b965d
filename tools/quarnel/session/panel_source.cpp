// SPDX-License-Identifier: MIT
#include "session/panel_source.h"

#include <algorithm>
#include <memory>

#include "io/quiet_stdout.h"
#include "quarnel/cctapi.h"

namespace quarnel::tool {
namespace {

constexpr int kFirstToneVersion = 5;

Xyz Widened(const SingleXyz& v) { return {v[0], v[1], v[2]}; }

template <size_t N>
std::array<Xyz, N> Widened(const std::array<SingleXyz, N>& rows) {
    std::array<Xyz, N> wide{};
    for (size_t r = 0; r < N; ++r) wide[r] = Widened(rows[r]);
    return wide;
}

// The library keeps the table: request 1 replaces an unusable icc with it and,
// for a panel index that is neither 0 nor 1, stops before reading any data.
std::array<Xyz, 4> AskLibraryForColourSpace() {
    constexpr int32_t kNoSuchPanel = 2;
    auto ctx = std::make_unique<CctContext>();
    ctx->panelIndex = kNoSuchPanel;
    {
        QuietStdout quiet(false);
        CCTAPI(CCTAPI_INIT_GAIN, ctx.get());
    }
    return ColourTableRows(ctx->icc);
}

}  // namespace

std::array<Xyz, 4> ColourTableRows(const double (&table)[4][3]) {
    std::array<Xyz, 4> rows{};
    for (size_t r = 0; r < 4; ++r)
        for (size_t k = 0; k < 3; ++k) rows[r][k] = table[r][k];
    return rows;
}

const std::array<Xyz, 4>& DefaultColourSpace() {
    static const std::array<Xyz, 4> space = AskLibraryForColourSpace();
    return space;
}

PanelMeasurements MeasurementsFromBlock(const BlockDescription& block) {
    PanelMeasurements measured{Widened(block.primaries), std::nullopt};
    if (block.version < kFirstToneVersion) return measured;
    ToneMeasurements tone{Widened(block.black), {}};
    for (size_t c = 0; c < 3; ++c) tone.levels[c] = Widened(block.toneLevels[c]);
    measured.tone = tone;
    return measured;
}

PanelSubject UnknownPanel(const std::string& name) { return {name, -1, false, {DefaultColourSpace(), std::nullopt}}; }

}  // namespace quarnel::tool
