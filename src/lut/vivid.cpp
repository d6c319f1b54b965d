// SPDX-License-Identifier: MIT
#include "lut/vivid.h"

#include <algorithm>

#include "core/half_up.h"

namespace quarnel {
namespace {

constexpr int kVividKnee = 50;
constexpr double kSquare = 0.00309841269841269;
constexpr double kCube = 1.01587301587301e-5;
constexpr double kLinear = 0.87047619047619;

}  // namespace

double VividLevel(int i) {
    if (i < kVividKnee) return i;
    const double x = i;
    return kSquare * (x * x) - kCube * (x * x * x) + kLinear * x;
}

namespace {

Lut16 BuildVividCurve() {
    Lut16 curve{};
    for (int i = 0; i < kLutLevels; ++i) {
        const int v = TruncToInt(std::clamp(VividLevel(i) + 0.5, 0.0, kTopLevelScale));
        for (int c = 0; c < kLutPlanes; ++c) curve[LutIndex(c, i)] = static_cast<uint16_t>(v * kLutStep);
    }
    return curve;
}

}  // namespace

const Lut16& VividCurve() {
    static const Lut16 curve = BuildVividCurve();
    return curve;
}

const ComposePlaces& VividPlaces() {
    static const ComposePlaces places = [] {
        ComposePlaces p{};
        ComposePlacesOf(kComposeScaled, VividCurve().data(), p);
        return p;
    }();
    return places;
}

const std::array<double, kLutLevels>& VividLevels() {
    static const std::array<double, kLutLevels> levels = [] {
        std::array<double, kLutLevels> l{};
        for (int i = 0; i < kLutLevels; ++i) l[static_cast<std::size_t>(i)] = VividLevel(i);
        return l;
    }();
    return levels;
}

}  // namespace quarnel
