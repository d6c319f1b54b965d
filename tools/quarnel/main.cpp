// SPDX-License-Identifier: MIT
// quarnel: shows what the library answers for this machine's panel in its
// native mode.

#include <cstdio>
#include <memory>

#include "quarnel/cctapi.h"

int main() {
    auto ctx = std::make_unique<CctContext>();
    CCTAPI(CCTAPI_GET_VERSION, ctx.get());
    std::printf("Quarnel interface version %u.%u.%u\n", (ctx->version >> 16) & 0xFFu, (ctx->version >> 8) & 0xFFu,
                ctx->version & 0xFFu);
    ctx->lutApiType = CCT_LUT_API_PLAIN;
    const int status = CCTAPI(CCTAPI_NATIVE_MODE, ctx.get());
    std::printf("native mode status %d\n", status);
    for (int i = 0; i < 256; i += 51)
        std::printf("[%3d] %5u %5u %5u\n", i, ctx->outLut[0][i], ctx->outLut[1][i], ctx->outLut[2][i]);
    return status == 0 ? 0 : 1;
}
