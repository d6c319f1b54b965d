// SPDX-License-Identifier: MIT
#pragma once
// Lut16: three planes (red, green, blue) of 256 unsigned 16-bit entries,
// planar; entry i of a plane is the output for input level i.

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/constants.h"

namespace quarnel {

inline constexpr int kLutLevels = 256;
inline constexpr int kLutPlanes = 3;
inline constexpr int kLutEntries = kLutLevels * kLutPlanes;

// The top 8-bit level: the last entry of a plane, and the full scale that an
// 8-bit level is divided by.
inline constexpr int kTopLevel = kLutLevels - 1;
inline constexpr double kTopLevelScale = kTopLevel;

using Lut16 = std::array<uint16_t, kLutEntries>;

constexpr std::size_t LutIndex(int plane, int level) { return static_cast<std::size_t>(plane * kLutLevels + level); }

inline uint16_t IdentityEntry(int level) { return static_cast<uint16_t>(level * kLutStep); }

// The input levels 0..255 as doubles, built once per process: loops that
// scale the level read it from here and vectorise, where converting the
// loop counter would not.
inline const std::array<double, kLutLevels>& LevelValues() {
    static const std::array<double, kLutLevels> levels = [] {
        std::array<double, kLutLevels> l{};
        for (std::size_t i = 0; i < l.size(); ++i) l[i] = static_cast<double>(i);
        return l;
    }();
    return levels;
}

// Writes the identity ramp i x 256 into all three planes of `lut`. The
// entry is counted in 16 bits, so that the loop adds whole vectors of
// entries instead of narrowing a 32-bit count.
inline void FillIdentity(uint16_t* lut) {
    for (int c = 0; c < kLutPlanes; ++c) {
        uint16_t entry = 0;
        for (int i = 0; i < kLutLevels; ++i, entry = static_cast<uint16_t>(entry + kLutStep))
            lut[LutIndex(c, i)] = entry;
    }
}

}  // namespace quarnel
