// SPDX-License-Identifier: MIT
#include "lut/improve.h"

#include "diag/debug.h"

namespace quarnel {
namespace {

constexpr int32_t kFetchRetry = -1;
constexpr int32_t kFetchFailed = -2;
constexpr int kVersionWithStep = 7;

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

bool Interpolate(const CalibrationSource& source, StepByteFetch fetch, const Lut8& in, Lut8& out) {
    uint8_t step = 0;
    if (!FetchStep(source, fetch, step)) {
        DebugPrint("GetBIOSData() failed!!!\n");
        return false;
    }
    DebugPrint("; VOK: Get bios[%d]: %d\n ", kBlockStepByte, step);
    if (LutLinInterp8Bit(step, in, out) != 0) {
        DebugPrint("LutLinInterp8Bit() failed!!!\n");
        return false;
    }
    return true;
}

bool Smooth(const Lut8& in, Lut8& out) {
    if (LutSmooth8Bit(in, out) != 0) {
        DebugPrint("; VOK: LutSmooth8Bit() failed!!!\n");
        return false;
    }
    return true;
}

}  // namespace

// Failures are reported by message only: the LUT stays as it was and the
// result is 0 either way.
int32_t LutImprove(int32_t biosVer, const CalibrationSource& source, uint16_t* lut, StepByteFetch fetch) {
    DebugMessage(L"; VOK: ##Enter LutImprove()##\n");
    const Lut8 in = ReduceTo8Bit(lut);
    Lut8 out;  // both steps fill every entry before it is read
    const bool improved = biosVer == kVersionWithStep ? Interpolate(source, fetch, in, out) : Smooth(in, out);
    if (improved) WriteBack(out, lut);
    return 0;
}

}  // namespace quarnel
