// SPDX-License-Identifier: MIT
// Requests 0 and 8 of CCTAPI for every lut api type, against the floor of
// request 8: copying the record's output arrays, one failed look for the
// trace file and the request's one line on standard output.

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
    const auto source = MakeContext(0);
    auto ctx = MakeContext(0);
    if (!TraceFileAbsent(state)) return;
    QuietStdout quiet;
    for (auto _ : state) {
        CopyOutputs(*source, *ctx);
        ProbeTraceFile();
        std::printf("GetDefaultLut  result = %d\n", 0);
        benchmark::ClobberMemory();
    }
}

}  // namespace

BENCHMARK(BM_Request0);
BENCHMARK(BM_Request8)->DenseRange(0, 5);
BENCHMARK(BM_Request8Floor);

}  // namespace quarnel::bench
