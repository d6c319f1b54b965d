// SPDX-License-Identifier: MIT
#include "lut/default_lut.h"

#include <algorithm>

#include "core/lut16.h"
#include "core/srgb.h"
#include "diag/debug.h"
#include "quarnel/cctapi.h"

namespace quarnel {
namespace {

// The sRGB-folded table uses the full 16-bit range, unlike the i x 256 ramps.
void WriteSrgbTable(uint16_t* outLut) {
    for (int i = 0; i < kLutLevels; ++i) {
        const double v = std::clamp(SrgbEncode(i / 255.0) * kMax16 + 0.5, 0.0, kMax16);
        for (int c = 0; c < kLutPlanes; ++c) outLut[LutIndex(c, i)] = static_cast<uint16_t>(v);
    }
}

void WriteFloatRamps(float* outNv) {
    for (int j = 0; j < kNvPoints; ++j) {
        const float f = static_cast<float>(j) / 1023.0f;
        for (int c = 0; c < 3; ++c) {
            outNv[j * 3 + c] = f;
            outNv[kNvFloatsPerArray + j * 3 + c] = f;
        }
    }
}

void WriteIgclRamp(double* outIgcl) {
    for (int c = 0; c < kLutPlanes; ++c)
        for (int i = 0; i < kLutLevels; ++i) outIgcl[LutIndex(c, i)] = i / 255.0;
}

}  // namespace

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
