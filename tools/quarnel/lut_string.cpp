// SPDX-License-Identifier: MIT
#include "lut_string.h"

#include <cstring>

#include "quarnel/cctapi.h"
#include "quiet_stdout.h"

namespace quarnel::tool {
namespace {

constexpr int32_t kLutEntries = 3 * kCurveSize;
constexpr uint32_t kMaxString = 255;  // one length byte

}  // namespace

std::optional<LutString> EncodeLutString(const Curve& curve, bool verbose) {
    uint16_t planes[3][kCurveSize];
    for (size_t c = 0; c < 3; ++c) std::memcpy(planes[c], curve[c].data(), sizeof planes[c]);
    uint8_t out[1024] = {};
    uint32_t method = 0;
    int32_t status = 0;
    {
        QuietStdout quiet(verbose);
        status = LUT2BIOS(&planes[0][0], kMaxString, out, static_cast<int32_t>(sizeof out), &method);
    }
    if (status != 0 || out[0] == 0) return std::nullopt;
    return LutString{static_cast<int>(method), std::vector<uint8_t>(out, out + out[0])};
}

int32_t DecodeLutString(const std::vector<uint8_t>& bytes, int method, Curve& curve, bool verbose) {
    // The decoder trusts the length byte, so it always gets a full-length buffer.
    std::vector<uint8_t> padded(256, 0);
    std::memcpy(padded.data(), bytes.data(), std::min(bytes.size(), padded.size()));
    uint16_t planes[3][kCurveSize];
    int32_t status = 0;
    {
        QuietStdout quiet(verbose);
        status = BIOS2LUT(&planes[0][0], padded.data(), kLutEntries, method);
    }
    if (status == 0)
        for (size_t c = 0; c < 3; ++c) std::memcpy(curve[c].data(), planes[c], sizeof planes[c]);
    return status;
}

}  // namespace quarnel::tool
