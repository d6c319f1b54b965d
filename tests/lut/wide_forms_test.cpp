// SPDX-License-Identifier: MIT
// The LUT loops built for 32-byte (and, for the NVIDIA conversion, 64-byte)
// vectors give what the baseline gives, bit for bit, on random tables of
// every shape: each step run on a processor that offers each form this
// machine runs, and on one that withholds them all.
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

enum class Form { kBaseline, kWide, kWider };

class FixedProcessor final : public platform::Processor {
public:
    explicit FixedProcessor(Form form) : form_(form) {}
    bool HasWideVectors() const override { return form_ != Form::kBaseline; }
    bool HasWiderVectors() const override { return form_ == Form::kWider; }

private:
    Form form_;
};

// The forms beyond the baseline that this machine runs.
std::vector<Form> MachineForms() {
    std::vector<Form> forms;
    if (platform::ActiveProcessor().HasWideVectors()) forms.push_back(Form::kWide);
    if (platform::ActiveProcessor().HasWiderVectors()) forms.push_back(Form::kWider);
    return forms;
}

// What `step` writes, as bytes, on a processor that runs `form` at most.
template <typename Step>
std::vector<unsigned char> RunOn(Form form, Step step) {
    const FixedProcessor processor(form);
    platform::ScopedProcessor scope(processor);
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

// Whether `run` writes the same bytes in every form this machine runs as in
// the baseline.
template <typename Run>
bool SameInEveryForm(const std::vector<Form>& forms, Run run, const std::string& what) {
    const std::vector<unsigned char> baseline = RunOn(Form::kBaseline, run);
    for (Form form : forms) EXPECT_EQ(RunOn(form, run), baseline) << what << ", form " << static_cast<int>(form);
    return !::testing::Test::HasFailure();
}

TEST(WideForms, EveryStepGivesTheBaselineBitForBit) {
    std::mt19937 rng(20261124);
    std::uniform_real_distribution<double> gain(-0.2, 1.3);
    std::uniform_int_distribution<int> step(0, 70);
    const std::vector<Form> forms = MachineForms();
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
                if (!SameInEveryForm(forms, convert, "lut api type " + std::to_string(type) + at)) return;
            }
            const int s = step(rng);
            const auto interpolate = [&] {
                Lut16 lut = in;
                LutLinInterp8Bit(s, lut.data());
                return Bytes(lut);
            };
            if (!SameInEveryForm(forms, interpolate, "step " + std::to_string(s) + at)) return;
            const double gains[3] = {gain(rng), gain(rng), round % 2 == 0 ? 1.0 : gain(rng)};
            const auto apply = [&] {
                Lut16 out{};
                ApplyGainsToLut(in.data(), gains, out.data());
                return Bytes(out);
            };
            if (!SameInEveryForm(forms, apply, "gains" + at)) return;
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
            if (!SameInEveryForm(forms, compose, "compose kind " + std::to_string(kind) + at)) return;
        }
    });
}

}  // namespace
}  // namespace quarnel
