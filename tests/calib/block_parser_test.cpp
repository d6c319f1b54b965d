// SPDX-License-Identifier: MIT
#include "calib/block_parser.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "calib/block_writer.h"
#include "calib/crc16.h"
#include "support/capture.h"

namespace quarnel {
namespace {

struct Parsed {
    BiosData data;
    bool inBounds = false;
    std::string printed;
};

Parsed ParseBlock(const std::vector<uint8_t>& block, int32_t length = kBlockSize) {
    Parsed p;
    p.data.raw = block;
    p.data.length = length;
    p.printed = test::CaptureStdout([&] { p.inBounds = ParseHeader(p.data); });
    return p;
}

Parsed Parse(const test::BlockFields& fields) { return ParseBlock(test::WriteBlock(fields)); }

double Wide(float v) { return static_cast<double>(v); }

TEST(Crc16, MatchesThePublishedCheckValue) {
    const std::string check = "123456789";
    EXPECT_EQ(Crc16(reinterpret_cast<const uint8_t*>(check.data()), check.size()), 0x29B1);
    uint16_t initial = 0;
    const CrcTable table = MakeCrcTable(initial);
    EXPECT_EQ(std::tuple(initial, table[0], table[1], table[128], table[255]),
              std::tuple(0xFFFF, 0, 0x1021, 0x9188, 0x1EF0));
}

TEST(ParseHeader, EveryVersionReadsItsFieldsAtTheirOffsets) {
    using test::kWhites;
    for (uint8_t version = 1; version <= 8; ++version) {
        SCOPED_TRACE(version);
        const Parsed p = Parse({.version = version});
        ASSERT_TRUE(p.inBounds);
        const BiosData& d = p.data;
        // Big-endian words; bytes 66 to 69 only from version 3, the white targets only from version 4.
        EXPECT_EQ(std::tuple(d.BiosDataStatus, d.version, d.subVersion, d.dataWord, d.word60, d.bytes66),
                  std::tuple(kBiosOk, version, 3, 0x01020304u, version >= 2 ? 0xA1B2u : 0u,
                             version >= 3 ? std::array<uint8_t, 4>{9, 8, 7, 6} : std::array<uint8_t, 4>{}));
        for (std::size_t i = 0; i < 12; ++i) EXPECT_EQ(d.primaries[i / 3][i % 3], Wide(test::kPrimaries[i]));
        EXPECT_TRUE(CheckHeaderCrc(d));
        const bool v4 = version >= 4;
        EXPECT_EQ(std::tuple(d.firstWhite[0], d.firstWhite[1], d.targetLuminance, d.defaultWhite[0], d.defaultWhite[1]),
                  v4 ? std::tuple(Wide(kWhites[0]), Wide(kWhites[1]), 250.5, Wide(kWhites[3]), Wide(kWhites[4]))
                     : std::tuple(0.3, 0.315, 0.0, 0.0, 0.0));
        EXPECT_TRUE(version < 5 || CheckToneCrc(d));
        for (std::size_t c = 0; c < 3; ++c)  // black values, then 15 levels in each tone row
            for (std::size_t k = 0; k < 18; ++k)
                EXPECT_EQ(d.tone[c][k],
                          version < 5 ? 0.0 : Wide(k < 3 ? test::kBlack[k] : test::ToneLevel(15 * c + k - 3)));
        EXPECT_EQ(d.useMethod, version >= 6 ? 1 : 0);
        EXPECT_EQ(d.lutString, (version >= 6 ? std::vector<uint8_t>{4, 0, 0, 0, 0} : std::vector<uint8_t>{}));
        if (version >= 6) {
            EXPECT_EQ(std::tuple(d.lutStringSize, d.cursor), std::tuple(4, test::LutStringOffset(version) + 5));
        }
    }
}

TEST(ParseHeader, VersionSixAndSevenPlaceTheTrailerApart) {
    for (uint8_t version : {uint8_t{6}, uint8_t{7}}) {
        const auto block = test::WriteBlock(
            {.version = version, .byte297 = 0x77, .useMethod = 0, .lutString = {6, 0x17, 0x4B, 0x40, 0x11, 0x22}});
        EXPECT_EQ(block[static_cast<std::size_t>(test::LutStringOffset(version) - 1)], 0);  // useMethod
        const Parsed p = ParseBlock(block);
        ASSERT_TRUE(p.inBounds);
        EXPECT_EQ(p.data.useMethod, 0);
        EXPECT_EQ(p.data.lutString, (std::vector<uint8_t>{6, 0x17, 0x4B, 0x40, 0x11, 0x22, 0}));
        EXPECT_NE(p.printed.find("Use Method = 0   bios size = 6\n"), std::string::npos);
    }
}

TEST(ParseHeader, MagicHdocOrR2rWithAZeroByte) {
    const std::pair<std::array<uint8_t, 4>, int32_t> cases[] = {
        {{'H', 'D', 'O', 'C'}, kBiosOk},       {{'R', '2', 'R', 0}, kBiosOk}, {{'R', '2', 'R', 'X'}, kBiosBadBlock},
        {{'H', 'D', 'O', 'c'}, kBiosBadBlock}, {{0, 0, 0, 0}, kBiosBadBlock},
    };
    for (const auto& [magic, status] : cases) {
        const Parsed p = Parse({.magic = magic});
        EXPECT_TRUE(p.inBounds);
        EXPECT_EQ(p.data.BiosDataStatus, status);
        if (status == kBiosBadBlock) {  // nothing read after the magic
            EXPECT_EQ(p.data.version, 0);
            EXPECT_NE(p.printed.find("BIOS header incorrect...\n"), std::string::npos);
        }
    }
    EXPECT_EQ(Parse({}).printed.substr(0, 23), "[H][D][O][C]\nParsing ve");
}

TEST(ParseHeader, ALutStringRunningPastTheBlockIsABoundsFailure) {
    const std::tuple<uint8_t, uint8_t, bool> cases[] = {
        {7, 212, true}, {7, 213, false}, {7, 255, false}, {6, 213, true}, {6, 214, false}, {8, 255, false},
    };
    for (const auto& [version, size, inBounds] : cases) {
        std::vector<uint8_t> string(size, 0xEE);
        string[0] = size;
        const Parsed p = Parse({.version = version, .lutString = string});
        EXPECT_EQ(p.inBounds, inBounds) << int{version} << " " << int{size};
        if (inBounds) {
            EXPECT_EQ(p.data.lutString.size(), size + 1u);
        }
    }
    for (int32_t length : {0, 3, 11, 59, 102, 296}) EXPECT_FALSE(ParseBlock(test::WriteBlock({}), length).inBounds);
}

TEST(Crc, CoversOnlyThePrimariesAndTheToneLevels) {
    const std::pair<std::vector<int>, std::pair<bool, bool>> cases[] = {
        {{4, 5, 8, 11, 60, 61, 70, 71, 90, 91, 102, 285, 296}, {true, true}},
        {{12, 35, 59}, {false, true}},
        {{103, 200, 282}, {true, false}},
    };
    for (const auto& [offsets, checks] : cases)
        for (int at : offsets) {
            std::vector<uint8_t> block = test::WriteBlock({.version = 5});
            block[static_cast<std::size_t>(at)] ^= 0x11;
            const Parsed p = ParseBlock(block);
            EXPECT_EQ(std::pair(CheckHeaderCrc(p.data), CheckToneCrc(p.data)), checks) << at;
        }
}

}  // namespace
}  // namespace quarnel
