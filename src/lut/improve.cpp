// SPDX-License-Identifier: MIT
#include "lut/improve.h"

#include "diag/debug.h"

namespace quarnel {
namespace {

constexpr int32_t kFetchRetry = -1;
constexpr int32_t kFetchFailed = -2;
constexpr int kVersionWithStep = 7;

constexpr std::size_t kLevels = kLutLevels;

// The high byte of each entry: 8-bit levels with no rounding.
void ReducePlane(const uint16_t* lut, Plane8& plane) {
    for (std::size_t i = 0; i < kLevels; ++i) plane[i] = lut[i] >> 8;
}

void WriteBackPlane(const Plane8& plane, uint16_t* lut) {
    for (std::size_t i = 0; i < kLevels; ++i) lut[i] = static_cast<uint16_t>(plane[i] * kLutStep);
}

// The dark-end smoothing looks across the channels entry by entry, so it
// works on the 8-bit table in [level][channel] form.
Lut8 ReduceTo8Bit(const uint16_t* lut) {
    Lut8 lut8{};
    for (int i = 0; i < kLutLevels; ++i)
        for (int c = 0; c < kLutPlanes; ++c) lut8[i][c] = lut[LutIndex(c, i)] >> 8;
    return lut8;
}

void WriteBack(const Lut8& lut8, uint16_t* lut) {
    for (int i = 0; i < kLutLevels; ++i)
        for (int c = 0; c < kLutPlanes; ++c) lut[LutIndex(c, i)] = static_cast<uint16_t>(lut8[i][c] * kLutStep);
}

// A first -1 earns one more try, and that try counts unless it is -1 again;
// a -2 fails only on the first try.
bool FetchStep(const CalibrationSource& source, StepByteFetch fetch, uint8_t& step) {
    step = 0;
    DebugMessage(L"VOK: Enter GetBIOSData()\n");
    DebugMessage(L"VOK: Enter GetBIOSDataManual()\n");
    if (fetch == nullptr) return false;
    const int32_t first = fetch(source, step);
    if (first == kFetchFailed) return false;
    if (first == kFetchRetry && fetch(source, step) == kFetchRetry) return false;
    DebugMessage(L"VOK: Exit GetBIOSDataManual()\n");
    return true;
}

// Interpolates every channel at the fetched step and writes the LUT back;
// false, with the LUT untouched, when the step could not be fetched.
bool Interpolate(const CalibrationSource& source, StepByteFetch fetch, uint16_t* lut) {
    uint8_t step = 0;
    if (!FetchStep(source, fetch, step)) {
        DebugPrint("GetBIOSData() failed!!!\n");
        return false;
    }
    DebugPrint("; VOK: Get bios[%d]: %d\n ", kBlockStepByte, step);
    Plane8 out[kLutPlanes];
    for (int c = 0; c < kLutPlanes; ++c) {
        Plane8 in;
        ReducePlane(lut + LutIndex(c, 0), in);
        if (LutLinInterp8Bit(step, in, out[c]) != 0) {
            DebugPrint("LutLinInterp8Bit() failed!!!\n");
            return false;
        }
    }
    for (int c = 0; c < kLutPlanes; ++c) WriteBackPlane(out[c], lut + LutIndex(c, 0));
    return true;
}

bool Smooth(uint16_t* lut) {
    const Lut8 in = ReduceTo8Bit(lut);
    Lut8 out;  // LutSmooth8Bit fills every entry before it is read
    if (LutSmooth8Bit(in, out) != 0) {
        DebugPrint("; VOK: LutSmooth8Bit() failed!!!\n");
        return false;
    }
    WriteBack(out, lut);
    return true;
}

}  // namespace

// Failures are reported by message only: each step writes the LUT back only
// on success, and the result is 0 either way.
int32_t LutImprove(int32_t biosVer, const CalibrationSource& source, uint16_t* lut, StepByteFetch fetch) {
    DebugMessage(L"; VOK: ##Enter LutImprove()##\n");
    if (biosVer == kVersionWithStep)
        Interpolate(source, fetch, lut);
    else
        Smooth(lut);
    return 0;
}

}  // namespace quarnel
