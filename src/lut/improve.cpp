// SPDX-License-Identifier: MIT
#include "lut/improve.h"

#include <algorithm>

#include "diag/debug.h"
#include "facts/block_layout.h"

namespace quarnel {
namespace {

constexpr int32_t kFetchRetry = -1;
constexpr int32_t kFetchFailed = -2;
// Only blocks of exactly the version that brought the step byte interpolate
// with it; later versions smooth.
constexpr int kVersionWithStep = facts::kStepByte.firstVersion;

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

// The table in `lut` itself, improved in place.
class InPlaceLut final : public PendingLut {
public:
    explicit InPlaceLut(const uint16_t* lut) : lut_(lut) {}
    void Levels(int channel, const int* at, int count, int32_t* out) const override {
        for (int i = 0; i < count; ++i) out[i] = lut_[LutIndex(channel, at[i])] >> 8;
    }
    void Fill(uint16_t* lut) const override {
        if (lut != lut_) std::copy_n(lut_, kLutEntries, lut);
    }

private:
    const uint16_t* lut_;
};

// Interpolates every channel at the fetched step; leaves the table as it is
// when the step could not be fetched.
void Interpolate(const CalibrationSource& source, StepByteFetch fetch, const PendingLut& from, uint16_t* lut) {
    uint8_t step = 0;
    if (!FetchStep(source, fetch, step)) {
        DebugPrint("GetBIOSData() failed!!!\n");
        from.Fill(lut);
        return;
    }
    DebugPrint("; VOK: Get bios[%d]: %d\n ", kBlockStepByte, step);
    LutLinInterp8Bit(step, from, lut);
}

void Smooth(uint16_t* lut) {
    const Lut8 in = ReduceTo8Bit(lut);
    Lut8 out;  // LutSmooth8Bit fills every entry before it is read
    if (LutSmooth8Bit(in, out) != 0) {
        DebugPrint("; VOK: LutSmooth8Bit() failed!!!\n");
        return;
    }
    WriteBack(out, lut);
}

}  // namespace

int32_t LutImprove(int32_t biosVer, const CalibrationSource& source, uint16_t* lut, StepByteFetch fetch) {
    return LutImprove(biosVer, source, InPlaceLut(lut), lut, fetch);
}

// Failures are reported by message only: the LUT is written only once a step
// is sure to succeed, and the result is 0 either way.
int32_t LutImprove(int32_t biosVer, const CalibrationSource& source, const PendingLut& pending, uint16_t* lut,
                   StepByteFetch fetch) {
    DebugMessage(L"; VOK: ##Enter LutImprove()##\n");
    if (biosVer == kVersionWithStep) {
        Interpolate(source, fetch, pending, lut);
    } else {
        pending.Fill(lut);
        Smooth(lut);
    }
    return 0;
}

}  // namespace quarnel
