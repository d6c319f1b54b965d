// SPDX-License-Identifier: MIT
#pragma once
// The records of one white-point solve: the caller's request and the solver's
// working state, and the status bits the solver reports in them.

#include <array>
#include <cstdint>

namespace quarnel {

// Status bits of GainSolverState::flags, copied into GainRequest::warnFlags.
inline constexpr uint32_t kGainNullRequest = 0x1;
inline constexpr uint32_t kGainZeroSum = 0x2;   // zero white or primary luminance, or a row summing to 0
inline constexpr uint32_t kGainFellBack = 0x4;  // result is native white, gains 1, 1, 1
inline constexpr uint32_t kGainUnknownTargetMode = 0x8;
inline constexpr uint32_t kGainUnknownLocus = 0x10;  // offset daylight used instead
inline constexpr uint32_t kGainFloorClamped = 0x20;  // negative floor set to 0; with 0x4: floor at or above native
inline constexpr uint32_t kGainWalkStep = 0x40;
inline constexpr uint32_t kGainDaylightBelow = 0x80;
inline constexpr uint32_t kGainDaylightAbove = 0x100;
inline constexpr uint32_t kGainPlanckianBelow = 0x200;
inline constexpr uint32_t kGainPlanckianAbove = 0x400;
inline constexpr uint32_t kGainOffsetDaylightBelow = 0x800;
inline constexpr uint32_t kGainOffsetDaylightAbove = 0x1000;
inline constexpr uint32_t kGainCctBelow = 0x2000;
inline constexpr uint32_t kGainCctAbove = 0x4000;
inline constexpr uint32_t kGainWalkExhausted = 0x8000;
inline constexpr uint32_t kGainSearchExhausted = 0x10000;
inline constexpr uint32_t kGainBlendClamped = 0x20000;
inline constexpr uint32_t kGainNativeOutside = 0x40000;

// GainRequest::targetMode
inline constexpr uint32_t kTargetChromaticity = 0;
inline constexpr uint32_t kTargetNativeOffset = 1;
inline constexpr uint32_t kTargetAbsoluteCct = 2;

// GainRequest::locus
inline constexpr uint32_t kLocusPlanckian = 0;
inline constexpr uint32_t kLocusDaylight = 1;
inline constexpr uint32_t kLocusOffsetDaylight = 2;

// GainRequest::lumMode: the luminance floor a solve keeps above.
inline constexpr uint32_t kFloorNone = 0;
inline constexpr uint32_t kFloorPerceptual = 1;  // a fixed step on a perceptual scale below native white
inline constexpr uint32_t kFloorPercent = 2;     // lumPercent of native white may be lost
inline constexpr uint32_t kFloorDrop = 3;        // lumDrop may be lost

// Rows of GainRequest::primaryXyz and of GainSolverState::point.
inline constexpr int kRed = 0;
inline constexpr int kGreen = 1;
inline constexpr int kBlue = 2;
inline constexpr int kWhite = 3;
// The luminance column of a row (X, Y, Z).
inline constexpr int kColumnY = 1;

// The white that the fixed-target initialisation and the normal-gain re-solve
// aim at: the DCI-P3 projector white.
inline constexpr double kFixedTargetX = 0.314;
inline constexpr double kFixedTargetY = 0.351;

// The gamma every solve and blend runs with: the display response (drive to
// luminance) that the gains are worked out for, as sRGB-era panels have it.
inline constexpr double kSolverGamma = 2.2;

// Red, green and blue gains; each normally in 0..1 with the limiting one at 1.0.
using GainTriple = std::array<double, 3>;

// A measurement table: rows red, green, blue, white; columns X, Y, Z at full drive.
struct XyzTable {
    double row[4][3] = {};
};

// The five gain triples the initialisation solves and every LUT request uses.
struct ModeGains {
    GainTriple normal{};
    GainTriple warm{};
    GainTriple cold{};
    GainTriple readWeak{};
    GainTriple readStrong{};
};

// One solve's input and output. Allocate zeroed, fill, call CalcGain, read back.
struct GainRequest {
    double primaryXyz[4][3] = {};  // rows red, green, blue, white; columns X, Y, Z at full drive
    uint32_t targetMode = 0;
    double targetX = 0.0;
    double targetY = 0.0;
    int32_t cctOffset = 0;
    int32_t targetCct = 0;
    uint32_t locus = 0;
    uint32_t lumMode = 0;
    double lumPercent = 0.0;
    double lumDrop = 0.0;
    const uint16_t* srcLut = nullptr;  // planar Lut16 the result gains are applied to, or null
    uint16_t* dstLut = nullptr;
    double gain[3] = {};
    uint32_t warnFlags = 0;
    uint32_t errorFlags = 0;  // cleared by every solve, never set
};

// Chromaticity of one row, with the row's luminance kept beside it.
struct ChromaPoint {
    double x = 0.0;
    double y = 0.0;
    double Y = 0.0;
};

// The solver's working record, owned by the caller. Set gamma to 2.2 before
// every CalcGain or BlendedGains call.
struct GainSolverState {
    int32_t cct = 0;
    double targetX = 0.0;
    double targetY = 0.0;
    uint32_t flags = 0;
    double lumChangePct = 0.0;
    double nativeY = 0.0;
    double resultY = 0.0;
    double lumFloor = 0.0;
    double maxGain = 0.0;
    ChromaPoint point[4];  // red, green, blue, white
    int32_t nativeCct = 0;
    double gamma = 0.0;
};

}  // namespace quarnel
