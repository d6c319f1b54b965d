#include <gtest/gtest.h>

#include <memory>

#include "quarnel/cctapi.h"
#include "support/capture.h"

namespace {

std::unique_ptr<CctContext> NewContext() { return std::make_unique<CctContext>(); }

TEST(Dispatcher, RequestZeroStoresVersion) {
    auto ctx = NewContext();
    ctx->cctWarning = 77;
    EXPECT_EQ(CCTAPI(0, ctx.get()), 0);
    EXPECT_EQ(ctx->version, 0x00080B00u);
    EXPECT_EQ(ctx->cctWarning, 77);
}

}  // namespace
