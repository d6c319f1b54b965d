// SPDX-License-Identifier: MIT
#include "lut/convert.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "core/half_up.h"
#include "core/lut16.h"
#include "core/srgb.h"
#include "diag/debug.h"
#include "lut/default_lut.h"
#include "quarnel/cctapi.h"

namespace quarnel {
namespace {

struct Triple {
    double v[3];
};
using Working = std::array<Triple, kLutLevels>;

Working LoadWorking(const uint16_t* inLut) {
    Working w;
    for (int i = 0; i < kLutLevels; ++i)
        for (int c = 0; c < kLutPlanes; ++c) w[static_cast<std::size_t>(i)].v[c] = inLut[LutIndex(c, i)];
    return w;
}

// Where level i of the sRGB re-sampling reads the source table: the two
// neighbouring entries and the fraction between them. Fixed for every table,
// so worked out once per process.
struct SrgbTap {
    std::size_t lo;
    std::size_t hi;
    double f;
    double d;
};

std::array<SrgbTap, kLutLevels> BuildSrgbTaps() {
    std::array<SrgbTap, kLutLevels> taps{};
    for (int i = 0; i < kLutLevels; ++i) {
        const double p = SrgbEncode(i / kTopLevelScale) * kTopLevelScale;
        const double lo = std::clamp(std::floor(p), 0.0, kTopLevelScale);
        const double hi = std::min(kTopLevelScale, std::ceil(p));
        taps[static_cast<std::size_t>(i)] = {static_cast<std::size_t>(lo), static_cast<std::size_t>(hi), p - lo,
                                             hi - lo};
    }
    return taps;
}

// Resamples the table through the sRGB encoding curve; every lookup reads
// the unscaled source values.
Working ResampleThroughSrgb(const Working& w) {
    static const std::array<SrgbTap, kLutLevels> taps = BuildSrgbTaps();
    Working out;
    for (int i = 0; i < kLutLevels; ++i) {
        const SrgbTap& t = taps[static_cast<std::size_t>(i)];
        const Triple& a = w[t.lo];
        const Triple& b = w[t.hi];
        for (int c = 0; c < 3; ++c)
            out[static_cast<std::size_t>(i)].v[c] = t.d != 0.0 ? a.v[c] + (b.v[c] - a.v[c]) / t.d * t.f : b.v[c];
    }
    return out;
}

void WriteIgcl(const Working& w, double* outIgcl) {
    for (int i = 0; i < kLutLevels; ++i)
        for (int c = 0; c < kLutPlanes; ++c)
            outIgcl[LutIndex(c, i)] = w[static_cast<std::size_t>(i)].v[c] / kLutFullScale;
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
    std::copy(ramp.begin(), ramp.end(), pre);
}

// Where point j of the post-gamma array reads the level-major table of
// normalised values, in single precision: the offsets of the two neighbouring
// entries and the fraction between them.
struct NvTap {
    uint32_t lo;
    uint32_t hi;
    double f;
};

std::array<NvTap, kNvPoints> BuildNvTaps() {
    std::array<NvTap, kNvPoints> taps{};
    for (int j = 0; j < kNvPoints; ++j) {
        const auto q = static_cast<float>(j * kTopLevelScale / kNvTopScale);
        const float lo = std::floor(q);
        const float hi = std::ceil(q);
        float d = hi - lo;
        if (d == 0.0f) d = 1.0f;
        taps[static_cast<std::size_t>(j)] = {static_cast<uint32_t>(lo) * kLutPlanes,
                                             static_cast<uint32_t>(hi) * kLutPlanes, static_cast<double>((q - lo) / d)};
    }
    return taps;
}

using Normalised = std::array<double, kLutEntries>;  // level-major: level * 3 + channel

void WriteNvPostGamma(const Normalised& n, float* post) {
    static const std::array<NvTap, kNvPoints> taps = BuildNvTaps();
    for (const NvTap& t : taps) {
        const double* a = n.data() + t.lo;
        const double* b = n.data() + t.hi;
        for (int c = 0; c < 3; ++c) post[c] = static_cast<float>(a[c] + (b[c] - a[c]) * t.f);
        post += 3;
    }
}

void ConvertNvidia(const Working& w, float* outNv) {
    DebugPrint("Run convert power lut with api type: %d\n", 1);
    const Working p = ResampleThroughSrgb(w);
    Normalised n;
    for (std::size_t i = 0; i < p.size(); ++i)
        for (std::size_t c = 0; c < 3; ++c) n[i * 3 + c] = p[i].v[c] / kLutFullScale;
    WriteNvPreGamma(outNv);
    WriteNvPostGamma(n, outNv + kNvFloatsPerArray);
}

void WriteLut16(const Working& w, uint16_t* outLut) {
    for (int i = 0; i < kLutLevels; ++i) {
        for (int c = 0; c < kLutPlanes; ++c) {
            const int v = HalfUp(w[static_cast<std::size_t>(i)].v[c]);
            outLut[LutIndex(c, i)] = static_cast<uint16_t>(std::clamp(v, 0, static_cast<int>(kMax16)));
        }
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
            WriteIgcl(LoadWorking(inLut), outIgcl);
            break;
        case CCT_LUT_API_NVIDIA:
            ConvertNvidia(LoadWorking(inLut), outNv);
            break;
        case CCT_LUT_API_SRGB:
            WriteLut16(ResampleThroughSrgb(LoadWorking(inLut)), outLut);
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
