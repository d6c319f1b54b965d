// SPDX-License-Identifier: MIT
// The tool's block and LUT string codecs in-process, over thousands of
// random blocks and curves.

#include <gtest/gtest.h>

#include <random>

#include "facts/crc16.h"
#include "formats/block_json.h"
#include "io/tool_error.h"
#include "model/block_codec.h"
#include "model/lut_string.h"

namespace quarnel::tool {
namespace {

// A storable curve: the identity with `moves` level steps shifted between
// random neighbours of a plane, every step staying within 0..7.
Curve RandomStorableCurve(std::mt19937& rng, int moves) {
    std::array<std::array<int, kCurveSize>, 3> steps{};
    for (auto& plane : steps) plane.fill(1), plane[0] = 0;
    std::uniform_int_distribution<size_t> position(1, kCurveSize - 1), channel(0, 2);
    for (int m = 0; m < moves; ++m) {
        auto& plane = steps[channel(rng)];
        const size_t from = position(rng), to = position(rng);
        if (plane[from] > 0 && plane[to] < 7) --plane[from], ++plane[to];
    }
    Curve curve{};
    for (size_t c = 0; c < 3; ++c)
        for (size_t i = 1; i < kCurveSize; ++i)
            curve[c][i] = static_cast<uint16_t>(curve[c][i - 1] + steps[c][i] * 256);
    return curve;
}

void PutCrc(Block& block, const facts::CoveredCrc& c) {
    const uint16_t crc = facts::Crc16(block.data() + c.covered.offset, c.covered.size);
    block[c.stored.offset] = static_cast<uint8_t>(crc & 0xFF),
    block[c.stored.offset + 1] = static_cast<uint8_t>(crc >> 8);
}

// Random bytes, made a good block of a random version for three in four:
// magic, CRCs and a gamma string that decodes (or, for one in four, random
// bytes in its place). NaN and infinities come with the random floats.
Block RandomBlock(std::mt19937& rng, int kind) {
    Block block{};
    for (auto& b : block) b = static_cast<uint8_t>(rng());
    if (kind == 0) return block;
    const uint8_t version = static_cast<uint8_t>(1 + rng() % 8);
    std::ranges::copy(facts::kMagicHdoc, block.begin() + facts::kMagic.offset);
    block[facts::kVersion.offset] = version;
    const size_t nonFinite = facts::kPrimaries.offset + facts::kSingleSize * (rng() % 10);
    if (kind == 1) std::copy_n("\x7f\x80\x00\x00\xff\xc0\x00\x01", 8, block.begin() + static_cast<long>(nonFinite));
    PutCrc(block, facts::kHeaderCrc);
    PutCrc(block, facts::kToneCrc);
    const size_t sizeAt = facts::TrailerOf(version).lutStringSize.offset;
    const LutString string = EncodeLutStringChecked(RandomStorableCurve(rng, static_cast<int>(rng() % 40)), false);
    block[facts::TrailerOf(version).useMethod.offset] =
        static_cast<uint8_t>(kind == 3 ? rng() : static_cast<unsigned>(string.method));
    if (kind != 3) std::copy(string.bytes.begin(), string.bytes.end(), block.begin() + static_cast<long>(sizeAt));
    return block;
}

TEST(ToolCodec, EveryBlockRebuildsByteForByteFromItsDescription) {
    std::mt19937 rng(2024);
    int good = 0;
    for (int n = 0; n < 4000; ++n) {
        const Block block = RandomBlock(rng, n % 4);
        const DecodedBlock decoded = DecodeBlock(block, false);
        good += !FindBlockProblem(decoded).has_value();
        const std::string json = DescriptionToJson(decoded.description).dump();
        ASSERT_EQ(EncodeBlock(DescriptionFromJson(json, "random"), false), block) << json;
    }
    EXPECT_GT(good, 1000) << "most made-good blocks pass every check";
}

TEST(ToolCodec, StringsAreMadeExactlyForTheCurvesTheyDecodeBackTo) {
    std::mt19937 rng(99);
    for (int n = 0; n < 2000; ++n) {
        const Curve curve = RandomStorableCurve(rng, n % 120);
        const LutString string = EncodeLutStringChecked(curve, false);
        Curve decoded{};
        ASSERT_EQ(DecodeLutString(string.bytes, string.method, decoded, false), 0);
        ASSERT_EQ(decoded, curve);
    }
    struct Broken {
        size_t plane, entry;
        uint16_t value;
        const char* reason;
    };
    for (const Broken& b : {Broken{0, 0, 256, "red entry 0 is 256, a string starts at 0"},
                            Broken{1, 9, 9 * 256 + 1, "green entry 9 is 2305, not a multiple of 256"},
                            Broken{2, 9, 7 * 256, "blue entry 9 falls below entry 8"},
                            Broken{0, 9, 17 * 256, "red entry 9 rises 9 levels"},
                            Broken{2, 255, 65024, "blue entry 255 is 65024, a string ends at 65280"}}) {
        Curve curve = IdentityCurve();
        curve[b.plane][b.entry] = b.value;
        try {
            EncodeLutStringChecked(curve, false);
            ADD_FAILURE() << b.reason;
        } catch (const ToolError& e) {
            EXPECT_NE(std::string(e.what()).find(b.reason), std::string::npos) << e.what();
        }
    }
}

}  // namespace
}  // namespace quarnel::tool
