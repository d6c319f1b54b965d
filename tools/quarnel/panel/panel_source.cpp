// SPDX-License-Identifier: MIT
#include "panel/panel_source.h"

#include <cstring>

#include "atomic_file.h"
#include "library_session.h"

namespace quarnel::tool {
namespace {

constexpr int kFirstToneVersion = 5;

std::array<Xyz, 4> Rows(const double (&table)[4][3]) {
    std::array<Xyz, 4> rows{};
    for (size_t r = 0; r < 4; ++r)
        for (size_t k = 0; k < 3; ++k) rows[r][k] = table[r][k];
    return rows;
}

}  // namespace

const std::array<Xyz, 4>& DefaultColourSpace() {
    static constexpr std::array<Xyz, 4> kSpace{{{0.43607, 0.22249, 0.01392},
                                                {0.38515, 0.71687, 0.09708},
                                                {0.14307, 0.06061, 0.7141},
                                                {0.95045, 1.0, 1.08905}}};
    return kSpace;
}

PanelMeasurements MeasurementsFromBlock(const BlockDescription& block) {
    PanelMeasurements measured{block.primaries, std::nullopt};
    if (block.version >= kFirstToneVersion) measured.tone = ToneMeasurements{block.black, block.toneLevels};
    return measured;
}

PanelSubject DescribePanel(const LibrarySession& session) {
    const CctContext& ctx = session.context();
    PanelSubject panel{session.sourceName(), ctx.biosVer, ctx.fromBios != 0, {}};
    panel.measured.primaries = Rows(panel.factoryData ? ctx.bios : ctx.icc);
    if (panel.factoryData && !session.sourcePath().empty()) {
        const std::string bytes = ReadInputFile(session.sourcePath());
        Block block{};
        std::memcpy(block.data(), bytes.data(), std::min(bytes.size(), block.size()));
        panel.measured.tone = MeasurementsFromBlock(DecodeBlock(block, false).description).tone;
    }
    return panel;
}

PanelSubject UnknownPanel(const std::string& name) { return {name, -1, false, {DefaultColourSpace(), std::nullopt}}; }

}  // namespace quarnel::tool
