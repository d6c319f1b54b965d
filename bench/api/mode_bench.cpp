// SPDX-License-Identifier: MIT
// Request 1 from a creator's calibration file, requests 2 to 7 and every VX
// mode for every lut api type, each against its floor in the same run:
// the floor of request 1 copies the arrays it writes, looks once for the
// trace file, reads the file and prints the request's lines; the floor of a
// LUT request copies the output arrays it writes, looks once for the trace
// file, reads the block for its interpolation step and prints the request's
// lines.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <unistd.h>

#include "api_bench.h"
#include "calib/block_writer.h"
#include "fake_platform.h"
#include "platform/acpi_device.h"

namespace quarnel::bench {
namespace {

using fuzz::NoDisplays;  // no monitors: the benchmarks measure the block, not the machine

// A version-7 panel (factory gamma string, interpolation step 32) in a file.
struct PanelFile {
    PanelFile() {
        test::BlockFields fields;
        fields.byte297 = 32;
        const auto block = test::WriteBlock(fields);
        std::FILE* file = std::fopen(path.c_str(), "wb");
        if (file == nullptr || std::fwrite(block.data(), 1, block.size(), file) != block.size() ||
            std::fclose(file) != 0) {
            std::fprintf(stderr, "cannot write the benchmark panel %s\n", path.c_str());
            std::exit(1);
        }
    }
    ~PanelFile() { std::filesystem::remove(path); }

    // One file per process: two runs at once must not remove each other's panel.
    std::string folder =
        (std::filesystem::temp_directory_path() / ("quarnel-bench-" + std::to_string(getpid()) + "-")).string();
    std::string path = folder + "panel.bin";
    NoDisplays displays;
    platform::ScopedDisplaySystem scope{displays};
};

PanelFile& Panel() {
    static PanelFile panel;
    return panel;
}

void ReadBlock(uint8_t (&block)[512]) {
    std::FILE* file = std::fopen(Panel().path.c_str(), "rb");
    benchmark::DoNotOptimize(std::fread(block, 1, sizeof block, file));
    std::fclose(file);
}

std::unique_ptr<CctContext> InitialisedContext(int32_t lutApiType) {
    auto ctx = MakeContext(lutApiType);
    for (int i = 0; i < 3 * 256; ++i) ctx->oriLut[i / 256][i % 256] = static_cast<uint16_t>(i % 256 * 256);
    ctx->enableUserK = 1;
    ctx->kalzenPath = Panel().folder.c_str();
    ctx->kalzenFilename = "panel.bin";
    ctx->rdLevels = 3;
    ctx->rdIndex = 0.5;
    ctx->interval = 0.75;
    QuietStdout quiet;
    CCTAPI(CCTAPI_INIT_GAIN, ctx.get());
    return ctx;
}

// What one call prints on standard output.
template <typename Call>
std::string PrintedBy(Call call) {
    std::fflush(stdout);
    std::FILE* capture = std::tmpfile();
    const int saved = dup(STDOUT_FILENO);
    dup2(fileno(capture), STDOUT_FILENO);
    call();
    std::fflush(stdout);
    dup2(saved, STDOUT_FILENO);
    close(saved);
    std::string text(static_cast<std::size_t>(std::ftell(capture)), '\0');
    std::rewind(capture);
    text.resize(std::fread(text.data(), 1, text.size(), capture));
    std::fclose(capture);
    return text;
}

// request < 0 is the VX mode -request, with the panel's base LUT as its tone curve.
int32_t Run(int32_t request, CctContext* ctx) {
    return request < 0 ? CCTAPI_VX(-request, ctx, &ctx->oriLut[0][0]) : CCTAPI(static_cast<uint32_t>(request), ctx);
}

void BM_Request1(benchmark::State& state) {
    auto ctx = InitialisedContext(0);
    if (!TraceFileAbsent(state)) return;
    QuietStdout quiet;
    for (auto _ : state) benchmark::DoNotOptimize(CCTAPI(CCTAPI_INIT_GAIN, ctx.get()));
}

// Request 1's lines, formatted from the block and the statuses each time.
void PrintInitLines(const char* path, const uint8_t (&block)[512]) {
    std::printf("CCTLoadBIOS = %s \n", path);
    std::printf("path = %s \n", path);
    std::printf("this->BiosDataStatus  = %d  \n", 0);
    std::printf("ReadResult  = %d \n", 0);
    for (int i = 0; i < 4; ++i) std::printf("[%c]", block[i]);
    std::printf("\n");
    std::printf("Parsing version = %d\n", block[4]);
    std::printf("Use Method = %d   bios size = %d\n", 1, 4);
    std::printf("CCTAPI_ERRORCODE = %d\n", 0);
    const struct {
        const char* name;
        int warnings;
    } gains[] = {{"DEF", 36}, {"Warm", 0}, {"Cold", 0}, {"RdW", 0}, {"RdS", 0}};
    for (const auto& gain : gains) std::printf("; VOK: %s Gain E(%d) W(%d)\n", gain.name, 0, gain.warnings);
    std::printf("CCT_Init  result = %d\n", 0);
}

void BM_Request1Floor(benchmark::State& state) {
    auto ctx = InitialisedContext(0);
    uint8_t block[512];
    ReadBlock(block);
    const char* path = Panel().path.c_str();
    if (PrintedBy([&] { CCTAPI(CCTAPI_INIT_GAIN, ctx.get()); }) != PrintedBy([&] { PrintInitLines(path, block); }))
        return state.SkipWithError("the floor prints other lines than request 1");
    const auto result = std::make_unique<CctContext>(*ctx);
    if (!TraceFileAbsent(state)) return;
    QuietStdout quiet;
    for (auto _ : state) {
        CopyInitOutputs(*result, *ctx);
        ProbeTraceFile();
        ReadBlock(block);
        PrintInitLines(path, block);
        benchmark::ClobberMemory();
    }
}

// Arguments: the request (negative: VX mode) and the lut api type.
void BM_Request(benchmark::State& state) {
    const auto init = InitialisedContext(static_cast<int32_t>(state.range(1)));
    auto ctx = std::make_unique<CctContext>(*init);
    if (!TraceFileAbsent(state)) return;
    QuietStdout quiet;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Run(static_cast<int32_t>(state.range(0)), ctx.get()));
        benchmark::ClobberMemory();
    }
}

// VX modes 21 to 25 tone the LUT with the caller's curve.
bool IsVxCurveMode(int32_t request) { return request <= -21 && request >= -25; }

// A LUT request's lines, formatted from the same values each time: the
// request (negative: VX mode), the lut api type, the block's interpolation
// step and the record's scale.
void PrintLutLines(int32_t request, int32_t type, int step, double scale) {
    constexpr double kMaxGain = 1.0;  // reading multi at these gains
    const bool qcom = type == CCT_LUT_API_QCOM;
    if (request == CCTAPI_READING_MODE_STRONG) std::printf("%s", "Reading mode strong:\n");
    if (request == CCTAPI_READING_MODE_MULTI) std::printf("GetReadingModeMultiLUT  outGain = %f\n", kMaxGain);
    if (request < 0) std::printf("; VOK: GetVxModeLut()\n");
    std::printf("GetBIOS_Data path = %s \n", Panel().path.c_str());
    std::printf("; VOK: Get bios[%d]: %d\n ", static_cast<int>(facts::kStepByte.offset), step);
    if (request == CCTAPI_READING_MODE_MULTI) {
        std::printf("cct->lutDcModeScale = %f\n", scale);
        if (qcom) std::printf("QCOM cct->lutDcModeScale modify as : %f\n", scale);
    }
    std::printf("scale: %f, Scale TH: %f, nIndex: %d\n", scale, qcom ? 0.8 : 0.1, qcom ? 204 : 26);
    if (type == CCT_LUT_API_NVIDIA) std::printf("Run convert power lut with api type: %d\n", 1);
    if (IsVxCurveMode(request)) std::printf("CCTAPI_VX (lut after LutConvert())\n");
}

void BM_RequestFloor(benchmark::State& state) {
    const auto request = static_cast<int32_t>(state.range(0));
    const auto type = static_cast<int32_t>(state.range(1));
    const auto init = InitialisedContext(type);
    auto ctx = std::make_unique<CctContext>(*init);
    const std::string lines = PrintedBy([&] { Run(request, ctx.get()); });
    const auto result = std::make_unique<CctContext>(*ctx);
    const Outputs written = LutRequestOutputs(request < 0, type);
    uint8_t block[512];
    ReadBlock(block);
    if (lines != PrintedBy([&] { PrintLutLines(request, type, block[facts::kStepByte.offset], ctx->lutDcModeScale); }))
        return state.SkipWithError("the floor prints other lines than the request");
    if (!TraceFileAbsent(state)) return;
    QuietStdout quiet;
    for (auto _ : state) {
        CopyOutputs(*result, *ctx, written);
        ProbeTraceFile();
        ReadBlock(block);  // a version-7 panel's LUT takes its interpolation step from the block
        PrintLutLines(request, type, block[facts::kStepByte.offset], ctx->lutDcModeScale);
        benchmark::ClobberMemory();
    }
}

constexpr int64_t kLutRequests[] = {2, 3, 4, 5, 6, 7, -3, -26, -21, -22, -23, -24, -25};

void LutRequests(benchmark::internal::Benchmark* b) {
    b->ArgNames({"request", "type"});
    for (int64_t request : kLutRequests)
        for (int64_t type = 0; type <= 5; ++type) b->Args({request, type});
}

}  // namespace

BENCHMARK(BM_Request1);
BENCHMARK(BM_Request1Floor);
BENCHMARK(BM_Request)->Apply(LutRequests);
BENCHMARK(BM_RequestFloor)->Apply(LutRequests);

}  // namespace quarnel::bench
