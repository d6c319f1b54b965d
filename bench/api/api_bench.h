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

// The output arrays a request writes.
struct Outputs {
    bool lut = false;     // outLut
    bool igcl = false;    // outIgcl
    bool floats = false;  // outNvPreGamma and outNvPostGamma
};

// CCTAPI starts every call but request 0's early answer by filling both
// float arrays with the identity ramps, except where the request writes them
// itself (requests 2 to 8 for the NVIDIA driver); CCTAPI_VX leaves them as
// they are unless it converts for the NVIDIA driver. Every LUT request
// builds outLut; the IGCL driver also takes outIgcl.
inline Outputs LutRequestOutputs(bool vx, int32_t type) {
    return {true, type == CCT_LUT_API_IGCL, !vx || type == CCT_LUT_API_NVIDIA};
}

// Request 8 writes the neutral table in the driver's form: the float ramps
// alone for the NVIDIA driver, outLut (and outIgcl for IGCL) for the rest.
inline Outputs NativeModeOutputs(int32_t type) { return {type != CCT_LUT_API_NVIDIA, type == CCT_LUT_API_IGCL, true}; }

// Copies the arrays a request writes from `from` into `to`, as a request
// that filled them at memory speed would.
inline void CopyOutputs(const CctContext& from, CctContext& to, Outputs which) {
    if (which.lut) std::memcpy(to.outLut, from.outLut, sizeof(from.outLut));
    if (which.igcl) std::memcpy(to.outIgcl, from.outIgcl, sizeof(from.outIgcl));
    if (which.floats) {
        std::memcpy(to.outNvPreGamma, from.outNvPreGamma, sizeof(from.outNvPreGamma));
        std::memcpy(to.outNvPostGamma, from.outNvPostGamma, sizeof(from.outNvPostGamma));
    }
}

// Copies the arrays that request 1 writes: the identity float ramps every
// call starts with, and the factory gamma table.
inline void CopyInitOutputs(const CctContext& from, CctContext& to) {
    std::memcpy(to.outNvPreGamma, from.outNvPreGamma, sizeof(from.outNvPreGamma));
    std::memcpy(to.outNvPostGamma, from.outNvPostGamma, sizeof(from.outNvPostGamma));
    std::memcpy(to.gammaLut, from.gammaLut, sizeof(from.gammaLut));
}

}  // namespace quarnel::bench
