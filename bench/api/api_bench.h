// SPDX-License-Identifier: MIT
#pragma once
// Shared pieces of the request benchmarks: a quiet standard output, a record
// to run requests on, and the work every request cannot avoid.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <memory>

#include "platform/trace_file.h"
#include "quarnel/cctapi.h"
#include "quiet_stdout.h"

namespace quarnel::bench {

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

// Copies the arrays that request 1 writes: the identity float ramps every
// call starts with, and the factory gamma table.
inline void CopyInitOutputs(const CctContext& from, CctContext& to) {
    std::memcpy(to.outNvPreGamma, from.outNvPreGamma, sizeof(from.outNvPreGamma));
    std::memcpy(to.outNvPostGamma, from.outNvPostGamma, sizeof(from.outNvPostGamma));
    std::memcpy(to.gammaLut, from.gammaLut, sizeof(from.gammaLut));
}

}  // namespace quarnel::bench
