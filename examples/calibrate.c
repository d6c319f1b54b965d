/* SPDX-License-Identifier: MIT */
/* Reads a panel's calibration file, then builds its slider curve at the warm
 * end. Usage: calibrate FOLDER/ FILE (the library joins the two as given). */
#include <quarnel/cctapi.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

int main(int argc, char** argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: %s FOLDER/ FILE\n", argv[0]);
        return 2;
    }
    CctContext* ctx = calloc(1, sizeof *ctx); /* 35 KB: not for the stack */
    if (!ctx) return 1;
    /* The colour space used when the panel has no factory data: sRGB's
     * primaries and white (XYZ). Left zeroed, request 1 returns -2. */
    static const double srgb[4][3] = {
        {0.4124, 0.2126, 0.0193},
        {0.3576, 0.7152, 0.1192},
        {0.1805, 0.0722, 0.9505},
        {0.9505, 1.0, 1.089},
    };
    memcpy(ctx->icc, srgb, sizeof srgb);
    ctx->enableUserK = 1;
    ctx->kalzenPath = argv[1];
    ctx->kalzenFilename = argv[2];
    ctx->panelIndex = 0;
    ctx->lutApiType = CCT_LUT_API_PLAIN;
    ctx->lutDcModeScale = 1.0; /* full brightness; 0 would give a black table */
    ctx->interval = 0.5;       /* the slider's warm end */

    /* Both requests print their progress on standard output; this program
     * reports on standard error, so >/dev/null silences the library alone. */
    int32_t init = CCTAPI(CCTAPI_INIT_GAIN, ctx);
    int32_t lut = CCTAPI(CCTAPI_GET_LUT, ctx);
    fprintf(stderr, "request 1: %d, factory data: %d\n", (int)init, (int)ctx->fromBios);
    fprintf(stderr, "request 2: %d, entry 255:", (int)lut);
    for (int c = 0; c < 3; ++c) fprintf(stderr, " %u", ctx->outLut[c][255]);
    fprintf(stderr, "\n");
    int ok = init == CCT_OK && ctx->fromBios && lut == CCT_OK;
    free(ctx);
    return ok ? 0 : 1;
}
