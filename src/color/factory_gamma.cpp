// SPDX-License-Identifier: MIT
#include "color/factory_gamma.h"

#include <algorithm>
#include <cmath>

#include "core/half_up.h"
#include "core/lut16.h"
#include "core/srgb.h"
#include "diag/debug.h"

namespace quarnel {
namespace {

constexpr int kLastLevel = kToneLevelCount - 1;
constexpr int kExponentCandidates = 1000;
constexpr double kExponentStep = 100.0;
constexpr double kNoFit = 9999.0;
constexpr double kUnfilled = -1.0;

// Shape of the segment between measured levels k and k + 1.
struct Segment {
    int level;  // k
    int first;  // drive codes first..last
    int last;
    double exponent;  // f = t^exponent on the 0..1 scale; 0 for the quadratic segment
};

// The quadratic of the second segment works on the 0..255 scale and runs
// from 0.000799 to 0.978724: it is part of the factory model, not a slip.
constexpr double kQuad2 = 6e-06;
constexpr double kQuad1 = 0.002305;
constexpr double kQuad0 = 0.000799;

constexpr Segment kSegments[] = {
    {0, kToneLevels[0], kToneLevels[1], 2.2},  {1, kToneLevels[1] + 1, kToneLevels[2] - 1, 0.0},
    {2, kToneLevels[2], kToneLevels[3], 1.17}, {3, kToneLevels[3], kToneLevels[4], 1.12},
    {4, kToneLevels[4], kToneLevels[5], 1.09}, {5, kToneLevels[5], kToneLevels[6], 1.08},
};

double Measured(const ToneChannel& tone, int level, int column) {
    return tone[static_cast<std::size_t>(level * 3 + column)];
}

double SegmentFraction(const Segment& seg, int code) {
    const int from = kToneLevels[static_cast<std::size_t>(seg.level)];
    const int to = kToneLevels[static_cast<std::size_t>(seg.level + 1)];
    const double t = HalfUp((code - from) * kTopLevelScale / (to - from));
    if (seg.exponent == 0.0) return kQuad2 * t * t + kQuad1 * t + kQuad0;
    return std::pow(t / kTopLevelScale, seg.exponent);
}

// s / 12.92 below 0.04045, else ((s + 0.055) / 1.055)^2.4; no level i / 255
// falls on the knee itself.
double TargetLinear(double s, double targetGamma) {
    return targetGamma != 0.0 ? std::pow(s, targetGamma) : SrgbDecode(s);
}

// Walks from `k` toward the code whose response is nearest `aim`, one step
// at a time while the neighbour is strictly nearer.
int NearestCode(const ResponseCurve& curve, int column, double aim, int k) {
    auto miss = [&](int code) {
        return std::fabs(curve[static_cast<std::size_t>(code)][static_cast<std::size_t>(column)] - aim);
    };
    const double d = curve[static_cast<std::size_t>(k)][static_cast<std::size_t>(column)] - aim;
    if (d > 0.0)
        while (k >= 1 && miss(k - 1) < miss(k)) --k;
    else if (d < 0.0)
        while (k < kTopLevel && miss(k + 1) < miss(k)) ++k;
    return k;
}

using ChannelTable = std::array<int32_t, 256>;

ChannelTable MixColumns(const ResponseCurve& curve, const ColumnLookup& lookup) {
    const auto& full = curve[kTopLevel];
    const double sum = full[0] + full[1] + full[2];
    const double x = full[0] / sum;
    const double y = full[1] / sum;
    const double z = full[2] / sum;
    ChannelTable out{};
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = std::clamp(HalfUp(x * lookup[i][0] + y * lookup[i][1] + z * lookup[i][2]), 0, kTopLevel);
    return out;
}

// Replaces everything up to the first entry above the threshold by a
// straight ramp from 0 to that entry.
void RampBlack(ChannelTable& out, int32_t threshold) {
    const auto found = std::find_if(out.begin(), out.end(), [&](int32_t v) { return v > threshold; });
    if (found == out.end() || found == out.begin()) return;
    const int k = static_cast<int>(found - out.begin());
    const double top = *found;
    for (int j = 0; j <= k; ++j) out[static_cast<std::size_t>(j)] = HalfUp(static_cast<double>(j) / k * top);
}

}  // namespace

ColumnExponents FitChannelExponents(const ToneChannel& tone) {
    ColumnExponents exponents{};
    const double full = kToneLevels[kLastLevel];
    for (int c = 0; c < 3; ++c) {
        double best = kNoFit;
        for (int k = 0; k < kExponentCandidates; ++k) {
            const double g = k / kExponentStep;
            double err = 0.0;
            for (int j = 0; j < kToneLevelCount; ++j) {
                const double miss = std::fabs(std::pow(kToneLevels[static_cast<std::size_t>(j)] / full, g) -
                                              Measured(tone, j, c) / Measured(tone, kLastLevel, c));
                err += miss * miss;
            }
            if (err < best) {
                best = err;
                exponents[static_cast<std::size_t>(c)] = g;
            }
        }
    }
    return exponents;
}

ResponseCurve BuildResponseCurve(const ToneChannel& tone) {
    ResponseCurve curve;
    for (auto& entry : curve) entry.fill(kUnfilled);
    for (const Segment& seg : kSegments) {
        for (int code = seg.first; code <= seg.last; ++code) {
            const double f = SegmentFraction(seg, code);
            for (int c = 0; c < 3; ++c) {
                const double lo = Measured(tone, seg.level, c);
                const double hi = Measured(tone, seg.level + 1, c);
                curve[static_cast<std::size_t>(code)][static_cast<std::size_t>(c)] = lo + f * (hi - lo);
            }
        }
    }
    return curve;
}

ColumnLookup InvertResponseCurve(const ResponseCurve& curve, const ColumnExponents& exponents, double targetGamma) {
    ColumnLookup lookup{};
    for (int c = 0; c < 3; ++c) {
        const double full = curve[kTopLevel][static_cast<std::size_t>(c)];
        for (int i = 0; i <= kTopLevel; ++i) {
            const double aim = TargetLinear(i / kTopLevelScale, targetGamma) * full;
            const double start = std::pow(aim / full, 1.0 / exponents[static_cast<std::size_t>(c)]) * kTopLevelScale;
            const int k = NearestCode(curve, c, aim, std::clamp(HalfUp(start), 0, kTopLevel));
            lookup[static_cast<std::size_t>(i)][static_cast<std::size_t>(c)] = k;
        }
    }
    return lookup;
}

int32_t BuildFactoryGammaTable(ToneModel& model) {
    model.blackThreshold = kFactoryBlackThreshold;
    const ToneChannel* tones[3] = {&model.toneR, &model.toneG, &model.toneB};
    ColumnExponents exponents[3];
    for (int p = 0; p < 3; ++p) exponents[p] = FitChannelExponents(*tones[p]);
    DebugPrint("V3");

    for (int p = 0; p < 3; ++p) {
        const ResponseCurve curve = BuildResponseCurve(*tones[p]);
        const ColumnLookup lookup = InvertResponseCurve(curve, exponents[p], model.targetGamma);
        ChannelTable out = MixColumns(curve, lookup);
        RampBlack(out, model.blackThreshold);
        for (std::size_t i = 0; i < out.size(); ++i) model.gammaTable[i][static_cast<std::size_t>(p)] = out[i];
    }
    return 0;
}

}  // namespace quarnel
