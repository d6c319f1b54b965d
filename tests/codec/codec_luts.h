#pragma once
// LUTs for the string codec described by their 8-bit neighbour differences.

#include <initializer_list>
#include <vector>

#include "lut/lut16.h"

namespace quarnel::test {

// One plane: difference 0 at position 0, then `pattern` repeated `times`,
// then differences of 1 up to position 255.
struct PlaneSteps {
    std::vector<int> pattern;
    int times = 0;
};

inline std::vector<int> PlaneDifferences(const PlaneSteps& steps) {
    std::vector<int> d{0};
    for (int t = 0; t < steps.times; ++t) d.insert(d.end(), steps.pattern.begin(), steps.pattern.end());
    d.resize(kLutLevels, 1);
    return d;
}

// Entries are value x 256, the value being the running sum of the differences.
inline Lut16 LutFromSteps(const PlaneSteps& r, const PlaneSteps& g = {}, const PlaneSteps& b = {}) {
    Lut16 lut{};
    int c = 0;
    for (const PlaneSteps* steps : {&r, &g, &b}) {
        int value = 0;
        const auto d = PlaneDifferences(*steps);
        for (int i = 0; i < kLutLevels; ++i) {
            value += d[static_cast<std::size_t>(i)];
            lut[LutIndex(c, i)] = static_cast<uint16_t>(value * kLutStep);
        }
        ++c;
    }
    return lut;
}

}  // namespace quarnel::test
