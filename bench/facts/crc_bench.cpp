// SPDX-License-Identifier: MIT
// Cost of the two CRCs request 1 checks on every calibration block (the 48
// bytes of primaries and the 180 of tone levels), folded eight bytes at a
// time, against the plain loop of one table lookup a byte that it replaced.
// Request 1 takes about 4 us of processor time; the plain loop would add
// close to a tenth to it.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>

#include "facts/block_layout.h"
#include "facts/crc16.h"

namespace quarnel::facts {
namespace {

std::array<uint8_t, kBlockSize> SomeBlock() {
    std::array<uint8_t, kBlockSize> block{};
    for (std::size_t i = 0; i < block.size(); ++i) block[i] = static_cast<uint8_t>(i * 37 + 11);
    return block;
}

void BM_BlockCrcs(benchmark::State& state) {
    const auto block = SomeBlock();
    for (auto _ : state)
        for (const CoveredCrc& crc : {kHeaderCrc, kToneCrc})
            benchmark::DoNotOptimize(Crc16(block.data() + crc.covered.offset, crc.covered.size));
}

void BM_BlockCrcsByteAtATime(benchmark::State& state) {
    const auto block = SomeBlock();
    uint16_t initial = 0;
    const CrcTable table = MakeCrcTable(initial);
    for (auto _ : state)
        for (const CoveredCrc& crc : {kHeaderCrc, kToneCrc}) {
            uint16_t value = initial;
            for (std::size_t i = crc.covered.offset; i < End(crc.covered); ++i)
                value = static_cast<uint16_t>((value << 8) ^ table[((value >> 8) ^ block[i]) & 0xFFu]);
            benchmark::DoNotOptimize(value);
        }
}

BENCHMARK(BM_BlockCrcs);
BENCHMARK(BM_BlockCrcsByteAtATime);

}  // namespace
}  // namespace quarnel::facts
