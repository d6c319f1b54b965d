// SPDX-License-Identifier: MIT
// Every test program starts here: the trace log is pointed at a path that
// does not exist, so no test writes the machine's real trace file by accident.

#include <gtest/gtest.h>

#include "platform/trace_file.h"
#include "support/temp_dir.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    quarnel::test::TempDir scratch;
    quarnel::platform::ScopedTraceFilePath noTrace((scratch / "no-trace.txt").string());
    return RUN_ALL_TESTS();
}
