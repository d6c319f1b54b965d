/* SPDX-License-Identifier: MIT */
/* Asks the installed library for its interface version (request 0) and the
 * native-mode table (request 8), which is the identity ramp i x 256. */
#include <quarnel/cctapi.h>
#include <stdio.h>
#include <stdlib.h>

int main(void) {
    CctContext* ctx = calloc(1, sizeof *ctx);
    if (!ctx) return 1;
    int bad = CCTAPI(CCTAPI_GET_VERSION, ctx) != CCT_OK || ctx->version != CCTAPI_INTERFACE_VERSION;
    ctx->lutApiType = CCT_LUT_API_PLAIN;
    bad |= CCTAPI(CCTAPI_NATIVE_MODE, ctx) != CCT_OK;
    for (int c = 0; c < 3; ++c)
        for (int i = 0; i < 256; ++i) bad |= ctx->outLut[c][i] != i * 256;
    printf("interface %08x, native mode %s\n", (unsigned)ctx->version, bad ? "FAILED" : "ok");
    free(ctx);
    return bad;
}
