// SPDX-License-Identifier: MIT
#include "diag/trace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <regex>
#include <sstream>
#include <vector>

#include "platform/trace_file.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"
#include "support/golden.h"
#include "support/temp_dir.h"

namespace quarnel {
namespace {

// The dumps' title lines end with the time of the call.
std::string WithoutTimes(const std::string& text) {
    static const std::regex time(R"( [A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9:]{8} [0-9]{4}\n)");
    return std::regex_replace(text, time, " <time>\n");
}

TEST(Trace, DumpFormats) {
    test::TempDir dir;
    platform::ScopedTraceFilePath scope{(dir / "CctTrace.txt").string()};
    test::WriteFile(dir / "CctTrace.txt", "earlier\n");
    auto c = std::make_unique<CctContext>();
    c->cctWarning = -3, c->icc[3][1] = 1.0, c->bios[0][0] = 0.64, c->gainNormal[0] = 0.987654, c->gainWarm[2] = 0.5;
    c->interval = 1.25, c->biosVer = 7, c->rdLevels = 3.0, c->lutApiType = 4, c->lutDcModeScale = 0.75;
    for (int i = 0; i < 256; ++i) {
        c->oriLut[0][i] = static_cast<uint16_t>(i);
        c->outLut[2][i] = static_cast<uint16_t>(i * 256);
        c->gammaLut[1][i] = static_cast<uint16_t>(i * 3);
        c->outIgcl[0][i] = i / 255.0;
    }
    c->outLut[0][7] = 1234;
    c->outNvPostGamma[1023][2] = 1.0f;
    DumpLut(c.get(), "CCTAPI_GET_LUT (lut after LutImprove())");
    DumpContext(c.get(), "CCTAPI_NATIVE_MODE", nullptr);
    c->enableUserK = 1, c->kalzenPath = "C:\\Kalzen\\", c->kalzenFilename = "panel.bin", c->gammaK = 1;
    std::vector<uint16_t> vx(768, 0);
    vx[256 + 3] = 99;
    DumpContext(c.get(), "; VOK: CCTAPI_VX_MODE_21", vx.data());
    test::ExpectGolden("trace_dumps.txt", WithoutTimes(test::ReadFile(dir / "CctTrace.txt")));
}

// A file created or deleted during a call takes effect from the next call.
TEST(Trace, EachCallLooksForTheFileOnceAtItsStart) {
    test::TempDir dir;
    const auto path = dir / "CctTrace.txt";
    platform::ScopedTraceFilePath scope{path.string()};
    auto ctx = std::make_unique<CctContext>();
    TraceReset();
    test::WriteFile(path, "");
    DumpLut(ctx.get(), "created during the call");
    TraceClose();
    EXPECT_EQ(test::ReadFile(path), "");
    test::WriteFile(path, "kept\n");
    TraceBeginVx();
    DumpLut(ctx.get(), "appended");
    TraceEndVx();
    const std::string text = test::ReadFile(path);
    EXPECT_EQ(text.substr(0, 5), "kept\n");
    EXPECT_NE(text.find("\nappended\n"), std::string::npos);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 260);
}

TEST(ShowVersion, PrintsTheLibraryVersion) {
    int32_t result = 0;
    const std::string printed = test::CaptureStdout([&] { result = ShowVersion(); });
    EXPECT_EQ(printed, "; VOK: Quarnel.dll Version: v1.0.0.2_20210802\n");
    EXPECT_EQ(result, static_cast<int32_t>(printed.size()));
}

}  // namespace
}  // namespace quarnel
