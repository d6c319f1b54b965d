// SPDX-License-Identifier: MIT
// Blocks per second of `quarnel qa` over a made-up lot, the whole command as
// a user runs it (worker processes, outputs and all), against its floor: the
// library's own requests for the same blocks, in this one process, which
// every check of a block has to pay for at least once.

#include <benchmark/benchmark.h>

#include <unistd.h>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "quarnel/cctapi.h"
#include "quiet_stdout.h"

namespace {

namespace fs = std::filesystem;

constexpr int kLotSize = 2000;

// The lot, made once by the tool, removed at exit.
struct Lot {
    fs::path dir = fs::temp_directory_path() / ("quarnel-qa-bench-" + std::to_string(::getpid()));
    std::vector<std::string> files;
    Lot() {
        const std::string make =
            "'" QUARNEL_TOOL "' block lot --count " + std::to_string(kLotSize) + " --seed 7 -o '" + dir.string() + "'";
        if (std::system(make.c_str()) != 0) std::abort();
        for (const auto& entry : fs::directory_iterator(dir))
            if (entry.path().extension() == ".bin") files.push_back(entry.path().string());
    }
    ~Lot() { fs::remove_all(dir); }
};

const Lot& TheLot() {
    static const Lot lot;
    return lot;
}

void BM_QaWholeCommand(benchmark::State& state) {
    const Lot& lot = TheLot();
    const std::string command = "'" QUARNEL_TOOL "' qa '" + lot.dir.string() +
                                "' --quiet --csv /dev/null --json /dev/null" + " --jobs " +
                                std::to_string(state.range(0)) + " >/dev/null 2>&1";
    for (auto _ : state) benchmark::DoNotOptimize(std::system(command.c_str()));
    state.SetItemsProcessed(state.iterations() * kLotSize);
}

// Request 1 and every mode's request for each block, one context after another.
void BM_LibraryRequestsFloor(benchmark::State& state) {
    const Lot& lot = TheLot();
    auto ctx = std::make_unique<CctContext>();
    quarnel::bench::QuietStdout quiet;
    for (auto _ : state)
        for (const std::string& file : lot.files) {
            *ctx = CctContext{};
            ctx->interval = 1.0;
            ctx->lutDcModeScale = 1.0;
            ctx->rdLevels = 2;
            ctx->enableUserK = 1;
            ctx->kalzenPath = "";
            ctx->kalzenFilename = file.c_str();
            benchmark::DoNotOptimize(CCTAPI(CCTAPI_INIT_GAIN, ctx.get()));
            for (uint32_t request = CCTAPI_GET_LUT; request <= CCTAPI_NATIVE_MODE; ++request)
                benchmark::DoNotOptimize(CCTAPI(request, ctx.get()));
            benchmark::DoNotOptimize(CCTAPI_VX(CCTAPI_VX_VIVID_MODE, ctx.get(), nullptr));
        }
    state.SetItemsProcessed(state.iterations() * kLotSize);
}

}  // namespace

BENCHMARK(BM_QaWholeCommand)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
BENCHMARK(BM_LibraryRequestsFloor)->Unit(benchmark::kMillisecond)->UseRealTime();
