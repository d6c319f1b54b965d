#include "calib/block_parser.h"

#include <gtest/gtest.h>

#include <string>

#include "calib/block_writer.h"
#include "calib/crc16.h"
#include "support/capture.h"

namespace quarnel {
namespace {

using test::BlockFields;

struct Parsed {
    BiosData data;
    bool inBounds = false;
    std::string printed;
};

Parsed ParseBlock(const std::vector<uint8_t>& block) {
    Parsed p;
    p.data.raw = block;
    p.data.length = kBlockSize;
    p.printed = test::CaptureStdout([&] { p.inBounds = ParseHeader(p.data); });
    return p;
}

Parsed ParseFields(const BlockFields& fields) { return ParseBlock(test::WriteBlock(fields)); }

double Widened(float v) { return static_cast<double>(v); }

TEST(Crc16, MatchesThePublishedCheckValue) {
    const std::string check = "123456789";
    EXPECT_EQ(Crc16(reinterpret_cast<const uint8_t*>(check.data()), check.size()), 0x29B1);
    uint16_t initial = 0;
    const CrcTable table = MakeCrcTable(initial);
    EXPECT_EQ(initial, 0xFFFF);
    EXPECT_EQ(table[0], 0x0000);
    EXPECT_EQ(table[1], 0x1021);
    EXPECT_EQ(table[128], 0x9188);
    EXPECT_EQ(table[255], 0x1EF0);
}

TEST(ParseHeader, EveryVersionReadsItsFieldsAtTheirOffsets) {
    for (uint8_t version = 1; version <= 8; ++version) {
        SCOPED_TRACE(version);
        BlockFields fields;
        fields.version = version;
        const Parsed p = ParseFields(fields);
        ASSERT_TRUE(p.inBounds);
        const BiosData& d = p.data;
        EXPECT_EQ(d.BiosDataStatus, kBiosOk);
        EXPECT_EQ(d.version, version);
        EXPECT_EQ(d.subVersion, 3);
        EXPECT_EQ(d.dataWord, 0x01020304u);  // most significant byte first
        for (int i = 0; i < 12; ++i) EXPECT_EQ(d.primaries[i / 3][i % 3], Widened(fields.primaries[static_cast<std::size_t>(i)]));
        EXPECT_TRUE(CheckHeaderCrc(d));
        EXPECT_EQ(d.word60, version >= 2 ? 0xA1B2u : 0u);
        EXPECT_EQ(d.bytes66, (version >= 3 ? std::array<uint8_t, 4>{9, 8, 7, 6} : std::array<uint8_t, 4>{}));
        if (version >= 4) {
            EXPECT_EQ(d.firstWhite[0], Widened(0.3127f));
            EXPECT_EQ(d.firstWhite[1], Widened(0.329f));
            EXPECT_EQ(d.targetLuminance, 250.5);
            EXPECT_EQ(d.defaultWhite[0], Widened(0.3101f));
            EXPECT_EQ(d.defaultWhite[1], Widened(0.3162f));
        } else {
            EXPECT_EQ(d.firstWhite[0], 0.3);
            EXPECT_EQ(d.firstWhite[1], 0.315);
            EXPECT_EQ(d.targetLuminance, 0.0);
            EXPECT_EQ(d.defaultWhite[0], 0.0);
            EXPECT_EQ(d.defaultWhite[1], 0.0);
        }
        if (version >= 5) {
            EXPECT_TRUE(CheckToneCrc(d));
            for (int c = 0; c < 3; ++c) {
                for (int k = 0; k < 3; ++k) EXPECT_EQ(d.tone[c][k], Widened(fields.black[static_cast<std::size_t>(k)]));
                for (int k = 0; k < 15; ++k)
                    EXPECT_EQ(d.tone[c][3 + k], Widened(fields.toneLevels[static_cast<std::size_t>(15 * c + k)]));
            }
        } else {
            EXPECT_EQ(d.tone[2][17], 0.0);
        }
        if (version >= 6) {
            EXPECT_EQ(d.useMethod, 1);
            EXPECT_EQ(d.lutStringSize, 4);
            EXPECT_EQ(d.lutString, (std::vector<uint8_t>{4, 0, 0, 0, 0}));
            EXPECT_EQ(d.cursor, test::LutStringOffset(version) + 5);
        } else {
            EXPECT_TRUE(d.lutString.empty());
        }
    }
}

TEST(ParseHeader, VersionSixAndSevenPlaceTheTrailerApart) {
    for (uint8_t version : {uint8_t{6}, uint8_t{7}}) {
        BlockFields fields;
        fields.version = version;
        fields.useMethod = 0;
        fields.byte297 = 0x77;
        fields.lutString = {6, 0x17, 0x4B, 0x40, 0x11, 0x22};
        std::vector<uint8_t> block = test::WriteBlock(fields);
        const int at = test::LutStringOffset(version);
        EXPECT_EQ(block[static_cast<std::size_t>(at - 1)], 0);  // useMethod just before the string
        const Parsed p = ParseBlock(block);
        ASSERT_TRUE(p.inBounds);
        EXPECT_EQ(p.data.useMethod, 0);
        EXPECT_EQ(p.data.lutString, (std::vector<uint8_t>{6, 0x17, 0x4B, 0x40, 0x11, 0x22, 0}));
        EXPECT_NE(p.printed.find("Use Method = 0   bios size = 6\n"), std::string::npos);
    }
}

TEST(ParseHeader, MagicHdocOrR2rWithAZeroByte) {
    struct Case {
        std::array<uint8_t, 4> magic;
        int32_t status;
    } cases[] = {
        {{'H', 'D', 'O', 'C'}, kBiosOk},
        {{'R', '2', 'R', 0}, kBiosOk},
        {{'R', '2', 'R', 'X'}, kBiosBadBlock},
        {{'H', 'D', 'O', 'c'}, kBiosBadBlock},
        {{0, 0, 0, 0}, kBiosBadBlock},
    };
    for (const auto& tc : cases) {
        BlockFields fields;
        fields.magic = tc.magic;
        const Parsed p = ParseFields(fields);
        EXPECT_TRUE(p.inBounds);
        EXPECT_EQ(p.data.BiosDataStatus, tc.status);
        if (tc.status == kBiosBadBlock) {
            EXPECT_EQ(p.data.version, 0);  // nothing read after the magic
            EXPECT_NE(p.printed.find("BIOS header incorrect...\n"), std::string::npos);
        }
    }
    EXPECT_EQ(ParseFields(BlockFields{}).printed.substr(0, 23), "[H][D][O][C]\nParsing ve");
}

TEST(ParseHeader, ALutStringRunningPastTheBlockIsABoundsFailure) {
    struct Case {
        uint8_t version;
        uint8_t size;
        bool inBounds;
    } cases[] = {
        {7, 212, true},   // bytes 299 to 511
        {7, 213, false},  // would need byte 512
        {7, 255, false},
        {6, 213, true},  // bytes 298 to 511
        {6, 214, false},
        {8, 255, false},
    };
    for (const auto& tc : cases) {
        BlockFields fields;
        fields.version = tc.version;
        fields.lutString.assign(tc.size, 0xEE);
        fields.lutString[0] = tc.size;
        const Parsed p = ParseFields(fields);
        EXPECT_EQ(p.inBounds, tc.inBounds) << int{tc.version} << " " << int{tc.size};
        if (tc.inBounds) {
            EXPECT_EQ(p.data.lutString.size(), tc.size + 1u);
        }
    }
}

TEST(ParseHeader, AShortLengthStopsEveryRead) {
    const std::vector<uint8_t> block = test::WriteBlock(BlockFields{});
    for (int32_t length : {0, 3, 11, 59, 102, 296}) {
        Parsed p;
        p.data.raw = block;
        p.data.length = length;
        test::CaptureStdout([&] { p.inBounds = ParseHeader(p.data); });
        EXPECT_FALSE(p.inBounds) << length;
    }
}

TEST(Crc, CoversOnlyThePrimariesAndTheToneLevels) {
    BlockFields fields;
    fields.version = 5;
    const std::vector<uint8_t> good = test::WriteBlock(fields);
    auto checks = [](std::vector<uint8_t> block) {
        Parsed p = ParseBlock(block);
        return std::pair{CheckHeaderCrc(p.data), CheckToneCrc(p.data)};
    };
    for (int at : {4, 5, 8, 11, 60, 61, 70, 71, 90, 91, 102, 285, 296}) {
        std::vector<uint8_t> block = good;
        block[static_cast<std::size_t>(at)] ^= 0x10;
        EXPECT_EQ(checks(block), std::pair(true, true)) << at;
    }
    for (int at : {12, 35, 59}) {
        std::vector<uint8_t> block = good;
        block[static_cast<std::size_t>(at)] ^= 0x01;
        EXPECT_EQ(checks(block), std::pair(false, true)) << at;
    }
    for (int at : {103, 200, 282}) {
        std::vector<uint8_t> block = good;
        block[static_cast<std::size_t>(at)] ^= 0x01;
        EXPECT_EQ(checks(block), std::pair(true, false)) << at;
    }
}

}  // namespace
}  // namespace quarnel
