// SPDX-License-Identifier: MIT
// Every form of the LUT loops gives what the baseline gives, bit for bit,
// on random tables of every shape. A form this processor does not run is
// reported as skipped.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "color/apply_gains.h"
#include "core/constants.h"
#include "core/lut16.h"
#include "lut/compose.h"
#include "lut/convert.h"
#include "lut/improve.h"
#include "lut/sample_luts.h"
#include "platform/processor.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"

namespace quarnel {
namespace {

// What `step` writes, as bytes, with the loops in `form`.
template <typename Step>
std::vector<unsigned char> RunIn(VectorForm form, Step step) {
    platform::ScopedVectorForm forced(form);
    return step();
}

// The arrays' bytes, one after another.
template <typename... Arrays>
std::vector<unsigned char> Bytes(const Arrays&... arrays) {
    std::vector<unsigned char> bytes(((sizeof(arrays[0]) * arrays.size()) + ...));
    unsigned char* at = bytes.data();
    ((std::memcpy(at, arrays.data(), sizeof(arrays[0]) * arrays.size()), at += sizeof(arrays[0]) * arrays.size()), ...);
    return bytes;
}

// Whether `run` writes the same bytes in `form` as in the baseline.
template <typename Run>
bool SameAsBaseline(VectorForm form, Run run, const std::string& what) {
    EXPECT_EQ(RunIn(form, run), RunIn(VectorForm::kBaseline, run)) << what;
    return !::testing::Test::HasFailure();
}

class VectorForms : public ::testing::TestWithParam<VectorForm> {};

TEST_P(VectorForms, EveryStepGivesTheBaselineBitForBit) {
    const VectorForm form = GetParam();
    if (!platform::ProcessorRuns(form))
        GTEST_SKIP() << "this processor does not run the " << kVectorFormNames[static_cast<int>(form)] << " form";
    std::mt19937 rng(20261124);
    std::uniform_real_distribution<double> gain(-0.2, 1.3);
    std::uniform_int_distribution<int> step(0, 70);
    test::CaptureStdout([&] {
        for (int round = 0; round < 300; ++round) {
            const std::string at = ", round " + std::to_string(round);
            const Lut16 in = test::RandomTable(rng);
            for (int32_t type : {CCT_LUT_API_SRGB, CCT_LUT_API_NVIDIA, CCT_LUT_API_IGCL}) {
                const auto convert = [&] {
                    Lut16 out{};
                    std::vector<double> igcl(kLutEntries);
                    std::vector<float> nv(2 * kNvFloatsPerArray);
                    LutConvert(type, in.data(), out.data(), kLutLevels, igcl.data(), kLutLevels, nv.data(), kNvPoints);
                    return Bytes(out, igcl, nv);
                };
                if (!SameAsBaseline(form, convert, "lut api type " + std::to_string(type) + at)) return;
            }
            const int s = step(rng);
            const auto interpolate = [&] {
                Lut16 lut = in;
                LutLinInterp8Bit(s, lut.data());
                return Bytes(lut);
            };
            if (!SameAsBaseline(form, interpolate, "step " + std::to_string(s) + at)) return;
            const double gains[3] = {gain(rng), gain(rng), round % 2 == 0 ? 1.0 : gain(rng)};
            const auto apply = [&] {
                Lut16 out{};
                ApplyGainsToLut(in.data(), gains, out.data());
                return Bytes(out);
            };
            if (!SameAsBaseline(form, apply, "gains" + at)) return;
            // A map of plain indices reaches past the top as well.
            Lut16 map = test::RandomTable(rng);
            const auto kind = static_cast<uint32_t>(round % 3);
            if (kind == kComposeDirect)
                for (uint16_t& e : map) e %= 2 * kLutLevels;
            const auto compose = [&] {
                Lut16 out{};
                ComposeLut(kind, map.data(), in.data(), out.data());
                return Bytes(out);
            };
            if (!SameAsBaseline(form, compose, "compose kind " + std::to_string(kind) + at)) return;
        }
    });
}

// Every form beyond the baseline, which the golden files hold, by name.
constexpr const char* kTestNames[kVectorFormCount] = {"Baseline", "Avx2"};
INSTANTIATE_TEST_SUITE_P(BeyondBaseline, VectorForms, ::testing::Values(VectorForm::kAvx2),
                         [](const auto& param) { return std::string(kTestNames[static_cast<int>(param.param)]); });

}  // namespace
}  // namespace quarnel
