// SPDX-License-Identifier: MIT
// Requests 0 and 8 of CCTAPI, each against its floor: copying the output
// arrays the request writes and one failed look for the trace file, and for
// request 8 (for every lut api type) its one line on standard output.

#include <cstdio>

#include "api_bench.h"

namespace quarnel::bench {
namespace {

void BM_Request0(benchmark::State& state) {
    auto ctx = MakeContext(0);
    if (!TraceFileAbsent(state)) return;
    QuietStdout quiet;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CCTAPI(CCTAPI_GET_VERSION, ctx.get()));
        benchmark::ClobberMemory();
    }
}

// Request 0 answers after the float ramps and the look for the trace file.
void BM_Request0Floor(benchmark::State& state) {
    const auto source = MakeContext(0);
    auto ctx = MakeContext(0);
    CCTAPI(CCTAPI_GET_VERSION, source.get());
    if (!TraceFileAbsent(state)) return;
    for (auto _ : state) {
        CopyOutputs(*source, *ctx, Outputs{false, false, true});
        ProbeTraceFile();
        benchmark::ClobberMemory();
    }
}

void BM_Request8(benchmark::State& state) {
    auto ctx = MakeContext(static_cast<int32_t>(state.range(0)));
    if (!TraceFileAbsent(state)) return;
    QuietStdout quiet;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CCTAPI(CCTAPI_NATIVE_MODE, ctx.get()));
        benchmark::ClobberMemory();
    }
}

void BM_Request8Floor(benchmark::State& state) {
    const auto type = static_cast<int32_t>(state.range(0));
    const auto source = MakeContext(type);
    auto ctx = MakeContext(type);
    {
        QuietStdout quiet;
        CCTAPI(CCTAPI_NATIVE_MODE, source.get());
    }
    const Outputs written = NativeModeOutputs(type);
    if (!TraceFileAbsent(state)) return;
    QuietStdout quiet;
    for (auto _ : state) {
        CopyOutputs(*source, *ctx, written);
        ProbeTraceFile();
        std::printf("GetDefaultLut  result = %d\n", 0);
        benchmark::ClobberMemory();
    }
}

}  // namespace

BENCHMARK(BM_Request0);
BENCHMARK(BM_Request0Floor);
BENCHMARK(BM_Request8)->DenseRange(0, 5);
BENCHMARK(BM_Request8Floor)->DenseRange(0, 5);

}  // namespace quarnel::bench
