// SPDX-License-Identifier: MIT
#pragma once
// A lot's QA in numbers: the metrics every panel is judged by, the
// thresholds a panel must meet, the lot's robust statistics and each
// panel's flags.

#include <map>
#include <string>
#include <vector>

#include "model/qa_statistics.h"
#include "session/qa_check.h"

namespace quarnel::tool {

struct QaThresholds {
    double maxDuv = 0.005;                  // normal white from D65, in u'v'
    double minSrgb = 0.90;                  // sRGB coverage
    double minP3 = 0.0;                     // DCI-P3 coverage
    double minLuminanceShare = 0.80;        // of the native white kept by the normal white
    double minGamma = 1.9, maxGamma = 2.6;  // each channel's native gamma, where measured
    double outlierK = 5.0;                  // outlier beyond this many MADs from the lot's median
};

struct QaMetric {
    const char* name;
    double (*value)(const QaMeasures&);
    // Looked at for outliers: what the factory measured, and the luminance
    // the normal white keeps. The normal white itself moves in the steps of
    // the library's 8-bit gains, too coarse for its spread to mean anything;
    // its distance from D65 has a threshold.
    bool outlying;
};
// Native white and luminance, coverages, native gammas, normal white, its
// distance from D65 and the luminance it keeps.
const std::vector<QaMetric>& QaMetrics();
inline constexpr size_t kNormalMode = 0;  // the slider at its normal position

// The names of the thresholds the panel misses (only `ok` panels are judged).
std::vector<std::string> ThresholdMisses(const QaResult& result, const QaThresholds& thresholds);

class QaLot {
public:
    explicit QaLot(const QaThresholds& thresholds) : thresholds_(thresholds) {}
    // Every result once, in order; then Finish before any flags are asked for.
    void Add(const QaResult& result);
    void Finish();

    // Threshold misses by metric name, then "outlier:" and the metric name.
    std::vector<std::string> Flags(const QaResult& result) const;
    bool Outlier(const QaResult& result) const;
    bool Passed(const QaResult& result) const;  // ok and within every threshold

    const QaThresholds& thresholds() const { return thresholds_; }
    size_t blocks() const { return blocks_; }
    size_t passed() const { return passed_; }
    const std::map<std::string, size_t>& verdicts() const { return verdicts_; }
    const std::map<std::string, size_t>& misses() const { return misses_; }
    const std::vector<MetricSummary>& summaries() const { return summaries_; }

private:
    QaThresholds thresholds_;
    size_t blocks_ = 0, passed_ = 0;
    std::map<std::string, size_t> verdicts_, misses_;
    std::vector<std::vector<double>> values_;  // metric, ok panel
    std::vector<MetricSummary> summaries_;
};

}  // namespace quarnel::tool
