// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <vector>

#include "platform/trace_file.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"
#include "support/temp_dir.h"

namespace quarnel {
namespace {

// A context whose every byte is set, so that any write shows up.
std::unique_ptr<CctContext> FilledContext() {
    auto ctx = std::make_unique<CctContext>();
    std::memset(static_cast<void*>(ctx.get()), 0x5A, sizeof(CctContext));
    ctx->kalzenPath = nullptr;
    ctx->kalzenFilename = nullptr;
    ctx->lutApiType = 0;
    ctx->enableUserK = 0;
    ctx->gammaK = 0;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 3; ++c) ctx->icc[r][c] = r * 3 + c + 0.5;
    return ctx;
}

// What the prologue always leaves behind: the identity float ramps.
void ExpectPrologueRamps(CctContext& expected) {
    for (int j = 0; j < 1024; ++j)
        for (int c = 0; c < 3; ++c)
            expected.outNvPreGamma[j][c] = expected.outNvPostGamma[j][c] = static_cast<float>(j / 1023.0);
}

bool SameBytes(const CctContext& a, const CctContext& b) { return std::memcmp(&a, &b, sizeof(CctContext)) == 0; }

int32_t Call(uint32_t code, CctContext* ctx) {
    int32_t status = 0;
    test::CaptureStdout([&] { status = CCTAPI(code, ctx); });
    return status;
}

TEST(Dispatcher, VersionSelfTestAndUnknownCodes) {
    const struct {
        std::vector<uint32_t> codes;
        int32_t status;
        void (*change)(CctContext&);
        const wchar_t* said;
    } cases[] = {
        // the version request returns before the epilogue
        {{0, 0x80, 0x40, 0xC0}, 0, [](CctContext& c) { c.version = 0x00080B00; }, L"; VOK: Enter CCTAPI()\n"},
        {{9999}, 0, [](CctContext& c) { c.cctWarning = 0, c.icc[0][0] = 2.5 + 1.5; }, nullptr},
        {{9, 998, 999, 1000, 0x102, 0x1C8, 10000, 0x80000000u, 0xFFFFFFFFu},
         CCT_ERR_REQUEST,
         [](CctContext& c) { c.cctWarning = 0; },
         L"; VOK: Enter CCTAPI()\n; VOK: Exit  CCTAPI()\n"},
    };
    for (const auto& tc : cases)
        for (uint32_t code : tc.codes) {
            auto ctx = FilledContext();
            CctContext expected = *ctx;
            ExpectPrologueRamps(expected);
            tc.change(expected);
            test::DebugCapture debug;
            EXPECT_EQ(Call(code, ctx.get()), tc.status) << code;
            EXPECT_TRUE(SameBytes(*ctx, expected)) << code;
            if (tc.said != nullptr) {
                EXPECT_EQ(debug.joined(), tc.said) << code;
            }
        }
    EXPECT_EQ(CCTAPI(8, nullptr), CCT_ERR_REQUEST);
}

TEST(Dispatcher, TraceFileIsNeverCreatedAndHoldsOnlyTheLastCall) {
    test::TempDir dir;
    const auto path = dir / "CctTrace.txt";
    platform::ScopedTraceFilePath trace(path.string());
    auto ctx = FilledContext();
    Call(8, ctx.get());
    Call(0, ctx.get());
    EXPECT_FALSE(std::filesystem::exists(path));
    test::WriteFile(path, "old content\n");
    Call(8, ctx.get());
    EXPECT_EQ(test::ReadFile(path).rfind("==========================================\nCCTAPI_NATIVE_MODE ", 0), 0u);
    Call(1000, ctx.get());
    EXPECT_EQ(test::ReadFile(path), "");
}

}  // namespace
}  // namespace quarnel
