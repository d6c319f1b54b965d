// SPDX-License-Identifier: MIT
// The LUT loops built for 32-byte vectors give what the baseline gives, bit
// for bit, on random tables of every shape: each step run once on a
// processor that offers the wide form and once on one that withholds it.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "color/apply_gains.h"
#include "core/constants.h"
#include "core/lut16.h"
#include "lut/convert.h"
#include "lut/improve.h"
#include "lut/sample_luts.h"
#include "platform/processor.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"

namespace quarnel {
namespace {

class FixedProcessor final : public platform::Processor {
public:
    explicit FixedProcessor(bool wide) : wide_(wide) {}
    bool HasWideVectors() const override { return wide_; }

private:
    bool wide_;
};

// What `step` writes, as bytes, on a processor with or without the wide form.
template <typename Step>
std::vector<unsigned char> RunOn(bool wide, Step step) {
    const FixedProcessor processor(wide);
    platform::ScopedProcessor scope(processor);
    return step();
}

// The arrays' bytes, one after another.
template <typename... Arrays>
std::vector<unsigned char> Bytes(const Arrays&... arrays) {
    std::vector<unsigned char> bytes;
    (bytes.insert(bytes.end(), reinterpret_cast<const unsigned char*>(arrays.data()),
                  reinterpret_cast<const unsigned char*>(arrays.data() + arrays.size())),
     ...);
    return bytes;
}

TEST(WideForms, EveryStepGivesTheBaselineBitForBit) {
    std::mt19937 rng(20261124);
    std::uniform_real_distribution<double> gain(-0.2, 1.3);
    std::uniform_int_distribution<int> step(0, 70);
    test::CaptureStdout([&] {
        for (int round = 0; round < 300; ++round) {
            const Lut16 in = test::RandomTable(rng);
            for (int32_t type : {CCT_LUT_API_SRGB, CCT_LUT_API_NVIDIA, CCT_LUT_API_IGCL}) {
                const auto convert = [&] {
                    Lut16 out{};
                    std::vector<double> igcl(kLutEntries);
                    std::vector<float> nv(2 * kNvFloatsPerArray);
                    LutConvert(type, in.data(), out.data(), kLutLevels, igcl.data(), kLutLevels, nv.data(), kNvPoints);
                    return Bytes(out, igcl, nv);
                };
                ASSERT_EQ(RunOn(true, convert), RunOn(false, convert))
                    << "lut api type " << type << ", round " << round;
            }
            const int s = step(rng);
            const auto interpolate = [&] {
                Lut16 lut = in;
                LutLinInterp8Bit(s, lut.data());
                return Bytes(lut);
            };
            ASSERT_EQ(RunOn(true, interpolate), RunOn(false, interpolate)) << "step " << s << ", round " << round;
            const double gains[3] = {gain(rng), gain(rng), round % 2 == 0 ? 1.0 : gain(rng)};
            const auto apply = [&] {
                Lut16 out{};
                ApplyGainsToLut(in.data(), gains, out.data());
                return Bytes(out);
            };
            ASSERT_EQ(RunOn(true, apply), RunOn(false, apply))
                << "gains " << gains[0] << ", " << gains[1] << ", round " << round;
        }
    });
}

}  // namespace
}  // namespace quarnel
