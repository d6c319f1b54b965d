// SPDX-License-Identifier: MIT
#include "panel/panel_source.h"

#include <algorithm>
#include <memory>

#include "input_file.h"
#include "library_session.h"
#include "quarnel/cctapi.h"
#include "quiet_stdout.h"

namespace quarnel::tool {
namespace {

constexpr int kFirstToneVersion = 5;

std::array<Xyz, 4> Rows(const double (&table)[4][3]) {
    std::array<Xyz, 4> rows{};
    for (size_t r = 0; r < 4; ++r)
        for (size_t k = 0; k < 3; ++k) rows[r][k] = table[r][k];
    return rows;
}

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
    return Rows(ctx->icc);
}

}  // namespace

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

PanelSubject DescribePanel(const LibrarySession& session) {
    const CctContext& ctx = session.context();
    PanelSubject panel{session.sourceName(), ctx.biosVer, ctx.fromBios != 0, {}};
    panel.measured.primaries = Rows(panel.factoryData ? ctx.bios : ctx.icc);
    if (panel.factoryData && !session.sourcePath().empty()) {
        const std::string bytes = ReadBlockFile(session.sourcePath());
        Block block{};
        std::copy(bytes.begin(), bytes.end(), block.begin());
        panel.measured.tone = MeasurementsFromBlock(DecodeBlock(block, false).description).tone;
    }
    return panel;
}

PanelSubject UnknownPanel(const std::string& name) { return {name, -1, false, {DefaultColourSpace(), std::nullopt}}; }

}  // namespace quarnel::tool
