// SPDX-License-Identifier: MIT
#include "model/qa_statistics.h"

#include <algorithm>
#include <cmath>

namespace quarnel::tool {

double Percentile(const std::vector<double>& sorted, double p) {
    if (sorted.empty()) return 0.0;
    const double rank = std::clamp(p, 0.0, 100.0) / 100.0 * static_cast<double>(sorted.size() - 1);
    const auto below = static_cast<size_t>(std::floor(rank));
    const size_t above = std::min(below + 1, sorted.size() - 1);
    const double f = rank - static_cast<double>(below);
    return sorted[below] + f * (sorted[above] - sorted[below]);
}

MetricSummary Summarise(std::vector<double> values) {
    std::erase_if(values, [](double v) { return !std::isfinite(v); });
    if (values.empty()) return {};
    std::sort(values.begin(), values.end());
    MetricSummary s{Percentile(values, 50), Percentile(values, 95), 0.0};
    for (double& v : values) v = std::abs(v - s.median);
    std::sort(values.begin(), values.end());
    s.mad = Percentile(values, 50);
    return s;
}

bool IsOutlier(double value, const MetricSummary& summary, double k) {
    if (!std::isfinite(value)) return false;
    const double distance = std::abs(value - summary.median);
    // Values that agree but for rounding are not outliers of a lot that agrees exactly.
    const double rounding = 1e-9 * std::max(1.0, std::abs(summary.median));
    return distance > k * summary.mad && distance > rounding;
}

}  // namespace quarnel::tool
