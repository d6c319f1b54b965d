// SPDX-License-Identifier: MIT
#include "model/lut_string.h"

#include <algorithm>
#include <cstring>

#include "io/quiet_stdout.h"
#include "io/tool_error.h"
#include "model/hex.h"
#include "quarnel/cctapi.h"

namespace quarnel::tool {
namespace {

constexpr int32_t kLutEntries = 3 * kCurveSize;
constexpr uint32_t kMaxString = 255;       // one length byte
constexpr size_t kEncoderCapacity = 1024;  // room for the longest string the encoder can write
constexpr int kLevelScale = 256;           // strings keep 8-bit levels, entry / 256
constexpr int kTopLevel = 255;
constexpr int kLargestStep = 7;  // the largest rise between neighbours a string can carry
// The encoder's mark of a Huffman string too long for the format: a header alone.
constexpr uint8_t kOverlongHuffmanLength = 2;
constexpr const char* kPlaneNames[3] = {"red", "green", "blue"};

std::string Where(size_t plane, size_t entry) {
    return std::string(kPlaneNames[plane]) + " entry " + std::to_string(entry);
}

// The first rule of the string format that the curve breaks, if any.
std::optional<std::string> BrokenRule(const Curve& curve) {
    for (size_t c = 0; c < 3; ++c)
        for (size_t i = 0; i < kCurveSize; ++i) {
            const int v = curve[c][i];
            if (v % kLevelScale != 0)
                return Where(c, i) + " is " + std::to_string(v) + ", not a multiple of 256 (strings keep 8-bit levels)";
            const int level = v / kLevelScale, previous = i == 0 ? 0 : curve[c][i - 1] / kLevelScale;
            if (i == 0 && level != 0) return Where(c, i) + " is " + std::to_string(v) + ", a string starts at 0";
            if (level < previous) return Where(c, i) + " falls below entry " + std::to_string(i - 1);
            if (level - previous > kLargestStep)
                return Where(c, i) + " rises " + std::to_string(level - previous) +
                       " levels above its neighbour, a string allows at most 7";
            if (i + 1 == kCurveSize && level != kTopLevel)
                return Where(c, i) + " is " + std::to_string(v) + ", a string ends at 65280";
        }
    return std::nullopt;
}

std::optional<std::string> FirstDifference(const Curve& wanted, const Curve& got) {
    for (size_t c = 0; c < 3; ++c)
        for (size_t i = 0; i < kCurveSize; ++i)
            if (wanted[c][i] != got[c][i])
                return Where(c, i) + " would come back as " + std::to_string(got[c][i]) + " instead of " +
                       std::to_string(wanted[c][i]);
    return std::nullopt;
}

// Encodes, decodes and compares; the reason when the curve does not come back.
std::optional<std::string> RoundTrip(const Curve& curve, LutString& string, bool verbose) {
    uint16_t planes[3][kCurveSize];
    for (size_t c = 0; c < 3; ++c) std::memcpy(planes[c], curve[c].data(), sizeof planes[c]);
    uint8_t out[kEncoderCapacity] = {};
    uint32_t method = 0;
    int32_t status = 0;
    {
        QuietStdout quiet(verbose);
        status = LUT2BIOS(&planes[0][0], kMaxString, out, static_cast<int32_t>(sizeof out), &method);
    }
    if (status > 0) return "its string needs " + std::to_string(status) + " bytes, more than 255";
    if (status != 0 || out[0] == 0) return "the encoder refuses it";
    if (method == 0 && out[0] == kOverlongHuffmanLength) return "its Huffman string needs more than 253 data bytes";
    string = {static_cast<int>(method), std::vector<uint8_t>(out, out + out[0])};
    Curve decoded{};
    if (DecodeLutString(string.bytes, string.method, decoded, verbose) != 0) return "its string does not decode";
    return FirstDifference(curve, decoded);
}

}  // namespace

LutString EncodeLutStringChecked(const Curve& curve, bool verbose) {
    LutString string;
    const auto failure = RoundTrip(curve, string, verbose);
    if (failure)
        throw ToolError(kExitData, "cannot be stored as a LUT string: " + BrokenRule(curve).value_or(*failure));
    return string;
}

std::vector<uint8_t> ParseLutStringHex(const std::string& hex) {
    const std::string shown = hex.size() <= 2 * kMaxString ? hex : hex.substr(0, 2 * kMaxString) + "...";
    const auto bad = [&](const std::string& why) { return ToolError(kExitData, "string " + shown + ": " + why); };
    if (hex.empty() || hex.size() > 2 * kMaxString) throw bad("expected 1 to 255 bytes in hex");
    const auto bytes = FromHex(hex);
    if (!bytes) throw bad("malformed hex: expected pairs of the digits 0-9 and a-f");
    if ((*bytes)[0] > bytes->size()) throw bad("shorter than its length byte says");
    return *bytes;
}

int32_t DecodeLutString(const std::vector<uint8_t>& bytes, int method, Curve& curve, bool verbose) {
    // The decoder trusts the length byte, so it always gets a full-length buffer.
    std::vector<uint8_t> padded(kMaxString + 1, 0);
    std::copy_n(bytes.begin(), std::min(bytes.size(), padded.size()), padded.begin());
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
