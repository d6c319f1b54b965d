// SPDX-License-Identifier: MIT
#include "lut/convert.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "core/lut16.h"
#include "core/srgb.h"
#include "diag/debug.h"
#include "lut/default_lut.h"
#include "quarnel/cctapi.h"

namespace quarnel {
namespace {

// Every path works plane by plane on the 16-bit entries as they stand, so
// that each loop runs down one contiguous plane and vectorises.

constexpr std::size_t kLevels = kLutLevels;
constexpr std::size_t kEntries = kLutEntries;
constexpr std::size_t kPoints = kNvPoints;
constexpr std::size_t kPlanes = kLutPlanes;

using Plane = std::array<double, kLevels>;

// Where level i of the sRGB re-sampling reads its plane: the entry at or
// below the encoded level, the one above it and the fraction between them.
// The encoded level lies within 0..255, so its two neighbours are at most
// one apart: where they meet (no fraction, or the top clamped) both entries
// are the same and the fraction multiplies a zero difference. Fixed for every
// table, so worked out once per process.
struct SrgbTaps {
    std::array<uint8_t, kLevels> lo;
    std::array<uint8_t, kLevels> hi;
    Plane f;
};

SrgbTaps BuildSrgbTaps() {
    SrgbTaps taps{};
    for (std::size_t i = 0; i < kLevels; ++i) {
        const double p = SrgbEncode(static_cast<double>(i) / kTopLevelScale) * kTopLevelScale;
        const double lo = std::clamp(std::floor(p), 0.0, kTopLevelScale);
        const double hi = std::min(kTopLevelScale, std::ceil(p));
        taps.lo[i] = static_cast<uint8_t>(lo);
        taps.hi[i] = static_cast<uint8_t>(hi);
        taps.f[i] = hi != lo ? p - lo : 0.0;
    }
    return taps;
}

const SrgbTaps& Taps() {
    static const SrgbTaps taps = BuildSrgbTaps();
    return taps;
}

// One plane re-sampled through the sRGB encoding curve, every lookup reading
// the unscaled source entries: a + (b - a) / d x f with d = 1 wherever the
// two neighbours differ.
void ResamplePlane(const uint16_t* in, double* out) {
    const SrgbTaps& t = Taps();
    for (std::size_t i = 0; i < kLevels; ++i) {
        const double a = in[t.lo[i]];
        const double b = in[t.hi[i]];
        out[i] = a + (b - a) * t.f[i];
    }
}

void WriteIgcl(const uint16_t* inLut, double* outIgcl) {
    for (std::size_t k = 0; k < kEntries; ++k) outIgcl[k] = inLut[k] / kLutFullScale;
}

// The resampled values lie between two 16-bit entries, so half-up needs no
// clamp here.
void WriteSrgbLut16(const uint16_t* inLut, uint16_t* outLut) {
    Plane resampled[kLutPlanes];
    for (int c = 0; c < kLutPlanes; ++c) ResamplePlane(inLut + LutIndex(c, 0), resampled[c].data());
    for (int c = 0; c < kLutPlanes; ++c) {
        uint16_t* out = outLut + LutIndex(c, 0);
        for (std::size_t i = 0; i < kLevels; ++i)
            out[i] = static_cast<uint16_t>(static_cast<int32_t>(resampled[c][i] + 0.5));
    }
}

// The sRGB decoding of the identity float ramp, decoded in double and stored
// as float, the same for all three channels.
std::array<float, kNvFloatsPerArray> BuildNvPreGamma() {
    std::array<float, kNvFloatsPerArray> ramp = IdentityFloatRamp();
    for (float& v : ramp) v = static_cast<float>(SrgbDecode(static_cast<double>(v)));
    return ramp;
}

void WriteNvPreGamma(float* pre) {
    static const std::array<float, kNvFloatsPerArray> ramp = BuildNvPreGamma();
    std::memcpy(pre, ramp.data(), sizeof(ramp));
}

// Where point j of the post-gamma array reads the normalised levels, in
// single precision: the level at or below q = j x 255 / 1023 (as the offset
// of its first channel in the level-major table) and the fraction above it.
// The level above is at most one further; where q is whole the fraction is 0
// and only the level below counts.
struct NvTaps {
    std::array<uint16_t, kPoints> offset;
    std::array<double, kPoints> f;
};

NvTaps BuildNvTaps() {
    NvTaps taps{};
    for (std::size_t j = 0; j < kPoints; ++j) {
        const auto q = static_cast<float>(static_cast<double>(j) * kTopLevelScale / kNvTopScale);
        const float lo = std::floor(q);
        const float hi = std::ceil(q);
        float d = hi - lo;
        if (d == 0.0f) d = 1.0f;
        taps.offset[j] = static_cast<uint16_t>(static_cast<std::size_t>(lo) * kPlanes);
        taps.f[j] = static_cast<double>((q - lo) / d);
    }
    return taps;
}

// Re-samples through the sRGB encoding, normalises and interpolates the
// 1024 post-gamma points of each channel; the pre-gamma array is the fixed
// decoding ramp. Each point is P[lo] + (P[hi] - P[lo]) x f: the differences
// between neighbouring levels are taken once per level, and where the
// fraction is 0 the difference (0 at the top) adds a zero.
void ConvertNvidia(const uint16_t* inLut, float* outNv) {
    static const NvTaps taps = BuildNvTaps();
    DebugPrint("Run convert power lut with api type: %d\n", 1);
    // Re-sampled and normalised level-major, so that each point reads its
    // three channels side by side.
    const SrgbTaps& t = Taps();
    std::array<double, kEntries + kPlanes> normalised;
    for (std::size_t i = 0; i < kLevels; ++i) {
        for (std::size_t c = 0; c < kPlanes; ++c) {
            const uint16_t* in = inLut + c * kLevels;
            const double a = in[t.lo[i]];
            const double b = in[t.hi[i]];
            normalised[i * kPlanes + c] = (a + (b - a) * t.f[i]) / kLutFullScale;
        }
    }
    for (std::size_t c = 0; c < kPlanes; ++c) normalised[kEntries + c] = normalised[kEntries - kPlanes + c];
    std::array<double, kEntries> rise;
    for (std::size_t k = 0; k < kEntries; ++k) rise[k] = normalised[k + kPlanes] - normalised[k];
    WriteNvPreGamma(outNv);
    float* post = outNv + kNvFloatsPerArray;
    for (std::size_t j = 0; j < kPoints; ++j) {
        const double* a = normalised.data() + taps.offset[j];
        const double* d = rise.data() + taps.offset[j];
        const double f = taps.f[j];
        for (std::size_t c = 0; c < kPlanes; ++c) post[j * kPlanes + c] = static_cast<float>(a[c] + d[c] * f);
    }
}

int32_t CheckPointers(const uint16_t* inLut, const uint16_t* outLut, const double* outIgcl, const float* outNv) {
    if (inLut == nullptr) {
        DebugPrint("; VOK: Null input pointer \"inLut\"!!!\n");
        return CCT_ERR_NULL_LUT;
    }
    if (outLut == nullptr || outIgcl == nullptr || outNv == nullptr) {
        DebugPrint("; VOK: Null input pointer \"outLut\"!!!\n");
        return CCT_ERR_NULL_LUT;
    }
    return CCT_OK;
}

int32_t ConvertChecked(int32_t lutApiType, const uint16_t* inLut, uint16_t* outLut, double* outIgcl, float* outNv) {
    if (lutApiType < CCT_LUT_API_PLAIN || lutApiType > CCT_LUT_API_PLAIN_ALT) {
        DebugPrint("; VOK: Invalid lutApiType(%d)!!!\n", lutApiType);
        return CCT_ERR_LUT_API_TYPE;
    }
    if (lutApiType == CCT_LUT_API_QCOM) return CCT_OK;  // the driver takes the 16-bit LUT as it stands
    const int32_t status = CheckPointers(inLut, outLut, outIgcl, outNv);
    if (status != CCT_OK) return status;

    switch (lutApiType) {
        case CCT_LUT_API_IGCL:
            WriteIgcl(inLut, outIgcl);
            break;
        case CCT_LUT_API_NVIDIA:
            ConvertNvidia(inLut, outNv);
            break;
        case CCT_LUT_API_SRGB:
            WriteSrgbLut16(inLut, outLut);
            break;
        default:  // whole 16-bit entries round to themselves: the table goes out as it stands
            std::memmove(outLut, inLut, kLutEntries * sizeof(uint16_t));
            break;
    }
    return CCT_OK;
}

}  // namespace

int32_t LutConvert(int32_t lutApiType, const uint16_t* inLut, uint16_t* outLut, uint32_t /*lutCount*/, double* outIgcl,
                   uint32_t /*igclCount*/, float* outNv, uint32_t /*nvCount*/) {
    DebugMessage(L"; VOK: ##Enter LutConvert()##\n");
    const int32_t status = ConvertChecked(lutApiType, inLut, outLut, outIgcl, outNv);
    DebugMessage(L"; VOK: ##Exit  LutConvert()##\n");
    return status;
}

}  // namespace quarnel
