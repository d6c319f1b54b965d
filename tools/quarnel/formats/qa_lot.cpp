// SPDX-License-Identifier: MIT
#include "formats/qa_lot.h"

#include <algorithm>
#include <cmath>

namespace quarnel::tool {
namespace {

const QaMode& Normal(const QaMeasures& m) { return m.modes[kNormalMode]; }

bool Below(double value, double floor) { return !(value >= floor); }  // a missing value misses too

}  // namespace

const std::vector<QaMetric>& QaMetrics() {
    static const std::vector<QaMetric> metrics{
        {"native_x", [](const QaMeasures& m) { return m.native.white.x; }, true},
        {"native_y", [](const QaMeasures& m) { return m.native.white.y; }, true},
        {"native_luminance", [](const QaMeasures& m) { return m.native.whiteY; }, true},
        {"srgb_coverage", [](const QaMeasures& m) { return m.native.srgbCoverage; }, true},
        {"p3_coverage", [](const QaMeasures& m) { return m.native.p3Coverage; }, true},
        {"gamma_red", [](const QaMeasures& m) { return m.native.gamma[0]; }, true},
        {"gamma_green", [](const QaMeasures& m) { return m.native.gamma[1]; }, true},
        {"gamma_blue", [](const QaMeasures& m) { return m.native.gamma[2]; }, true},
        {"normal_x", [](const QaMeasures& m) { return Normal(m).white.x; }, false},
        {"normal_y", [](const QaMeasures& m) { return Normal(m).white.y; }, false},
        {"normal_duv", [](const QaMeasures& m) { return Normal(m).duv; }, false},
        {"normal_luminance_share", [](const QaMeasures& m) { return Normal(m).luminanceShare; }, true},
    };
    return metrics;
}

std::vector<std::string> ThresholdMisses(const QaResult& result, const QaThresholds& t) {
    std::vector<std::string> misses;
    if (result.verdict != kVerdictOk) return misses;
    const QaMeasures& m = result.measures;
    if (!(Normal(m).duv <= t.maxDuv)) misses.emplace_back("normal_duv");
    if (Below(m.native.srgbCoverage, t.minSrgb)) misses.emplace_back("srgb_coverage");
    if (Below(m.native.p3Coverage, t.minP3)) misses.emplace_back("p3_coverage");
    if (Below(Normal(m).luminanceShare, t.minLuminanceShare)) misses.emplace_back("normal_luminance_share");
    constexpr const char* kGammaNames[3] = {"gamma_red", "gamma_green", "gamma_blue"};
    for (size_t c = 0; c < 3; ++c)  // blocks before version 5 carry no tone readings
        if (std::isfinite(m.native.gamma[c]) && (m.native.gamma[c] < t.minGamma || m.native.gamma[c] > t.maxGamma))
            misses.emplace_back(kGammaNames[c]);
    return misses;
}

void QaLot::Add(const QaResult& result) {
    ++blocks_;
    ++verdicts_[result.verdict];
    if (result.verdict != kVerdictOk) return;
    const auto misses = ThresholdMisses(result, thresholds_);
    for (const auto& name : misses) ++misses_[name];
    if (misses.empty()) ++passed_;
    values_.resize(QaMetrics().size());
    for (size_t i = 0; i < QaMetrics().size(); ++i) values_[i].push_back(QaMetrics()[i].value(result.measures));
}

void QaLot::Finish() {
    values_.resize(QaMetrics().size());
    summaries_.clear();
    for (auto& values : values_) {
        summaries_.push_back(Summarise(std::move(values)));
        values = {};
    }
}

std::vector<std::string> QaLot::Flags(const QaResult& result) const {
    std::vector<std::string> flags = ThresholdMisses(result, thresholds_);
    if (result.verdict != kVerdictOk) return flags;
    for (size_t i = 0; i < QaMetrics().size(); ++i)
        if (QaMetrics()[i].outlying &&
            IsOutlier(QaMetrics()[i].value(result.measures), summaries_[i], thresholds_.outlierK))
            flags.push_back(std::string("outlier:") + QaMetrics()[i].name);
    return flags;
}

bool QaLot::Outlier(const QaResult& result) const {
    if (result.verdict != kVerdictOk) return false;
    const auto flags = Flags(result);
    return std::any_of(flags.begin(), flags.end(), [](const std::string& f) { return f.starts_with("outlier:"); });
}

bool QaLot::Passed(const QaResult& result) const {
    return result.verdict == kVerdictOk && ThresholdMisses(result, thresholds_).empty();
}

}  // namespace quarnel::tool
