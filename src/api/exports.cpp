// SPDX-License-Identifier: MIT
// The library's exported C functions. Each is a thin wrapper that turns any
// C++ exception from the work below (an allocation or filesystem failure)
// into the export's failure status, so nothing unwinds into the caller.

#include "api/entry_points.h"
#include "calib/firmware_reader.h"
#include "codec/huffman_info.h"
#include "codec/lut_string.h"
#include "diag/version.h"
#include "quarnel/cctapi.h"

namespace {

constexpr int32_t kExportFailed = -1;
constexpr int32_t kReadFailed = -2;  // what a failed firmware request gives

template <typename Body>
int32_t Guarded(int32_t failure, Body body) noexcept {
    try {
        return body();
    } catch (...) {
        return failure;
    }
}

}  // namespace

extern "C" QUARNEL_API int32_t CCTAPI(uint32_t code, CctContext* ctx) {
    return Guarded(kExportFailed, [&] { return quarnel::Cctapi(code, ctx); });
}

extern "C" QUARNEL_API int32_t CCTAPI_VX(int32_t mode, CctContext* ctx, const uint16_t* vxInput) {
    return Guarded(kExportFailed, [&] { return quarnel::CctapiVx(mode, ctx, vxInput); });
}

extern "C" QUARNEL_API int32_t LUT2BIOS(const uint16_t* lut, uint32_t maxSize, uint8_t* out, int32_t outCapacity,
                                        uint32_t* method) {
    if (lut == nullptr || out == nullptr || method == nullptr) return quarnel::codec::kStringFailed;
    return Guarded(quarnel::codec::kStringFailed,
                   [&] { return quarnel::codec::StoreLut(lut, maxSize, out, outCapacity, method); });
}

extern "C" QUARNEL_API int32_t BIOS2LUT(uint16_t* lut, const uint8_t* string, int32_t count, int32_t method) {
    if (lut == nullptr || string == nullptr) return quarnel::codec::kStringFailed;
    return Guarded(quarnel::codec::kStringFailed, [&] { return quarnel::codec::LoadLut(lut, string, count, method); });
}

extern "C" QUARNEL_API int32_t GetHfmInfor(uint32_t* symbols, double* probabilities, uint32_t* codeLengths,
                                           uint32_t* codes, uint32_t* count) {
    return Guarded(kExportFailed,
                   [&] { return quarnel::codec::GetHuffmanInfo(symbols, probabilities, codeLengths, codes, count); });
}

extern "C" QUARNEL_API int32_t ShowHfmVer(void) {
    return Guarded(kExportFailed, [] { return quarnel::codec::ShowHuffmanVersion(); });
}

extern "C" QUARNEL_API int32_t ShowVersion(void) {
    return Guarded(kExportFailed, [] { return quarnel::ShowLibraryVersion(); });
}

extern "C" QUARNEL_API int32_t OLKReadDataBlock(int32_t* count, uint8_t* buffer, int32_t method) {
    return Guarded(kReadFailed, [&] { return quarnel::ReadDataBlock(count, buffer, method); });
}
