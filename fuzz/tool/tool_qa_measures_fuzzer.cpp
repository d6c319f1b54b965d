// SPDX-License-Identifier: MIT
// Arbitrary bytes as a calibration block (shorter inputs padded with zeros),
// measured as qa measures every panel of a lot: whatever the floats hold,
// coverages stay shares of the reference, gammas are finite or unmeasured,
// and the lot's statistics of them hold their order.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/qa_measures.h"
#include "model/qa_statistics.h"
#include "tool_checks.h"

namespace {

using namespace quarnel::tool;

// The measurements of a block, as the tool's panel source takes them.
PanelMeasurements Measurements(const BlockDescription& d) {
    PanelMeasurements measured;
    for (size_t r = 0; r < 4; ++r)
        for (size_t k = 0; k < 3; ++k) measured.primaries[r][k] = d.primaries[r][k];
    ToneMeasurements tone;
    for (size_t k = 0; k < 3; ++k) tone.black[k] = d.black[k];
    for (size_t c = 0; c < 3; ++c)
        for (size_t j = 0; j < kGreyLevels; ++j)
            for (size_t k = 0; k < 3; ++k) tone.levels[c][j][k] = d.toneLevels[c][j][k];
    measured.tone = tone;
    return measured;
}

bool ShareOrUnmeasured(double v) { return std::isnan(v) || (v >= 0 && v <= 1 + 1e-9); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    Block block{};
    std::copy_n(data, std::min(size, block.size()), block.begin());
    const NativeMeasures m = MeasureNative(Measurements(DecodeBlock(block, false).description));
    if (!ShareOrUnmeasured(m.srgbCoverage) || !ShareOrUnmeasured(m.p3Coverage))
        quarnel::fuzz::Broken("a coverage is a share of the reference's area");
    for (double g : m.gamma)
        if (std::isinf(g)) quarnel::fuzz::Broken("a gamma is finite or not measured");
    const std::vector<double> values{m.white.x, m.white.y, m.whiteY, m.srgbCoverage, m.gamma[0], m.gamma[1]};
    const MetricSummary s = Summarise(values);
    if (std::isfinite(s.median) && std::isfinite(s.p95) && s.p95 < s.median)
        quarnel::fuzz::Broken("the 95th percentile is not below the median");
    for (double v : values) IsOutlier(v, s, 5.0);
    return 0;
}
