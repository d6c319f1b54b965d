// SPDX-License-Identifier: MIT
#include "diag/trace.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <sstream>
#include <vector>

#include "platform/trace_file.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"
#include "support/temp_dir.h"

namespace quarnel {
namespace {

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

class TraceTest : public testing::Test {
protected:
    test::TempDir dir;
    std::filesystem::path path = dir / "CctTrace.txt";
    platform::ScopedTraceFilePath scope{path.string()};
    std::unique_ptr<CctContext> ctx = MakeContext();

    static std::unique_ptr<CctContext> MakeContext() {
        auto c = std::make_unique<CctContext>();
        c->cctWarning = -3;
        c->icc[3][1] = 1.0;
        c->bios[0][0] = 0.64;
        c->gainNormal[0] = 0.987654;
        c->gainWarm[2] = 0.5;
        c->interval = 1.25;
        c->biosVer = 7;
        c->rdLevels = 3.0;
        c->lutApiType = 4;
        c->lutDcModeScale = 0.75;
        for (int i = 0; i < 256; ++i) {
            c->oriLut[0][i] = static_cast<uint16_t>(i);
            c->outLut[2][i] = static_cast<uint16_t>(i * 256);
            c->gammaLut[1][i] = static_cast<uint16_t>(i * 3);
            c->outIgcl[0][i] = i / 255.0;
        }
        c->outNvPostGamma[1023][2] = 1.0f;
        return c;
    }
};

TEST_F(TraceTest, LutDumpFormat) {
    test::WriteFile(path, "");
    ctx->outLut[0][7] = 1234;
    DumpLut(ctx.get(), "CCTAPI_GET_LUT (lut after LutImprove())");
    const auto lines = Lines(test::ReadFile(path));
    ASSERT_EQ(lines.size(), 259u);
    EXPECT_EQ(lines[0], "==========================================");
    EXPECT_EQ(lines[1], "CCTAPI_GET_LUT (lut after LutImprove())");
    EXPECT_EQ(lines[2], "[  0]   0   0   0");
    EXPECT_EQ(lines[9], "[  7] 1234   0 1792");
    EXPECT_EQ(lines[257], "[255]   0   0 65280");
    EXPECT_EQ(lines[258], "");
}

TEST_F(TraceTest, ContextDumpFormat) {
    test::WriteFile(path, "earlier\n");
    DumpContext(ctx.get(), "CCTAPI_NATIVE_MODE", nullptr);
    const auto lines = Lines(test::ReadFile(path));
    ASSERT_EQ(lines.size(), 1u + 1 + 1 + 2 + 5 + 5 + 5 + 7 + 3 + 257 + 257 + 257 + 1025 + 1025);
    EXPECT_EQ(lines[0], "earlier");
    EXPECT_EQ(lines[2].rfind("CCTAPI_NATIVE_MODE ", 0), 0u);
    const std::vector<std::string> head = {"Version: 8.B.0 ",
                                           "CCTWarning: -3",
                                           "ICC:",
                                           "0.000 0.000 0.000",
                                           "0.000 0.000 0.000",
                                           "0.000 0.000 0.000",
                                           "0.000 1.000 0.000",
                                           "BIOS:",
                                           "0.640 0.000 0.000",
                                           "0.000 0.000 0.000",
                                           "0.000 0.000 0.000",
                                           "0.000 0.000 0.000",
                                           "Nor: 0.98765 0.00000 0.00000",
                                           "W:   0.00000 0.00000 0.50000",
                                           "C:   0.00000 0.00000 0.00000",
                                           "RdS: 0.00000 0.00000 0.00000",
                                           "RdW: 0.00000 0.00000 0.00000",
                                           "From BIOS: 0",
                                           "BIOS Ver: 7",
                                           "GammaK: 0",
                                           "RDLevels: 3.000000",
                                           "RDIndex: 0.000000",
                                           "ICC Type: 0",
                                           "Enable User K: 0",
                                           "Panel Index: 0",
                                           "Lut Api Type: 4",
                                           "Dc Mode Scale: 0.750000",
                                           "Ori  interval:1.250000 ",
                                           "[  0]   0   0   0",
                                           "[  1]   1   0   0"};
    for (std::size_t k = 0; k < head.size(); ++k) EXPECT_EQ(lines[3 + k], head[k]) << k;
    EXPECT_EQ(lines[287], "Out  interval:1.250000 ");
    EXPECT_EQ(lines[544], "Out Intel IGCL  interval:1.250000 ");
    EXPECT_EQ(lines[545 + 255], "[255] 1.000000 0.000000 0.000000");
    EXPECT_EQ(lines[801], "Out Nvidia PreGamma  interval:1.250000 ");
    EXPECT_EQ(lines[1826], "Out Nvidia PostGamma  interval:1.250000 ");
    EXPECT_EQ(lines[1827 + 1023], "[1023] 0.000000 0.000000 1.000000");
}

TEST_F(TraceTest, ContextDumpOptionalSections) {
    test::WriteFile(path, "");
    ctx->enableUserK = 1;
    ctx->kalzenPath = "C:\\Kalzen\\";
    ctx->kalzenFilename = "panel.bin";
    ctx->gammaK = 1;
    std::vector<uint16_t> vx(768, 0);
    vx[256 + 3] = 99;
    DumpContext(ctx.get(), "; VOK: CCTAPI_VX_MODE_21", vx.data());
    const auto lines = Lines(test::ReadFile(path));
    ASSERT_EQ(lines.size(), 1u + 1 + 2 + 5 + 5 + 5 + 7 + 2 + 3 + 257 + 257 + 257 + 257 + 1025 + 1025 + 257);
    EXPECT_EQ(lines[25], "Enable User K: 1");
    EXPECT_EQ(lines[26], "Kalzen Path: C:\\Kalzen\\");
    EXPECT_EQ(lines[27], "Kalzen Filename: panel.bin");
    EXPECT_EQ(lines[288], "Gamma  ");
    EXPECT_EQ(lines[289 + 2], "[  2]: 0 6 0");
    EXPECT_EQ(lines[lines.size() - 257], "VX_Input  ");
    EXPECT_EQ(lines[lines.size() - 256 + 3], "[  3]   0  99   0");
}

TEST_F(TraceTest, DumpsNeverCreateTheFile) {
    DumpLut(ctx.get(), "x");
    DumpContext(ctx.get(), "x", nullptr);
    TraceReset();
    TraceClose();
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(TraceTest, ResetEmptiesAnExistingFile) {
    test::WriteFile(path, "from the previous call\n");
    TraceReset();
    EXPECT_TRUE(std::filesystem::exists(path));
    DumpLut(ctx.get(), "after reset");
    TraceClose();
    const auto lines = Lines(test::ReadFile(path));
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[1], "after reset");
}

TEST_F(TraceTest, EachCallLooksForTheFileOnceAtItsStart) {
    TraceReset();
    test::WriteFile(path, "");
    DumpLut(ctx.get(), "created during the call");
    TraceClose();
    EXPECT_EQ(test::ReadFile(path), "");
    test::WriteFile(path, "kept\n");
    TraceBeginVx();
    DumpLut(ctx.get(), "appended");
    TraceEndVx();
    const auto lines = Lines(test::ReadFile(path));
    ASSERT_EQ(lines.size(), 260u);
    EXPECT_EQ(lines[0], "kept");
    EXPECT_EQ(lines[2], "appended");
}

TEST(ShowVersion, PrintsTheLibraryVersion) {
    int32_t result = 0;
    const std::string printed = test::CaptureStdout([&] { result = ShowVersion(); });
    EXPECT_EQ(printed, "; VOK: Quarnel.dll Version: v1.0.0.2_20210802\n");
    EXPECT_EQ(result, static_cast<int32_t>(printed.size()));
}

}  // namespace
}  // namespace quarnel
