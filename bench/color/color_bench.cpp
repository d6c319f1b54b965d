// SPDX-License-Identifier: MIT
// Cost of one white-point solve (with and without the luminance search) and
// of one factory gamma table build.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

#include "color/calc_gain.h"
#include "color/factory_gamma.h"

namespace quarnel {
namespace {

void SetRow(GainRequest& r, int row, double x, double y, double Y) {
    r.primaryXyz[row][0] = x / y * Y;
    r.primaryXyz[row][1] = Y;
    r.primaryXyz[row][2] = (1.0 - x - y) / y * Y;
}

GainRequest PanelRequest(uint32_t lumMode) {
    GainRequest r;
    SetRow(r, kRed, 0.64, 0.33, 63.8);
    SetRow(r, kGreen, 0.30, 0.60, 214.6);
    SetRow(r, kBlue, 0.15, 0.06, 21.6);
    for (int c = 0; c < 3; ++c)
        r.primaryXyz[kWhite][c] = r.primaryXyz[kRed][c] + r.primaryXyz[kGreen][c] + r.primaryXyz[kBlue][c];
    r.targetMode = kTargetAbsoluteCct;
    r.targetCct = 11000;
    r.locus = kLocusDaylight;
    r.lumMode = lumMode;
    r.lumPercent = 10.0;
    return r;
}

void BM_CalcGain(benchmark::State& st) {
    const GainRequest base = PanelRequest(static_cast<uint32_t>(st.range(0)));
    for (auto _ : st) {
        GainRequest r = base;
        GainSolverState s;
        s.gamma = kSolverGamma;
        CalcGain(s, &r);
        benchmark::DoNotOptimize(r.gain);
    }
}
BENCHMARK(BM_CalcGain)->Arg(0)->Arg(2);

void BM_BuildFactoryGammaTable(benchmark::State& st) {
    ToneModel m;
    ToneChannel* tones[3] = {&m.toneR, &m.toneG, &m.toneB};
    for (auto* tone : tones)
        for (int j = 0; j < kToneLevelCount; ++j)
            for (int c = 0; c < 3; ++c)
                (*tone)[static_cast<std::size_t>(j * 3 + c)] =
                    (c + 1) * 20.0 * std::pow(kToneLevels[static_cast<std::size_t>(j)] / 255.0, 2.2);
    // The build prints a marker each run: keep it off the report while timing.
    std::fflush(stdout);
    const int saved = dup(STDOUT_FILENO);
    const int sink = open("/dev/null", O_WRONLY);
    dup2(sink, STDOUT_FILENO);
    for (auto _ : st) {
        BuildFactoryGammaTable(m);
        benchmark::DoNotOptimize(m.gammaTable);
    }
    std::fflush(stdout);
    dup2(saved, STDOUT_FILENO);
    close(sink);
    close(saved);
}
BENCHMARK(BM_BuildFactoryGammaTable);

}  // namespace
}  // namespace quarnel
