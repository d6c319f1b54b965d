/* SPDX-License-Identifier: MIT */
/*
 * Quarnel display colour-calibration library: the public C interface.
 *
 * A caller allocates one CctContext, fills its inputs, calls CCTAPI with
 * request 1 (initialise gains) and then with any LUT request; the record
 * carries everything from one call to the next. Calls must not overlap.
 *
 * Valid C (C99 and later) and C++. The record layout is binding: it is laid
 * out with natural alignment for a 64-bit caller and pinned below.
 */
#ifndef QUARNEL_CCTAPI_H
#define QUARNEL_CCTAPI_H

#include <stdint.h>

#if defined(QUARNEL_STATIC)
#define QUARNEL_API
#elif defined(_WIN32)
#if defined(QUARNEL_BUILDING)
#define QUARNEL_API __declspec(dllexport)
#else
#define QUARNEL_API __declspec(dllimport)
#endif
#elif defined(QUARNEL_BUILDING)
#define QUARNEL_API __attribute__((visibility("default")))
#else
#define QUARNEL_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Request codes of CCTAPI (bits 0x80 and 0x40 are flags). */
enum {
    CCTAPI_GET_VERSION = 0,
    CCTAPI_INIT_GAIN = 1,
    CCTAPI_GET_LUT = 2,
    CCTAPI_THEATER_MODE = 3,
    CCTAPI_VIVID_MODE = 4,
    CCTAPI_READING_MODE_STRONG = 5,
    CCTAPI_READING_MODE_WEAK = 6,
    CCTAPI_READING_MODE_MULTI = 7,
    CCTAPI_NATIVE_MODE = 8,
    CCTAPI_SELF_TEST = 9999
};

/* Flags on CCTAPI request codes. */
enum { CCTAPI_FLAG_REGAMMA = 0x80, CCTAPI_FLAG_RECOMPUTE_GAIN = 0x40 };

/* Modes of CCTAPI_VX. */
enum { CCTAPI_VX_VIVID_MODE = 3, CCTAPI_VX_VIVID_MODE_ALT = 26, CCTAPI_VX_MODE_FIRST = 21, CCTAPI_VX_MODE_LAST = 25 };

/* Output formats of the graphics-driver gamma interface (lutApiType). */
enum {
    CCT_LUT_API_PLAIN = 0,
    CCT_LUT_API_SRGB = 1,
    CCT_LUT_API_NVIDIA = 2,
    CCT_LUT_API_QCOM = 3,
    CCT_LUT_API_IGCL = 4,
    CCT_LUT_API_PLAIN_ALT = 5
};

/* Status codes. */
enum {
    CCT_OK = 0,
    CCT_ERR_REQUEST = -1,
    CCT_ERR_ICC_DEFAULTED = -2,
    CCT_ERR_FILE_NOT_OPENED = -3,
    CCT_ERR_FILE_INVALID = -4,
    CCT_ERR_PANEL_INDEX = -5,
    CCT_ERR_LUT_API_TYPE = -6,
    CCT_ERR_NULL_LUT = -7
};

/* Interface version stored by request 0: major 8, minor 11, build 0. */
#define CCTAPI_INTERFACE_VERSION 0x00080B00u

typedef struct CctContext {
    uint32_t version;
    int32_t cctWarning;
    double interval;
    double icc[4][3];
    double bios[4][3];
    int32_t fromBios;
    uint16_t oriLut[3][256];
    uint16_t outLut[3][256];
    double outIgcl[3][256];
    double gainWarm[3];
    double gainCold[3];
    double gainNormal[3];
    double gainReadStrong[3];
    double gainReadWeak[3];
    double rdLevels;
    double rdIndex;
    int32_t gammaK;
    uint16_t gammaLut[3][256];
    int32_t biosVer;
    int32_t iccType;
    int32_t enableUserK;
    const char* kalzenPath;
    const char* kalzenFilename;
    int32_t panelIndex;
    int32_t lutApiType;
    double lutDcModeScale;
    float outNvPreGamma[1024][3];
    float outNvPostGamma[1024][3];
} CctContext;

QUARNEL_API int32_t CCTAPI(uint32_t code, CctContext* ctx);
QUARNEL_API int32_t CCTAPI_VX(int32_t mode, CctContext* ctx, const uint16_t* vxInput);

QUARNEL_API int32_t LUT2BIOS(const uint16_t* lut, uint32_t maxSize, uint8_t* out, int32_t outCapacity,
                             uint32_t* method);
QUARNEL_API int32_t BIOS2LUT(uint16_t* lut, const uint8_t* string, int32_t count, int32_t method);
QUARNEL_API int32_t GetHfmInfor(uint32_t* symbols, double* probabilities, uint32_t* codeLengths, uint32_t* codes,
                                uint32_t* count);
QUARNEL_API int32_t ShowHfmVer(void);
QUARNEL_API int32_t ShowVersion(void);

QUARNEL_API int32_t OLKReadDataBlock(int32_t* count, uint8_t* buffer, int32_t method);

#ifdef __cplusplus
}
#endif

/* The record is shared with 64-bit callers byte for byte. */
#if defined(__cplusplus)
#define QUARNEL_STATIC_ASSERT static_assert
#else
#define QUARNEL_STATIC_ASSERT _Static_assert
#endif
#include <stddef.h>
#if UINTPTR_MAX == 0xFFFFFFFFFFFFFFFFu
QUARNEL_STATIC_ASSERT(sizeof(CctContext) == 35728, "CctContext size");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, version) == 0, "version");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, cctWarning) == 4, "cctWarning");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, interval) == 8, "interval");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, icc) == 16, "icc");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, bios) == 112, "bios");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, fromBios) == 208, "fromBios");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, oriLut) == 212, "oriLut");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, outLut) == 1748, "outLut");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, outIgcl) == 3288, "outIgcl");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, gainWarm) == 9432, "gainWarm");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, gainCold) == 9456, "gainCold");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, gainNormal) == 9480, "gainNormal");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, gainReadStrong) == 9504, "gainReadStrong");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, gainReadWeak) == 9528, "gainReadWeak");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, rdLevels) == 9552, "rdLevels");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, rdIndex) == 9560, "rdIndex");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, gammaK) == 9568, "gammaK");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, gammaLut) == 9572, "gammaLut");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, biosVer) == 11108, "biosVer");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, iccType) == 11112, "iccType");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, enableUserK) == 11116, "enableUserK");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, kalzenPath) == 11120, "kalzenPath");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, kalzenFilename) == 11128, "kalzenFilename");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, panelIndex) == 11136, "panelIndex");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, lutApiType) == 11140, "lutApiType");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, lutDcModeScale) == 11144, "lutDcModeScale");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, outNvPreGamma) == 11152, "outNvPreGamma");
QUARNEL_STATIC_ASSERT(offsetof(CctContext, outNvPostGamma) == 23440, "outNvPostGamma");
#endif
#undef QUARNEL_STATIC_ASSERT

#endif /* QUARNEL_CCTAPI_H */
