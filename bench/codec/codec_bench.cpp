// SPDX-License-Identifier: MIT
// Encode and decode of gamma LUTs as firmware strings: the Huffman coding
// alone, and LUT2BIOS / BIOS2LUT end to end (their messages go to /dev/null).

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <vector>

#include "codec/huffman_coding.h"
#include "codec/huffman_string.h"
#include "codec/lut_differences.h"
#include "codec/position_lists.h"
#include "core/lut16.h"
#include "quarnel/cctapi.h"
#include "quiet_stdout.h"

namespace {

using quarnel::Lut16;

using quarnel::bench::QuietStdout;

// A panel-like table: each plane follows level^exponent in whole 8-bit steps.
Lut16 GammaLut(std::array<double, 3> exponents) {
    Lut16 lut{};
    for (int c = 0; c < quarnel::kLutPlanes; ++c)
        for (int i = 0; i < quarnel::kLutLevels; ++i) {
            const double level = std::pow(i / 255.0, exponents[static_cast<std::size_t>(c)]);
            lut[quarnel::LutIndex(c, i)] = static_cast<uint16_t>(std::lround(level * 255.0) * quarnel::kLutStep);
        }
    return lut;
}

const std::array<Lut16, 3> kLuts{GammaLut({1.0, 1.0, 1.0}), GammaLut({1.04, 1.0, 0.97}), GammaLut({1.2, 1.1, 0.9})};

const Lut16& LutArg(const benchmark::State& state) { return kLuts[static_cast<std::size_t>(state.range(0))]; }

quarnel::codec::HuffmanTree QuietTree() {
    QuietStdout quiet;
    return quarnel::codec::BuildTreeV1();
}

void BM_HuffmanEncode(benchmark::State& state) {
    const auto tree = QuietTree();
    const auto d = *quarnel::codec::MakeDifferences(LutArg(state).data());
    for (auto _ : state) {
        quarnel::codec::BitSequence bits;
        benchmark::DoNotOptimize(quarnel::codec::Encode(tree, d.data(), d.size(), bits));
        benchmark::DoNotOptimize(bits.size());
    }
}

void BM_HuffmanDecode(benchmark::State& state) {
    const auto tree = QuietTree();
    const auto d = *quarnel::codec::MakeDifferences(LutArg(state).data());
    quarnel::codec::BitSequence bits;
    quarnel::codec::Encode(tree, d.data(), d.size(), bits);
    for (auto _ : state) {
        std::vector<int> symbols;
        quarnel::codec::Decode(tree, bits, symbols);
        benchmark::DoNotOptimize(symbols.data());
    }
}

void BM_LUT2BIOS(benchmark::State& state) {
    const Lut16& lut = LutArg(state);
    std::vector<uint8_t> out(1024);
    uint32_t method = 0;
    QuietStdout quiet;
    for (auto _ : state) {
        benchmark::DoNotOptimize(LUT2BIOS(lut.data(), 255, out.data(), static_cast<int32_t>(out.size()), &method));
        benchmark::ClobberMemory();
    }
}

template <bool kHuffman>
void BM_BIOS2LUT(benchmark::State& state) {
    std::vector<uint8_t> string;
    {
        QuietStdout quiet;
        const auto d = *quarnel::codec::MakeDifferences(LutArg(state).data());
        string = kHuffman ? *quarnel::codec::EncodeHuffmanString(d) : *quarnel::codec::EncodePositionLists(d);
    }
    Lut16 lut{};
    QuietStdout quiet;
    if (BIOS2LUT(lut.data(), string.data(), quarnel::kLutEntries, kHuffman ? 0 : 1) != 0)
        state.SkipWithError("the string does not read back");
    for (auto _ : state) {
        benchmark::DoNotOptimize(BIOS2LUT(lut.data(), string.data(), quarnel::kLutEntries, kHuffman ? 0 : 1));
        benchmark::ClobberMemory();
    }
    state.counters["bytes"] = static_cast<double>(string.size());
}

}  // namespace

BENCHMARK(BM_HuffmanEncode)->DenseRange(0, 2);
BENCHMARK(BM_HuffmanDecode)->DenseRange(0, 2);
BENCHMARK(BM_LUT2BIOS)->DenseRange(0, 2);
BENCHMARK(BM_BIOS2LUT<true>)->Name("BM_BIOS2LUT/huffman")->DenseRange(0, 2);
BENCHMARK(BM_BIOS2LUT<false>)->Name("BM_BIOS2LUT/lists")->DenseRange(0, 2);
