// SPDX-License-Identifier: MIT
#include "diag/trace.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "platform/trace_file.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"
#include "support/temp_dir.h"

namespace quarnel {
namespace {

void DumpLine(const char* text) {
    const TraceTarget trace;
    if (trace.file() != nullptr) std::fprintf(trace.file(), "%s\n", text);
}

// A file created or deleted during a call takes effect from the next call.
TEST(Trace, EachCallLooksForTheFileOnceAtItsStart) {
    test::TempDir dir;
    const auto path = dir / "CctTrace.txt";
    platform::ScopedTraceFilePath scope{path.string()};
    TraceReset();
    test::WriteFile(path, "");
    DumpLine("created during the call");
    TraceClose();
    EXPECT_EQ(test::ReadFile(path), "");
    test::WriteFile(path, "kept\n");
    TraceBeginVx();
    DumpLine("appended");
    TraceEndVx();
    DumpLine("outside any call");
    EXPECT_EQ(test::ReadFile(path), "kept\nappended\noutside any call\n");
}

TEST(ShowVersion, PrintsTheLibraryVersion) {
    int32_t result = 0;
    const std::string printed = test::CaptureStdout([&] { result = ShowVersion(); });
    EXPECT_EQ(printed, "; VOK: Quarnel.dll Version: v1.0.0.2_20210802\n");
    EXPECT_EQ(result, static_cast<int32_t>(printed.size()));
}

}  // namespace
}  // namespace quarnel
