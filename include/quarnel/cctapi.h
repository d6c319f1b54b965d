/* SPDX-License-Identifier: MIT */
/*
 * Quarnel display colour-calibration library: the public C interface.
 *
 * A caller allocates one CctContext, fills its inputs (interval, icc,
 * lutApiType, lutDcModeScale, panelIndex, enableUserK with kalzenPath and
 * kalzenFilename, rdLevels, rdIndex), calls CCTAPI with request 1 (read the
 * panel's calibration and compute the gains) and then with any LUT request;
 * the record carries everything from one call to the next and the library
 * keeps no per-display state of its own.
 *
 * Conventions of every export:
 * - Every function runs on the caller's thread and returns a 32-bit signed
 *   status; negative values report failure.
 * - No C++ exception crosses the interface: an internal failure (memory
 *   exhausted, an output stream that fails) is reported as the export's
 *   failure status (-1; -2 for OLKReadDataBlock). Outputs may
 *   then be partly written, except where an export promises otherwise.
 * - Threading: the library keeps unlocked process-wide state (the warning
 *   word, the trace-file handle, the initialisation error code, the firmware
 *   device handle, the Huffman codebook's work area). Calls must not
 *   overlap: a caller with several threads serialises every call into the
 *   library, whichever export and whichever context record it uses.
 * - Messages: "Enter"/"Exit" lines go to the system debugger (elsewhere:
 *   standard error when the environment variable QUARNEL_DEBUG is 1);
 *   formatted messages go to the process's standard output, by design and
 *   with no switch: request 1 then request 2 on a calibration file print
 *   about 17 lines. A caller that needs standard output for itself
 *   redirects it around the calls (or runs them with it sent to a null
 *   device); the record, not the text, carries every result.
 * - Trace log: while the fixed trace file exists (C:\QXTRACE\VOKLOG\CctTrace.txt
 *   on Windows, /var/log/QXTRACE/VOKLOG/CctTrace.txt elsewhere), each CCTAPI
 *   call replaces its content with that call's dumps and each CCTAPI_VX call
 *   appends to it. Whether a call traces is decided once, when it starts.
 *   The library never creates the file.
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

/*
 * Request codes of CCTAPI. The code is a 32-bit unsigned value; bits 0x80 and
 * 0x40 are flags and are removed before the request is looked at, every other
 * bit stays (so 0x102 is not request 2 but an unknown request).
 */
enum {
    CCTAPI_GET_VERSION = 0,         /* store CCTAPI_INTERFACE_VERSION in version */
    CCTAPI_INIT_GAIN = 1,           /* read the calibration data, compute all gains */
    CCTAPI_GET_LUT = 2,             /* slider LUT at interval (warm, normal, cold gains) */
    CCTAPI_THEATER_MODE = 3,        /* theater-mode LUT */
    CCTAPI_VIVID_MODE = 4,          /* vivid curve with the normal gains */
    CCTAPI_READING_MODE_STRONG = 5, /* reading LUT with gainReadStrong */
    CCTAPI_READING_MODE_WEAK = 6,   /* reading LUT with gainReadWeak */
    CCTAPI_READING_MODE_MULTI = 7,  /* reading LUT between weak and strong at rdIndex */
    CCTAPI_NATIVE_MODE = 8,         /* neutral (identity) LUT in the driver's form, no gains */
    CCTAPI_SELF_TEST = 9999         /* interface self-test: icc[0][0] = icc[0][2] + icc[0][1] */
};

/*
 * Flags on CCTAPI request codes.
 * CCTAPI_FLAG_REGAMMA: after a mode has built outLut, map it once more through
 *   the 2.6-over-2.2 curve; on request 1 the current outLut is mapped and the
 *   fixed normal white target is used. Ignored by requests 0, 8 and 9999.
 * CCTAPI_FLAG_RECOMPUTE_GAIN: request 2 only: recompute gainNormal from the
 *   bios table before the slider LUT is built. Ignored by every other request.
 */
enum { CCTAPI_FLAG_REGAMMA = 0x80, CCTAPI_FLAG_RECOMPUTE_GAIN = 0x40 };

/*
 * Modes of CCTAPI_VX (a signed 32-bit value): 3 and 26 use the library's
 * vivid tone curve; 21 to 25 use the caller's tone curve vxInput. Any other
 * mode is unknown.
 */
enum { CCTAPI_VX_VIVID_MODE = 3, CCTAPI_VX_VIVID_MODE_ALT = 26, CCTAPI_VX_MODE_FIRST = 21, CCTAPI_VX_MODE_LAST = 25 };

/*
 * Output formats of the graphics-driver gamma interface (lutApiType), and
 * which fields of the record a LUT request writes for each:
 * 0, 5  plain 16-bit LUT in outLut (identity: entry i = i x 256).
 * 1     16-bit LUT with the sRGB encoding folded in, in outLut (its neutral
 *       table spans 0..65535).
 * 2     NVIDIA pre-gamma and post-gamma floats in outNvPreGamma and
 *       outNvPostGamma; outLut keeps the 16-bit LUT the request built.
 * 3     QCOM: the 16-bit LUT in outLut as it stands, nothing converted.
 * 4     Intel IGCL planar doubles in outIgcl (entry / 65280, so the 8-bit full
 *       scale is 1.0); outLut keeps the 16-bit LUT.
 * Any other value makes the LUT requests return CCT_ERR_LUT_API_TYPE.
 */
enum {
    CCT_LUT_API_PLAIN = 0,
    CCT_LUT_API_SRGB = 1,
    CCT_LUT_API_NVIDIA = 2,
    CCT_LUT_API_QCOM = 3,
    CCT_LUT_API_IGCL = 4,
    CCT_LUT_API_PLAIN_ALT = 5
};

/* Status codes of CCTAPI and CCTAPI_VX. */
enum {
    CCT_OK = 0,
    CCT_ERR_REQUEST = -1,         /* unknown request or VX mode, null context, internal failure */
    CCT_ERR_ICC_DEFAULTED = -2,   /* request 1: icc unusable, replaced by built-in defaults */
    CCT_ERR_FILE_NOT_OPENED = -3, /* request 1: the calibration file could not be opened */
    CCT_ERR_FILE_INVALID = -4,    /* request 1: the calibration file failed its checks */
    CCT_ERR_PANEL_INDEX = -5,     /* request 1: panelIndex is not 0 or 1 */
    CCT_ERR_LUT_API_TYPE = -6,    /* lutApiType outside 0..5 */
    CCT_ERR_NULL_LUT = -7         /* a LUT pointer of the conversion step is null */
};

/* Interface version stored by request 0: major 8, minor 11, build 0. */
#define CCTAPI_INTERFACE_VERSION 0x00080B00u

/*
 * The caller-owned record of every colour request. A Lut16 is three planes
 * (red, green, blue) of 256 unsigned 16-bit entries; entry i of a plane is
 * the output for input level i, and the identity is i x 256 (8-bit full scale
 * 65280). The 1024-entry float arrays interleave red, green, blue per entry;
 * the IGCL doubles are planar. The library reads and writes nothing beyond
 * the last field and frees nothing the record points to.
 *
 * A zeroed record is not a ready one. Two inputs need a value:
 * - icc: the panel's colour space, used by request 1 when no factory data is
 *   found (with factory data it is only checked). A row with X <= 0, Y <= 0
 *   or Z < 0, or Z = 0 in the blue or white row, makes request 1 write its
 *   built-in table (the sRGB primaries adapted to D50, white D65) into icc,
 *   compute the gains from that and return CCT_ERR_ICC_DEFAULTED (-2),
 *   unless the calibration source fails after it (-3, -4). So a zeroed icc
 *   turns a good request 1 into -2; fill it to get 0.
 * - lutDcModeScale: 1 leaves the mode's table as built; a lower value dims
 *   it by resampling the table toward its dark end, the more the lower.
 *   At 0 (a zeroed record) the table comes out black, every entry 0, for
 *   every lutApiType but 3 (only very dim where the mode's green stays at or
 *   below a fifth of full scale past input 102); type 3 dims less and lifts
 *   the result until its dimmest channel's top reaches 55 % of full scale.
 *   Values outside 0..1 act as the nearer end. Request 8 ignores it.
 */
typedef struct CctContext {
    uint32_t version;              /* out (request 0): CCTAPI_INTERFACE_VERSION */
    int32_t cctWarning;            /* out: warning word of the last call (every request but 0) */
    double interval;               /* in: slider, 0.5 warm end, 1.0 normal, 1.5 cold end */
    double icc[4][3];              /* in: rows red, green, blue, white; columns X, Y, Z (see above) */
    double bios[4][3];             /* out (request 1): factory measurement, as icc */
    int32_t fromBios;              /* out (request 1): 1 when factory calibration data was found */
    uint16_t oriLut[3][256];       /* out (request 1): the panel's base Lut16 */
    uint16_t outLut[3][256];       /* out: the result Lut16 of the LUT requests */
    double outIgcl[3][256];        /* out: IGCL doubles (lut api type 4) */
    double gainWarm[3];            /* out (request 1): red, green, blue gains of the warm end */
    double gainCold[3];            /* out (request 1): gains of the cold end */
    double gainNormal[3];          /* out (request 1; request 2 with 0x40): gains of the slider centre */
    double gainReadStrong[3];      /* out (request 1): gains of the strong reading mode */
    double gainReadWeak[3];        /* out (request 1): gains of the weak reading mode */
    double rdLevels;               /* in: number of reading-mode levels */
    double rdIndex;                /* in/out: request 7's blend position itself: 0 weak, 0.5 halfway, 1 and above
                                      strong (reset to 0 outside 0..rdLevels - 1) */
    int32_t gammaK;                /* out (request 1): nonzero selects gammaLut as base LUT */
    uint16_t gammaLut[3][256];     /* out (request 1): factory gamma-corrected base Lut16 */
    int32_t biosVer;               /* out (request 1): calibration data version, -1 when none */
    int32_t iccType;               /* out: set to 1 by requests 1 to 7 */
    int32_t enableUserK;           /* in: 1 = read the calibration file named below */
    const char* kalzenPath;        /* in: folder of that file, NUL-terminated, caller-owned */
    const char* kalzenFilename;    /* in: its name, appended to kalzenPath as it stands */
    int32_t panelIndex;            /* in: which panel's calibration record, 0 or 1 */
    int32_t lutApiType;            /* in: driver output format, 0..5 (CCT_LUT_API_*) */
    double lutDcModeScale;         /* in: brightness of requests 2 to 7 and CCTAPI_VX, 0..1 (see above) */
    float outNvPreGamma[1024][3];  /* out: NVIDIA pre-gamma floats */
    float outNvPostGamma[1024][3]; /* out: NVIDIA post-gamma floats, directly behind the above */
} CctContext;

/*
 * CCTAPI: runs one colour request on ctx.
 * ctx: the caller's record; null returns CCT_ERR_REQUEST and touches nothing.
 * code: a request code (CCTAPI_*) ORed with any flags (CCTAPI_FLAG_*).
 * Every call with a record first fills outNvPreGamma and outNvPostGamma with
 * the identity ramp (entry j = j / 1023 in all three channels) and clears the
 * warning word; every request except 0 then copies the warning word (always
 * 0) into cctWarning at its end.
 * Returns:
 * - request 0: 0; writes version and nothing else besides the float ramps.
 * - request 1: the result of the initialisation: 0, CCT_ERR_ICC_DEFAULTED
 *   (icc rewritten with the defaults, gains computed from them),
 *   CCT_ERR_FILE_NOT_OPENED or CCT_ERR_FILE_INVALID (gains computed without
 *   factory data), or CCT_ERR_PANEL_INDEX (returned before any calibration
 *   data is read; no gains written). The calibration file applies only with
 *   enableUserK = 1 (kalzenPath and kalzenFilename must then point to
 *   strings); otherwise the data comes from the firmware.
 * - requests 2 to 7: the result of the final conversion to the driver's form:
 *   0, CCT_ERR_LUT_API_TYPE; on failure outLut holds the LUT the request
 *   built and the driver arrays keep their values from the start of the call.
 *   They use the gains and base LUTs that request 1 stored in the record.
 * - request 8: 0, or CCT_ERR_LUT_API_TYPE with outLut and outIgcl untouched.
 * - request 9999: 0; only icc[0][0] changes.
 * - any other request: CCT_ERR_REQUEST.
 * - an internal failure: CCT_ERR_REQUEST, the record possibly partly written.
 */
QUARNEL_API int32_t CCTAPI(uint32_t code, CctContext* ctx);

/*
 * CCTAPI_VX: builds the VX-mode LUT from the gains that request 1 stored in
 * ctx, then applies brightness and the driver conversion as the LUT requests
 * of CCTAPI do. Unlike CCTAPI it does not refill the float arrays, does not
 * touch cctWarning or iccType, and appends to the trace log.
 * mode: CCTAPI_VX_VIVID_MODE or 26 (library's vivid curve), or 21 to 25.
 * ctx: the caller's record; null returns CCT_ERR_REQUEST and touches nothing.
 * vxInput: a caller-owned Lut16 (3 x 256 entries, planar), the tone curve of
 *   modes 21 to 25, where it must not be null; other modes only trace it and
 *   accept null.
 * Returns 0, CCT_ERR_LUT_API_TYPE (outLut holds the VX LUT before
 * conversion, the driver arrays untouched), CCT_ERR_REQUEST
 * for an unknown mode (record untouched), or CCT_ERR_REQUEST for an internal
 * failure (the record possibly partly written).
 */
QUARNEL_API int32_t CCTAPI_VX(int32_t mode, CctContext* ctx, const uint16_t* vxInput);

/*
 * LUT2BIOS: packs a Lut16 into a firmware string; whichever of the two string
 * methods (0: Huffman-coded differences, 1: position lists) is shorter.
 * Reduced to 8 bits (entry / 256), every plane must start at 0; a table
 * reads back through BIOS2LUT only when every plane also rises by 0 to 7 per
 * level and ends at 255.
 * lut: 3 x 256 entries (a Lut16), read only.
 * maxSize: the longest string the caller's field takes.
 * out: outCapacity bytes; receives the string (its first byte is its length).
 * method: receives the method of the chosen string.
 * Returns 0 (string written), the chosen string's length when it exceeds
 * maxSize (out untouched, *method set), or -1: any pointer null (nothing
 * written), the LUT cannot be stored, the string exceeds outCapacity, or an
 * internal failure. On -1 out is untouched and *method may have been written.
 */
QUARNEL_API int32_t LUT2BIOS(const uint16_t* lut, uint32_t maxSize, uint8_t* out, int32_t outCapacity,
                             uint32_t* method);

/*
 * BIOS2LUT: unpacks a firmware string written by LUT2BIOS.
 * lut: 3 x 256 entries; receives the Lut16 on success only.
 * string: the string; it must hold as many bytes as its first byte says.
 * count: must be 768 (3 x 256).
 * method: 0 or 1, as LUT2BIOS reported.
 * Returns 0, or -1 (null pointer, bad method, count or string, a plane that
 * does not end at 65280, internal failure) with lut untouched.
 */
QUARNEL_API int32_t BIOS2LUT(uint16_t* lut, const uint8_t* string, int32_t count, int32_t method);

/*
 * GetHfmInfor: reports the fixed Huffman code of the string method 0.
 * symbols, probabilities, codeLengths, codes: 5 entries each; entry i
 * receives symbol i (0..4), its probability, the length of its code and the
 * code's value read first bit most significant.
 * count: receives 5.
 * Prints the code's construction on standard output.
 * Returns 0; -1 when a pointer is null (nothing written) or on an internal
 * failure (the arrays possibly partly written, count untouched).
 */
QUARNEL_API int32_t GetHfmInfor(uint32_t* symbols, double* probabilities, uint32_t* codeLengths, uint32_t* codes,
                                uint32_t* count);

/* ShowHfmVer: prints the Huffman kernel's version line on standard output;
 * returns the number of characters printed, or a negative value on failure. */
QUARNEL_API int32_t ShowHfmVer(void);

/* ShowVersion: prints the library's version line on standard output;
 * returns the number of characters printed, or a negative value on failure. */
QUARNEL_API int32_t ShowVersion(void);

/*
 * OLKReadDataBlock: fetches the panel's 512-byte factory calibration block
 * from the firmware's ACPI control device. Exported on Windows under its
 * C++-decorated name as well.
 * count: receives the firmware's result word (a nonzero value; one read as
 *   unsigned above 0x7FFFFFFF arrives negative). May be null.
 * buffer: at least 512 bytes; receives the block. May be null.
 * method: 0 to 5 select the firmware method and its arguments; any other
 *   value sends the default method without arguments.
 * Returns 0; -1 when the device cannot be opened (always so on systems
 * without it); -2 when the device request fails or on an internal failure;
 * -3 when the firmware returns no result. count and buffer are written on
 * success only.
 */
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
