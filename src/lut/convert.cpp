// SPDX-License-Identifier: MIT
#include "lut/convert.h"

#include <cstring>

#include "core/lut16.h"
#include "diag/debug.h"
#include "lut/convert_kernels.h"
#include "quarnel/cctapi.h"

namespace quarnel {
namespace {

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
            convert::ConvertIgcl(inLut, outIgcl);
            break;
        case CCT_LUT_API_NVIDIA:
            DebugPrint("Run convert power lut with api type: %d\n", 1);
            convert::ConvertNvidia(inLut, outNv);
            break;
        case CCT_LUT_API_SRGB:
            convert::ConvertSrgbLut16(inLut, outLut);
            break;
        default:  // whole 16-bit entries round to themselves: the table goes out as it stands, where it is if
                  // it is converted in place
            if (outLut != inLut) std::memmove(outLut, inLut, kLutEntries * sizeof(uint16_t));
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
