/* SPDX-License-Identifier: MIT */
/* Loads quarnel.dll the way the display-colour utility does: LoadLibraryW, then GetProcAddress by the exported
 * names, the decorated firmware reader included. Then the calls the utility makes: version, initialisation from a
 * creator's calibration file, the slider at three positions, vivid and the VX vivid mode. The expected entries are
 * those the native build produces for the same block. */
#include <windows.h>

#include <stdio.h>
#include <string.h>

#include "quarnel/cctapi.h"

typedef int32_t (*CctapiFn)(uint32_t, CctContext*);
typedef int32_t (*CctapiVxFn)(int32_t, CctContext*, const uint16_t*);
typedef int32_t (*ReadBlockFn)(int32_t*, uint8_t*, int32_t);

static int failures;
#define CHECK(cond) Check((cond), __LINE__, #cond)
static void Check(int ok, int line, const char* what) {
    if (!ok) printf("loader.c:%d: failed: %s\n", line, what), ++failures;
}

static uint16_t Crc16(const uint8_t* bytes, int count) {
    uint16_t crc = 0xFFFF;
    for (int i = 0; i < count; ++i) {
        crc ^= (uint16_t)(bytes[i] << 8);
        for (int bit = 0; bit < 8; ++bit) crc = (uint16_t)((crc & 0x8000) ? (crc << 1) ^ 0x1021 : crc << 1);
    }
    return crc;
}

/* A version-4 block of an sRGB-like panel: primaries from chromaticity and luminance, white their sum. */
static int WriteBlock(const char* path) {
    static const double rgb[3][3] = {{0.640, 0.330, 63.5}, {0.300, 0.600, 214.0}, {0.150, 0.060, 21.6}};
    uint8_t block[512] = {'H', 'D', 'O', 'C', 4};
    float m[12] = {0};
    for (int r = 0; r < 3; ++r) {
        const double x = rgb[r][0], y = rgb[r][1], Y = rgb[r][2];
        const double xyz[3] = {x / y * Y, Y, (1 - x - y) / y * Y};
        for (int c = 0; c < 3; ++c) m[9 + c] += m[r * 3 + c] = (float)xyz[c];
    }
    const float whites[5] = {0.3127f, 0.329f, 0.9f * m[10], 0.3100f, 0.3230f};
    memcpy(block + 12, m, sizeof m);
    const uint16_t crc = Crc16(block + 12, 48);
    block[6] = (uint8_t)(crc & 0xFF), block[7] = (uint8_t)(crc >> 8);
    memcpy(block + 71, whites, sizeof whites);
    FILE* file = fopen(path, "wb");
    if (file == NULL) return 0;
    const size_t written = fwrite(block, 1, sizeof block, file);
    return fclose(file) == 0 && written == sizeof block;
}

static void CheckEntries(const CctContext* ctx, const uint16_t expected[3]) {
    CHECK(ctx->outLut[0][0] == 0 && ctx->outLut[1][0] == 0 && ctx->outLut[2][0] == 0);
    CHECK(ctx->outLut[0][255] == expected[0]);
    CHECK(ctx->outLut[1][128] == expected[1]);
    CHECK(ctx->outLut[2][64] == expected[2]);
}

static CctContext ctx;

int main(void) {
    HMODULE dll = LoadLibraryW(L"quarnel.dll");
    CHECK(dll != NULL);
    if (dll == NULL) return 1;
    const CctapiFn cctapi = (CctapiFn)(void (*)(void))GetProcAddress(dll, "CCTAPI");
    const CctapiVxFn cctapiVx = (CctapiVxFn)(void (*)(void))GetProcAddress(dll, "CCTAPI_VX");
    const ReadBlockFn readBlock = (ReadBlockFn)(void (*)(void))GetProcAddress(dll, "?OLKReadDataBlock@@YAHPEAHPEAEH@Z");
    CHECK(cctapi != NULL && cctapiVx != NULL && readBlock != NULL);
    CHECK((void (*)(void))readBlock == (void (*)(void))GetProcAddress(dll, "OLKReadDataBlock"));
    if (cctapi == NULL || cctapiVx == NULL || readBlock == NULL) return 1;

    int32_t count = 77;
    uint8_t firmware[512];
    CHECK(readBlock(&count, firmware, 0) == CCT_ERR_REQUEST && count == 77); /* no ACPI device here */

    char folder[MAX_PATH], path[MAX_PATH + 32];
    CHECK(GetTempPathA(MAX_PATH, folder) > 0);
    snprintf(path, sizeof path, "%squarnel-loader.bin", folder);
    CHECK(WriteBlock(path));
    static const double icc[4][3] = {
        {0.4360, 0.2225, 0.0139}, {0.3851, 0.7169, 0.0971}, {0.1431, 0.0606, 0.7141}, {0.9642, 1.0, 0.8249}};
    memcpy(ctx.icc, icc, sizeof icc);
    for (int i = 0; i < 3 * 256; ++i)
        ctx.oriLut[i / 256][i % 256] = ctx.outLut[i / 256][i % 256] = (uint16_t)(i % 256 * 256);
    ctx.interval = 1.0, ctx.lutDcModeScale = 1.0, ctx.rdLevels = 3, ctx.rdIndex = 0.5;
    ctx.enableUserK = 1, ctx.kalzenPath = folder, ctx.kalzenFilename = "quarnel-loader.bin";

    CHECK(cctapi(CCTAPI_GET_VERSION, &ctx) == CCT_OK && ctx.version == CCTAPI_INTERFACE_VERSION);
    CHECK(cctapi(CCTAPI_INIT_GAIN, &ctx) == CCT_OK && ctx.fromBios == 1 && ctx.biosVer == 4);
    static const struct {
        double interval;
        uint16_t entries[3];
    } slider[] = {{1.0, {64000, 32000, 16384}}, {0.75, {64768, 32000, 15616}}, {1.4, {59136, 31232, 16384}}};
    for (int i = 0; i < 3; ++i) {
        ctx.interval = slider[i].interval;
        CHECK(cctapi(CCTAPI_GET_LUT, &ctx) == CCT_OK);
        CheckEntries(&ctx, slider[i].entries);
    }
    ctx.interval = 1.0;
    static const uint16_t vivid[3] = {64000, 35072, 16896};
    CHECK(cctapi(CCTAPI_VIVID_MODE, &ctx) == CCT_OK);
    CheckEntries(&ctx, vivid);
    CHECK(cctapiVx(CCTAPI_VX_VIVID_MODE, &ctx, NULL) == CCT_OK);
    CheckEntries(&ctx, vivid); /* the same curve and gains */

    remove(path);
    FreeLibrary(dll);
    printf("%d failed checks\n", failures);
    return failures != 0;
}
