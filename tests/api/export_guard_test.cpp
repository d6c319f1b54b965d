// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <vector>

#include "core/lut16.h"
#include "platform/debug_channel.h"
#include "platform/standard_output.h"
#include "quarnel/cctapi.h"

namespace quarnel {
namespace {

// Both message channels fail, as a full disk or an exhausted heap would
// make them; standard output alone when `debugger` is false.
class FailingChannels final : public platform::DebugChannel, public platform::StandardOutput {
public:
    explicit FailingChannels(bool debugger) : debugger_(debugger), debug_(*this), output_(*this) {}
    void Write(const wchar_t*) override {
        if (debugger_) throw std::runtime_error("debugger channel failed");
    }
    int Print(const char*, std::va_list) override { throw std::bad_alloc(); }

private:
    bool debugger_;
    platform::ScopedDebugChannel debug_;
    platform::ScopedStandardOutput output_;
};

TEST(Exports, AnExceptionInsideBecomesTheFailureStatus) {
    auto ctx = std::make_unique<CctContext>();
    Lut16 lut{};
    FillIdentity(lut.data());
    std::vector<uint8_t> bytes(512, 0);
    const uint8_t huffman[] = {4, 0x17, 0x4B, 0x40};
    uint32_t u[5] = {};
    double p[5] = {};
    int32_t count = 7;
    const struct {
        bool debugger;
        int32_t failure;
        std::function<int32_t()> call;
    } cases[] = {
        {true, -1, [&] { return CCTAPI(CCTAPI_NATIVE_MODE, ctx.get()); }},
        {false, -1, [&] { return CCTAPI(CCTAPI_NATIVE_MODE, ctx.get()); }},  // after the prologue
        {true, -1, [&] { return CCTAPI_VX(CCTAPI_VX_VIVID_MODE, ctx.get(), nullptr); }},
        {false, -1, [&] { return LUT2BIOS(lut.data(), 255, bytes.data(), 512, &u[0]); }},
        {false, -1, [&] { return BIOS2LUT(lut.data(), huffman, kLutEntries, 0); }},
        {false, -1, [&] { return GetHfmInfor(u, p, u, u, &u[0]); }},
        {false, -1, [] { return ShowHfmVer(); }},
        {false, -1, [] { return ShowVersion(); }},
        {true, -2, [&] { return OLKReadDataBlock(&count, bytes.data(), 0); }},
    };
    for (const auto& tc : cases) {
        FailingChannels failing(tc.debugger);
        EXPECT_EQ(tc.call(), tc.failure);
    }
    EXPECT_EQ(count, 7);
    EXPECT_EQ(lut[LutIndex(2, 255)], 65280);
}

}  // namespace
}  // namespace quarnel
