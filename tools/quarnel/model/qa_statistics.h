// SPDX-License-Identifier: MIT
#pragma once
// Robust statistics of one metric over a lot: the median, a percentile, and
// which values lie far from the median in units of the median absolute
// deviation, which a few wild panels cannot drag along.

#include <vector>

namespace quarnel::tool {

struct MetricSummary {
    double median = 0.0;
    double p95 = 0.0;
    double mad = 0.0;  // median absolute deviation from the median
};

// Of the finite values; all zero when there are none.
MetricSummary Summarise(std::vector<double> values);

// Linear interpolation between the closest ranks (p in 0..100) of sorted values.
double Percentile(const std::vector<double>& sorted, double p);

// More than k MADs from the median. A lot whose values mostly agree exactly
// (MAD 0) marks every value that differs from them.
bool IsOutlier(double value, const MetricSummary& summary, double k);

}  // namespace quarnel::tool
