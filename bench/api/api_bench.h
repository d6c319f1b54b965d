// SPDX-License-Identifier: MIT
#pragma once
// Shared pieces of the request benchmarks: a quiet standard output, a record
// to run requests on, and the work every request cannot avoid.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <memory>

#include "platform/trace_file.h"
#include "quarnel/cctapi.h"

namespace quarnel::bench {

// Sends standard output to /dev/null while it lives, so that the requests'
// messages cost what writing them costs and no more.
class QuietStdout {
public:
    QuietStdout() : saved_(dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, STDOUT_FILENO);
        close(null);
    }
    ~QuietStdout() {
        std::fflush(stdout);
        dup2(saved_, STDOUT_FILENO);
        close(saved_);
    }
    QuietStdout(const QuietStdout&) = delete;
    QuietStdout& operator=(const QuietStdout&) = delete;

private:
    int saved_;
};

// A zeroed record with the given lut api type.
inline std::unique_ptr<CctContext> MakeContext(int32_t lutApiType) {
    auto ctx = std::make_unique<CctContext>();
    ctx->lutApiType = lutApiType;
    ctx->lutDcModeScale = 1.0;
    ctx->interval = 1.0;
    return ctx;
}

// The requests are measured with tracing off, as callers run them.
inline bool TraceFileAbsent(benchmark::State& state) {
    std::FILE* probe = platform::OpenTraceFile(platform::TraceFilePath(), "r");
    if (probe == nullptr) return true;
    std::fclose(probe);
    state.SkipWithError("the trace file exists; remove it to measure");
    return false;
}

// What every request must do at least: one look for the trace file.
inline void ProbeTraceFile() {
    std::FILE* probe = platform::OpenTraceFile(platform::TraceFilePath(), "r");
    if (probe != nullptr) std::fclose(probe);
}

// Copies every output array of `from` into `to`, as a request that fills
// them all at memory speed would.
inline void CopyOutputs(const CctContext& from, CctContext& to) {
    std::memcpy(to.outLut, from.outLut, sizeof(from.outLut));
    std::memcpy(to.outIgcl, from.outIgcl, sizeof(from.outIgcl));
    std::memcpy(to.outNvPreGamma, from.outNvPreGamma, sizeof(from.outNvPreGamma));
    std::memcpy(to.outNvPostGamma, from.outNvPostGamma, sizeof(from.outNvPostGamma));
}

}  // namespace quarnel::bench
