// SPDX-License-Identifier: MIT
// The LUT steps on their own, so that a request's time over its floor can be
// traced to the step that spends it: the driver conversion for every lut api
// type, the improvement at a version-7 step, the VX modes' tone curve and the
// brightness control.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>

#include "color/apply_gains.h"
#include "core/constants.h"
#include "core/lut16.h"
#include "lut/bright_ctrl.h"
#include "lut/compose.h"
#include "lut/convert.h"
#include "lut/improve.h"
#include "lut/vivid.h"
#include "quiet_stdout.h"

namespace quarnel::bench {
namespace {

// A warm curve: every plane a little below the identity, blue the most.
std::array<uint16_t, kLutEntries> WarmLut() {
    std::array<uint16_t, kLutEntries> lut{};
    for (int c = 0; c < kLutPlanes; ++c)
        for (int i = 0; i < kLutLevels; ++i) lut[LutIndex(c, i)] = static_cast<uint16_t>(i * (256 - 8 * c));
    return lut;
}

struct Outputs {
    std::array<uint16_t, kLutEntries> lut{};
    std::array<double, kLutEntries> igcl{};
    std::array<float, 2 * kNvFloatsPerArray> nv{};
};

// Argument: the lut api type.
void BM_LutConvert(benchmark::State& state) {
    const auto in = WarmLut();
    Outputs out;
    QuietStdout quiet;
    const auto type = static_cast<int32_t>(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(LutConvert(type, in.data(), out.lut.data(), kLutLevels, out.igcl.data(), kLutLevels,
                                            out.nv.data(), kNvPoints));
        benchmark::ClobberMemory();
    }
}

void BM_LutBrightCtrl(benchmark::State& state) {
    const auto in = WarmLut();
    QuietStdout quiet;
    for (auto _ : state) {
        auto lut = in;
        benchmark::DoNotOptimize(LutBrightCtrl(lut.data(), 0, 0.75));
        benchmark::ClobberMemory();
    }
}

int32_t StepOf32(const CalibrationSource& /*source*/, uint8_t& step) {
    step = 32;
    return 0;
}

void BM_LutImprove(benchmark::State& state) {
    const auto in = WarmLut();
    QuietStdout quiet;
    for (auto _ : state) {
        auto lut = in;
        benchmark::DoNotOptimize(LutImprove(7, CalibrationSource{}, lut.data(), StepOf32));
        benchmark::ClobberMemory();
    }
}

void BM_LutLinInterp8Bit(benchmark::State& state) {
    const auto in = WarmLut();
    for (auto _ : state) {
        auto lut = in;
        for (int c = 0; c < kLutPlanes; ++c) LutLinInterp8Bit(32, lut.data() + LutIndex(c, 0));
        benchmark::DoNotOptimize(lut);
        benchmark::ClobberMemory();
    }
}

void BM_ApplyGains(benchmark::State& state) {
    const auto in = WarmLut();
    const double gains[3] = {0.97, 1.0, 0.91};
    std::array<uint16_t, kLutEntries> out{};
    for (auto _ : state) {
        ApplyGainsToLut(in.data(), gains, out.data());
        benchmark::ClobberMemory();
    }
}

// The VX modes' tone step: a table re-indexed through the vivid curve
// (its places fixed), and through a caller's curve (its places worked out
// each time).
void BM_ComposeVivid(benchmark::State& state) {
    const auto in = WarmLut();
    std::array<uint16_t, kLutEntries> out{};
    for (auto _ : state) {
        ComposeAt(VividPlaces(), in.data(), out.data());
        benchmark::ClobberMemory();
    }
}

void BM_ComposeLut(benchmark::State& state) {
    const auto in = WarmLut();
    std::array<uint16_t, kLutEntries> out{};
    for (auto _ : state) {
        benchmark::DoNotOptimize(ComposeLut(kComposeScaled, VividCurve().data(), in.data(), out.data()));
        benchmark::ClobberMemory();
    }
}

}  // namespace

BENCHMARK(BM_LutImprove);
BENCHMARK(BM_ComposeVivid);
BENCHMARK(BM_ComposeLut);
BENCHMARK(BM_ApplyGains);
BENCHMARK(BM_LutLinInterp8Bit);
BENCHMARK(BM_LutConvert)->ArgName("type")->DenseRange(0, 5);
BENCHMARK(BM_LutBrightCtrl);

}  // namespace quarnel::bench
