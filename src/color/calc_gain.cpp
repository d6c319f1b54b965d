// SPDX-License-Identifier: MIT
#include "color/calc_gain.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "color/apply_gains.h"
#include "color/chromaticity.h"
#include "color/locus.h"
#include "color/white_gains.h"

namespace quarnel {
namespace {

constexpr int kWalkStepLimit = 100;
constexpr int32_t kWalkStepKelvin = 50;
constexpr int kSearchIterationLimit = 1000;
constexpr double kSearchLuminanceTolerance = 1.0;
constexpr double kSearchMinResultY = 1.0;
// Ends of the search closer than this (in xy) have met; a moved target this
// close to native white is no target at all.
constexpr double kSearchResolution = 0.0005;
constexpr double kPercent = 100.0;

// The perceptual luminance floor: brightness is taken to follow luminance to
// the power 0.4 (a Stevens-type power law, between CIE L*'s cube root and a
// square root), and a solve may lose as much of it as a white dimmed from
// 220 to 190 cd/m2 does, wherever the panel's native white lies:
//   floor = (Y^0.4 - (220^0.4 - 190^0.4))^2.5, 2.5 being 1 / 0.4.
constexpr double kPerceptualHigh = 220.0;
constexpr double kPerceptualLow = 190.0;
constexpr double kPerceptualExponent = 0.4;
constexpr double kPerceptualInverse = 1.0 / kPerceptualExponent;
static_assert(kPerceptualInverse == 2.5);

Xy Target(const GainSolverState& s) { return {s.targetX, s.targetY}; }
Xy NativeWhite(const GainSolverState& s) { return {s.point[kWhite].x, s.point[kWhite].y}; }

void SetTarget(GainSolverState& s, Xy p) {
    s.targetX = p.x;
    s.targetY = p.y;
}

double Distance(Xy a, Xy b) { return std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y)); }
Xy Midpoint(Xy a, Xy b) { return {(a.x + b.x) / 2.0, (a.y + b.y) / 2.0}; }

void ApplyRequestedLut(const GainRequest& r) {
    if (r.srcLut != nullptr && r.dstLut != nullptr) ApplyGainsToLut(r.srcLut, r.gain, r.dstLut);
}

void FallBackToNative(GainSolverState& s, GainRequest& r) {
    s.flags |= kGainFellBack;
    s.nativeY = r.primaryXyz[kWhite][kColumnY];
    s.resultY = s.nativeY;
    s.lumChangePct = 0.0;
    s.lumFloor = 0.0;
    s.point[kWhite] = Chromaticity(s, r.primaryXyz[kWhite]);
    SetTarget(s, NativeWhite(s));
    s.cct = CctFromXy(s, NativeWhite(s));
    std::fill(r.gain, r.gain + 3, 1.0);
    ApplyRequestedLut(r);
    r.warnFlags |= s.flags;
}

int32_t SaturatedSum(int32_t a, int32_t b) {
    const int64_t sum = int64_t{a} + int64_t{b};
    return static_cast<int32_t>(
        std::clamp<int64_t>(sum, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

void PlaceOnLocus(GainSolverState& s, uint32_t locus, int32_t kelvin) {
    Xy p = Target(s);  // the offset daylight locus leaves it as it is where the loci meet
    LocusXy(s, locus, kelvin, p);
    SetTarget(s, p);
}

bool PlaceTarget(GainSolverState& s, const GainRequest& r) {
    switch (r.targetMode) {
        case kTargetChromaticity:
            SetTarget(s, {r.targetX, r.targetY});
            return true;
        case kTargetNativeOffset:
            PlaceOnLocus(s, r.locus, SaturatedSum(s.nativeCct, r.cctOffset));
            return true;
        case kTargetAbsoluteCct:
            PlaceOnLocus(s, r.locus, r.targetCct);
            return true;
        default:
            s.flags |= kGainUnknownTargetMode | kGainFellBack;
            return false;
    }
}

// Steps the target's colour temperature 50 K at a time toward the native one
// along the request's locus until the target lies inside the gamut.
bool WalkIntoGamut(GainSolverState& s, const GainRequest& r) {
    int steps = 0;
    while (!IsInsideGamut(s, Target(s))) {
        s.flags |= kGainWalkStep;
        if (steps == kWalkStepLimit) {
            s.flags |= kGainWalkExhausted | kGainFellBack;
            return false;
        }
        const bool warmer = s.cct > s.nativeCct;
        s.cct += warmer ? -kWalkStepKelvin : kWalkStepKelvin;
        if (warmer ? s.cct < s.nativeCct : s.cct > s.nativeCct) {
            s.cct = s.nativeCct;
            s.flags |= kGainFellBack;
            return false;
        }
        PlaceOnLocus(s, r.locus, s.cct);
        ++steps;
    }
    return true;
}

double LuminanceFloor(const GainRequest& r, double nativeY) {
    switch (r.lumMode) {
        case kFloorNone:
            return 0.0;
        case kFloorPerceptual: {
            const double span =
                std::pow(kPerceptualHigh, kPerceptualExponent) - std::pow(kPerceptualLow, kPerceptualExponent);
            return std::pow(std::pow(nativeY, kPerceptualExponent) - span, kPerceptualInverse);
        }
        case kFloorPercent:
            return (kPercent - r.lumPercent) / kPercent * nativeY;
        case kFloorDrop:
            return nativeY - r.lumDrop;
        default:
            return 0.0;
    }
}

// Bisects between native white and the target for the white whose luminance
// meets the floor; leaves the found point as the state's target.
bool SearchLuminance(GainSolverState& s) {
    Xy nativeEnd = NativeWhite(s);
    Xy targetEnd = Target(s);
    Xy mid = nativeEnd;
    double scratch[3] = {};
    int iterations = 0;
    while (std::fabs(s.resultY - s.lumFloor) > kSearchLuminanceTolerance || s.lumFloor > s.resultY) {
        if (++iterations == kSearchIterationLimit) {
            s.flags |= kGainSearchExhausted;
            SetTarget(s, NativeWhite(s));
            return false;
        }
        mid = Midpoint(nativeEnd, targetEnd);
        SolveWhiteGains(s, mid, scratch);
        if (s.resultY == s.lumFloor) break;
        if (s.lumFloor > s.resultY)
            targetEnd = mid;
        else
            nativeEnd = mid;
        if (Distance(nativeEnd, targetEnd) < kSearchResolution) {
            SetTarget(s, nativeEnd);
            return true;
        }
    }
    SetTarget(s, mid);
    return true;
}

// Sets the luminance floor; false when it lies at or above native white,
// where the solve ends in native white whatever the gains would have been.
bool PlaceFloor(GainSolverState& s, const GainRequest& r) {
    s.lumFloor = LuminanceFloor(r, s.nativeY);
    if (s.lumFloor < 0.0) {
        s.flags |= kGainFloorClamped;
        s.lumFloor = 0.0;
    }
    if (s.lumFloor >= s.nativeY) {
        s.flags |= kGainFloorClamped | kGainFellBack;
        return false;
    }
    return true;
}

// Keeps the solved white above the floor; false when the solve has to fall back.
bool KeepAboveFloor(GainSolverState& s, GainRequest& r) {
    if (s.lumFloor == 0.0 || !(s.lumFloor > s.resultY) || !(s.resultY > kSearchMinResultY)) return true;
    if (!SearchLuminance(s) || Distance(Target(s), NativeWhite(s)) < kSearchResolution) {
        s.flags |= kGainFellBack;
        return false;
    }
    SolveWhiteGains(s, Target(s), r.gain);
    return true;
}

// Places, walks and solves the target under the floor; false when the solve
// has to end in native white.
bool Solve(GainSolverState& s, GainRequest& r, const SolverRows& rows) {
    const double whiteY = r.primaryXyz[kWhite][kColumnY];
    const double primariesY =
        r.primaryXyz[kRed][kColumnY] + r.primaryXyz[kGreen][kColumnY] + r.primaryXyz[kBlue][kColumnY];
    if (whiteY == 0.0 || primariesY == 0.0) {
        s.flags |= kGainZeroSum;
        return false;
    }
    std::copy_n(rows.point, 4, s.point);
    s.flags |= rows.pointFlags;
    if (!rows.nativeInside) {
        s.flags |= kGainNativeOutside;
        return false;
    }
    s.nativeCct = rows.nativeCct;
    s.flags |= rows.nativeCctFlags;
    if (!PlaceTarget(s, r)) return false;
    s.cct = CctFromXy(s, Target(s));
    const Xy placed = Target(s);
    const int32_t placedCct = s.cct;
    if (!WalkIntoGamut(s, r)) {
        s.flags |= kGainFellBack;
        return false;
    }
    s.nativeY = whiteY;
    if (!PlaceFloor(s, r)) return false;
    SolveWhiteGains(s, Target(s), r.gain);
    if (!KeepAboveFloor(s, r)) return false;
    // The temperature reported is the final target's; it is worked out again
    // only where the walk or the luminance search has moved the target.
    const Xy target = Target(s);
    if (s.cct != placedCct || target.x != placed.x || target.y != placed.y) s.cct = CctFromXy(s, target);
    return true;
}

}  // namespace

SolverRows PrepareRows(const double primaryXyz[4][3]) {
    SolverRows rows;
    GainSolverState scratch;
    for (int row = kRed; row <= kWhite; ++row)
        rows.point[row] = scratch.point[row] = Chromaticity(scratch, primaryXyz[row]);
    rows.pointFlags = scratch.flags;
    rows.nativeInside = IsInsideGamut(scratch, NativeWhite(scratch));
    scratch.flags = 0;
    rows.nativeCct = CctFromXy(scratch, NativeWhite(scratch));
    rows.nativeCctFlags = scratch.flags;
    return rows;
}

void CalcGain(GainSolverState& state, GainRequest* request) {
    if (request == nullptr) {
        state.flags = kGainNullRequest;
        return;
    }
    CalcGain(state, request, PrepareRows(request->primaryXyz));
}

void CalcGain(GainSolverState& state, GainRequest* request, const SolverRows& rows) {
    state.flags = 0;
    if (request == nullptr) {
        state.flags = kGainNullRequest;
        return;
    }
    request->warnFlags = 0;
    request->errorFlags = 0;
    if (!Solve(state, *request, rows) || (state.flags & kGainFellBack) != 0) {
        FallBackToNative(state, *request);
        return;
    }
    state.lumChangePct = (state.resultY - state.nativeY) / state.nativeY * kPercent;
    ApplyRequestedLut(*request);
    request->warnFlags |= state.flags;
}

GainRequest ChromaticityRequest(const XyzTable& rows, double x, double y) {
    GainRequest r;
    std::copy_n(&rows.row[0][0], 4 * 3, &r.primaryXyz[0][0]);
    r.targetMode = kTargetChromaticity;
    r.targetX = x;
    r.targetY = y;
    r.locus = kLocusOffsetDaylight;
    r.lumMode = kFloorNone;
    return r;
}

}  // namespace quarnel
