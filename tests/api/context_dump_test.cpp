// SPDX-License-Identifier: MIT
#include "api/context_dump.h"

#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <vector>

#include "platform/trace_file.h"
#include "quarnel/cctapi.h"
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

}  // namespace
}  // namespace quarnel
