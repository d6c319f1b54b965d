// SPDX-License-Identifier: MIT
#include "lut/default_lut.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "core/lut16.h"
#include "core/srgb.h"
#include "diag/debug.h"
#include "quarnel/cctapi.h"

namespace quarnel {
namespace {

// The tables below are fixed: each is built on first use and copied out on
// every later call.

// The sRGB-folded table uses the full 16-bit range, unlike the i x 256 ramps.
std::array<uint16_t, kLutLevels> BuildSrgbTable() {
    std::array<uint16_t, kLutLevels> table{};
    for (int i = 0; i < kLutLevels; ++i) {
        const double v = std::clamp(SrgbEncode(i / kTopLevelScale) * kMax16 + 0.5, 0.0, kMax16);
        table[static_cast<std::size_t>(i)] = static_cast<uint16_t>(v);
    }
    return table;
}

// j / 1023 worked out in double and stored as float: the correctly rounded
// single-precision quotient, whichever precision divides.
std::array<float, kNvFloatsPerArray> BuildFloatRamp() {
    std::array<float, kNvFloatsPerArray> ramp{};
    for (int j = 0; j < kNvPoints; ++j) {
        const auto f = static_cast<float>(j / kNvTopScale);
        for (int c = 0; c < 3; ++c) ramp[static_cast<std::size_t>(j * 3 + c)] = f;
    }
    return ramp;
}

std::array<double, kLutLevels> BuildIgclRamp() {
    std::array<double, kLutLevels> ramp{};
    for (int i = 0; i < kLutLevels; ++i) ramp[static_cast<std::size_t>(i)] = i / kTopLevelScale;
    return ramp;
}

// Copies one 256-entry plane into all three planes of `out`.
template <typename T>
void WritePlanes(const std::array<T, kLutLevels>& plane, T* out) {
    for (int c = 0; c < kLutPlanes; ++c) std::memcpy(out + LutIndex(c, 0), plane.data(), sizeof(plane));
}

void WriteSrgbTable(uint16_t* outLut) {
    static const std::array<uint16_t, kLutLevels> table = BuildSrgbTable();
    WritePlanes(table, outLut);
}

void WriteFloatRamps(float* outNv) {
    const std::array<float, kNvFloatsPerArray>& ramp = IdentityFloatRamp();
    std::memcpy(outNv, ramp.data(), sizeof(ramp));
    std::memcpy(outNv + kNvFloatsPerArray, ramp.data(), sizeof(ramp));
}

void WriteIgclRamp(double* outIgcl) {
    static const std::array<double, kLutLevels> ramp = BuildIgclRamp();
    WritePlanes(ramp, outIgcl);
}

}  // namespace

const std::array<float, kNvFloatsPerArray>& IdentityFloatRamp() {
    static const std::array<float, kNvFloatsPerArray> ramp = BuildFloatRamp();
    return ramp;
}

int32_t GetDefaultLut(int32_t lutApiType, uint16_t* outLut, double* outIgcl, float* outNv) {
    DebugMessage(L"; VOK: ##Enter GetDefaultLut()##\n");
    int32_t status = CCT_OK;
    switch (lutApiType) {
        case CCT_LUT_API_PLAIN:
        case CCT_LUT_API_QCOM:
        case CCT_LUT_API_PLAIN_ALT:
            FillIdentity(outLut);
            break;
        case CCT_LUT_API_SRGB:
            WriteSrgbTable(outLut);
            break;
        case CCT_LUT_API_NVIDIA:
            WriteFloatRamps(outNv);
            break;
        case CCT_LUT_API_IGCL:
            FillIdentity(outLut);
            WriteIgclRamp(outIgcl);
            break;
        default:
            DebugPrint("; VOK: Invalid lutApiType(%d)!!!\n", lutApiType);
            status = CCT_ERR_LUT_API_TYPE;
            break;
    }
    DebugMessage(L"; VOK: ##Exit  GetDefaultLut()##\n");
    return status;
}

}  // namespace quarnel
