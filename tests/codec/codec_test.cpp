// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "codec/bit_packing.h"
#include "codec/huffman_coding.h"
#include "codec/huffman_string.h"
#include "codec/huffman_tree.h"
#include "codec/lut_differences.h"
#include "codec/lut_string.h"
#include "codec/position_lists.h"
#include "lut/sample_luts.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"

namespace quarnel::codec {
namespace {

using Bytes = std::vector<uint8_t>;
using testing::ElementsAre;

constexpr uint8_t kUntouched = 0xAA;
constexpr uint16_t kUntouchedEntry = 0x1234;
constexpr int kOutSize = 1024;

const std::string kTreeText =
    "ptable before sorting...\n"
    "[0] 0:0.050100\n[1] 1:0.904300\n[2] 2:0.044100\n[3] 3:0.001200\n[4] 4:0.000100\n\n"
    "ptable after sorting...\n"
    "[0] 1:0.904300\n[1] 0:0.050100\n[2] 2:0.044100\n[3] 3:0.001200\n[4] 4:0.000100\n\n"
    "codeVec is empty\n";
const std::string kCodebookText = "Codebook <Key> : <Code>\n0 : 01\n1 : 1\n2 : 001\n3 : 0001\n4 : 0000\n";

BitSequence Bits(const std::string& text) {
    BitSequence bits;
    for (char ch : text) bits.push_back(ch == '1');
    return bits;
}

HuffmanTree QuietTree() {
    HuffmanTree tree;
    test::CaptureStdout([&] { tree = BuildTreeV1(); });
    return tree;
}

TEST(HuffmanTree, TableV1GivesTheFixedCodebookEveryTime) {
    const std::map<int, BitSequence> expected{
        {0, Bits("01")}, {1, Bits("1")}, {2, Bits("001")}, {3, Bits("0001")}, {4, Bits("0000")}};
    EXPECT_EQ(QuietTree().codebook, expected);
    EXPECT_EQ(QuietTree().codebook, expected);  // the shared walk path is empty again after a build
}

TEST(HuffmanCoding, EncodesDecodesAndDropsAnUnfinishedCode) {
    const HuffmanTree tree = QuietTree();
    const std::vector<int> symbols{1, 1, 0, 2, 4, 3};
    BitSequence bits;
    ASSERT_TRUE(Encode(tree, symbols.data(), symbols.size(), bits));
    EXPECT_EQ(bits, Bits("110100100000001"));
    std::vector<int> decoded;
    Decode(tree, bits, decoded);
    EXPECT_EQ(decoded, symbols);
    for (const char* tail : {"0", "00", "000"}) {
        std::vector<int> cut;
        Decode(tree, Bits(std::string("1101") + tail), cut);
        EXPECT_EQ(cut, (std::vector<int>{1, 1, 0})) << tail;
    }
}

TEST(HuffmanCoding, SymbolWithoutCodeFails) {
    const HuffmanTree tree = QuietTree();
    for (int symbol : {5, -1, 8}) {
        const std::vector<int> symbols{1, symbol};
        BitSequence bits;
        bool ok = true;
        const std::string printed =
            test::CaptureStdout([&] { ok = Encode(tree, symbols.data(), symbols.size(), bits); });
        EXPECT_FALSE(ok);
        EXPECT_EQ(printed, "Not found " + std::to_string(symbol) + " in codebook!!!\n");
    }
}

TEST(BitPacking, PacksLeastSignificantBitFirstUpTo253Bytes) {
    const struct {
        const char* bits;
        std::vector<uint8_t> bytes;
        int bitsInLastByte;
    } cases[] = {
        {"110100100000001", {0x4B, 0x40}, 7},
        {"10000000", {0x01}, 8},
        {"000000001", {0x00, 0x01}, 1},
    };
    for (const auto& tc : cases) {
        const PackedBits packed = PackBits(Bits(tc.bits));
        EXPECT_EQ(packed.bytes, tc.bytes) << tc.bits;
        EXPECT_EQ(packed.bytesUsed, static_cast<int>(tc.bytes.size())) << tc.bits;
        EXPECT_EQ(packed.bitsInLastByte, tc.bitsInLastByte) << tc.bits;
    }
    const PackedBits full = PackBits(BitSequence(253 * 8, true));
    EXPECT_EQ(full.bytesUsed, 253);
    EXPECT_EQ(full.bitsInLastByte, 8);
    const PackedBits over = PackBits(BitSequence(253 * 8 + 1, true));  // reports nothing beyond 253 bytes
    EXPECT_EQ(over.bytes.size(), 254u);
    EXPECT_EQ(over.bytes.back(), 0x01);
    EXPECT_EQ(over.bytesUsed, 0);
    EXPECT_EQ(over.bitsInLastByte, 0);
}

// One plane's 8-bit differences: 0, then `pattern` repeated `times`, then 1 up to position 255.
struct PlaneSteps {
    std::vector<int> pattern;
    int times = 0;
};

// Entries are value x 256, the value being the running sum of the differences.
Lut16 LutFromSteps(const PlaneSteps& r, const PlaneSteps& g = {}, const PlaneSteps& b = {}) {
    Lut16 lut{};
    const PlaneSteps* planes[3] = {&r, &g, &b};
    for (int c = 0; c < 3; ++c) {
        std::vector<int> d{0};
        for (int t = 0; t < planes[c]->times; ++t)
            d.insert(d.end(), planes[c]->pattern.begin(), planes[c]->pattern.end());
        d.resize(kLutLevels, 1);
        for (int i = 0, value = 0; i < kLutLevels; ++i) {
            value += d[static_cast<std::size_t>(i)];
            lut[LutIndex(c, i)] = static_cast<uint16_t>(value * kLutStep);
        }
    }
    return lut;
}

struct Written {
    int32_t status;
    uint32_t method;
    Bytes out;  // kOutSize bytes, kUntouched where nothing was written
    std::string printed;
};

Written Store(const Lut16& lut, uint32_t maxSize = 255, int32_t capacity = kOutSize) {
    Written w{0, 99, Bytes(kOutSize, kUntouched), {}};
    w.printed =
        test::CaptureStdout([&] { w.status = LUT2BIOS(lut.data(), maxSize, w.out.data(), capacity, &w.method); });
    return w;
}

// The written string: as many bytes as the first byte declares.
Bytes Declared(const Written& w) { return Bytes(w.out.begin(), w.out.begin() + w.out[0]); }

struct Read {
    int32_t status;
    Lut16 lut;
};

Read Load(const Bytes& string, int32_t method, int32_t count = kLutEntries) {
    Read r{0, {}};
    r.lut.fill(kUntouchedEntry);
    test::CaptureStdout([&] { r.status = BIOS2LUT(r.lut.data(), string.data(), count, method); });
    return r;
}

Lut16 Untouched() {
    Lut16 lut;
    lut.fill(kUntouchedEntry);
    return lut;
}

// Identity except a red difference of 0 at position 10 and of 2 at position 11.
Lut16 RedDip() { return LutFromSteps({{1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 2}, 1}); }

// Green alternates 0, 2 over 114 positions: the Huffman string is one byte shorter.
Lut16 HuffmanShorter() { return LutFromSteps({}, {{0, 2}, 57}); }

// Red mixes 12 pairs 0, 2 and 29 triples 0, 0, 3: both strings are 121 bytes.
Lut16 EqualLengths() {
    std::vector<int> pattern;
    for (int k = 0; k < 12; ++k) pattern.insert(pattern.end(), {0, 2});
    for (int k = 0; k < 29; ++k) pattern.insert(pattern.end(), {0, 0, 3});
    return LutFromSteps({pattern, 1});
}

// Every plane rises by 3 every third entry: the longest Huffman data, 2046 bits.
Lut16 StepsOfThree() { return LutFromSteps({{0, 0, 3}, 85}, {{0, 0, 3}, 85}, {{0, 0, 3}, 85}); }

// Red rises by 5 every fifth entry: 255 listed positions and no Huffman code.
Lut16 StepsOfFive() { return LutFromSteps({{0, 0, 0, 0, 5}, 51}); }

// Gamma-like planes: storable, with differences 0..2 in all three.
Lut16 Bowed() { return LutFromSteps({{1, 0, 2}, 20}, {{1, 2, 0, 1}, 25}, {{0, 1, 1, 2}, 30}); }

// The identity as a Huffman string: 0 then 255 ones per plane, 771 bits.
Bytes IdentityHuffmanString() {
    Bytes s{99, 0x13, 0xFE};
    s.insert(s.end(), 31, 0xFF);
    s.push_back(0xFD);
    s.insert(s.end(), 31, 0xFF);
    s.push_back(0xFB);
    s.insert(s.end(), 31, 0xFF);
    s.push_back(0x07);
    return s;
}

TEST(GetHfmInfor, ReportsTheFixedCodeAndVersion) {
    uint32_t symbols[5], lengths[5], codes[5], count = 0;
    double probabilities[5];
    int32_t status = -9;
    const std::string printed =
        test::CaptureStdout([&] { status = GetHfmInfor(symbols, probabilities, lengths, codes, &count); });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(count, 5u);
    EXPECT_THAT(symbols, ElementsAre(0u, 1u, 2u, 3u, 4u));
    EXPECT_THAT(probabilities, ElementsAre(0.0501, 0.9043, 0.0441, 0.0012, 0.0001));
    EXPECT_THAT(lengths, ElementsAre(2u, 1u, 3u, 4u, 4u));
    EXPECT_THAT(codes, ElementsAre(1u, 1u, 1u, 1u, 0u));
    EXPECT_EQ(printed, kTreeText + kCodebookText);
    EXPECT_EQ(test::CaptureStdout([&] { status = ShowHfmVer(); }), "Huffman kernel version: v1.0.0_20181005\n");
    EXPECT_EQ(status, 40);
}

TEST(Exports, NullPointersFailAndWriteNothing) {
    uint32_t a[5] = {}, b[5] = {}, c[5] = {}, count = 7;
    double p[5] = {};
    EXPECT_EQ(GetHfmInfor(nullptr, p, b, c, &count), -1);
    EXPECT_EQ(GetHfmInfor(a, nullptr, b, c, &count), -1);
    EXPECT_EQ(GetHfmInfor(a, p, nullptr, c, &count), -1);
    EXPECT_EQ(GetHfmInfor(a, p, b, nullptr, &count), -1);
    EXPECT_EQ(GetHfmInfor(a, p, b, c, nullptr), -1);
    EXPECT_EQ(count, 7u);
    EXPECT_EQ(b[0] + c[0] + a[4], 0u);

    Lut16 lut = test::IdentityLut();
    Bytes out(8, kUntouched);
    uint32_t method = 99;
    EXPECT_EQ(LUT2BIOS(nullptr, 255, out.data(), 8, &method), -1);
    EXPECT_EQ(LUT2BIOS(lut.data(), 255, nullptr, 8, &method), -1);
    EXPECT_EQ(LUT2BIOS(lut.data(), 255, out.data(), 8, nullptr), -1);
    EXPECT_EQ(method, 99u);
    EXPECT_EQ(out, Bytes(8, kUntouched));

    const Bytes string{4, 0, 0, 0};
    lut = Untouched();
    EXPECT_EQ(BIOS2LUT(nullptr, string.data(), kLutEntries, 1), -1);
    EXPECT_EQ(BIOS2LUT(lut.data(), nullptr, kLutEntries, 1), -1);
    EXPECT_EQ(lut, Untouched());
}

TEST(LUT2BIOS, WritesTheShorterString) {
    struct Case {
        const char* name;
        Lut16 lut;
        uint32_t method;
        Bytes head;  // the string, or its first bytes
        std::size_t size;
    } cases[] = {
        {"identity", test::IdentityLut(), kMethodPositionLists, {4, 0, 0, 0}, 4},
        {"red dip", RedDip(), kMethodPositionLists, {9, 1, 0, 0, 10, 1, 0, 0, 11}, 9},
        {"huffman shorter", HuffmanShorter(), kMethodHuffman, {120, 0x16}, 120},
        {"tie", EqualLengths(), kMethodPositionLists, {121, 12 + 29 * 2, 0, 0, 1, 3}, 121},
    };
    for (const auto& tc : cases) {
        const Written w = Store(tc.lut);
        EXPECT_EQ(w.status, 0) << tc.name;
        EXPECT_EQ(w.method, tc.method) << tc.name;
        EXPECT_EQ(Bytes(w.out.begin(), w.out.begin() + static_cast<long>(tc.head.size())), tc.head) << tc.name;
        EXPECT_EQ(w.out[0], tc.size) << tc.name;
        EXPECT_EQ(w.out[tc.size], kUntouched) << tc.name;
    }
}

TEST(LUT2BIOS, StorableLutsRoundTripThroughBothStrings) {
    for (const Lut16& lut : {test::IdentityLut(), RedDip(), HuffmanShorter(), EqualLengths(), Bowed()}) {
        const Written w = Store(lut);
        ASSERT_EQ(w.status, 0);
        EXPECT_EQ(Load(Declared(w), static_cast<int32_t>(w.method)).lut, lut);
        std::optional<Bytes> strings[2];  // by method
        test::CaptureStdout([&] {
            const auto d = MakeDifferences(lut.data());
            strings[kMethodHuffman] = EncodeHuffmanString(*d);
            strings[kMethodPositionLists] = EncodePositionLists(*d);
        });
        for (int32_t method : {0, 1}) {
            const Read r = Load(*strings[method], method);
            EXPECT_EQ(r.status, 0) << method;
            EXPECT_EQ(r.lut, lut) << method;
        }
    }
    EXPECT_EQ(Load({1}, kMethodPositionLists).lut, test::IdentityLut());  // an empty body
    EXPECT_EQ(Load({0}, kMethodPositionLists).lut, test::IdentityLut());  // and no body at all
}

TEST(LUT2BIOS, HuffmanStringOfTheIdentityAndBothTranscripts) {
    std::optional<Bytes> string;
    const std::string printed = test::CaptureStdout([&] {
        const auto d = MakeDifferences(test::IdentityLut().data());
        string = EncodeHuffmanString(*d);
    });
    EXPECT_EQ(string, IdentityHuffmanString());
    EXPECT_EQ(printed, "\n=== Get Huffman Table v1 ===\n\n=== Create Huffman Tree ===\n" + kTreeText + kCodebookText +
                           "\n=== Encode ===\n\n=== Convert to Bios String ===\n"
                           "# of byte used: 97\n# of bit used in last byte: 3\n");
    const std::string decodeText =
        "\n=== Get Huffman Table v1 ===\n\n=== Convert from Bios String ===\n\n=== Create Huffman Tree ===\n" +
        kTreeText + "\n=== Decode ===\n";
    Lut16 lut{};
    EXPECT_EQ(test::CaptureStdout([&] { BIOS2LUT(lut.data(), string->data(), kLutEntries, 0); }), decodeText);
    EXPECT_EQ(lut, test::IdentityLut());
    for (const Bytes& headless : {Bytes{1}, Bytes{0, 0x20}})  // no data, whatever follows the length byte
        EXPECT_EQ(test::CaptureStdout([&] { EXPECT_EQ(BIOS2LUT(lut.data(), headless.data(), kLutEntries, 0), -1); }),
                  decodeText);
}

TEST(LUT2BIOS, UnstorableLutFails) {
    Lut16 redStartsHigh = test::IdentityLut(), blueStartsHigh = test::IdentityLut();
    redStartsHigh[LutIndex(0, 0)] = 1;
    blueStartsHigh[LutIndex(2, 0)] = 255;
    const Lut16 redStepOfEight = LutFromSteps({{0, 0, 0, 0, 0, 0, 0, 8}, 1});
    for (const Lut16& lut : {redStartsHigh, blueStartsHigh, redStepOfEight}) {
        const Written w = Store(lut);
        EXPECT_EQ(w.status, -1);
        EXPECT_EQ(w.method, kMethodPositionLists);
        EXPECT_EQ(w.out, Bytes(kOutSize, kUntouched));
    }
    const std::string printed = Store(redStepOfEight).printed;
    EXPECT_NE(printed.find("\n=== Encode ===\nNot found 8 in codebook!!!\nEncode() failed!!!\n"), std::string::npos);
}

TEST(LUT2BIOS, FallingGreenIsListedAsRising) {
    Lut16 lut = test::IdentityLut();
    for (int i = 100; i < 256; ++i) lut[LutIndex(1, i)] = static_cast<uint16_t>((i - 2) * 256);
    const Written w = Store(lut);
    EXPECT_EQ(w.status, 0);
    EXPECT_EQ(w.method, kMethodPositionLists);
    EXPECT_EQ(Declared(w), (Bytes{4, 0, 0, 0}));
    EXPECT_EQ(Load(Declared(w), kMethodPositionLists).lut, test::IdentityLut());
}

TEST(LUT2BIOS, LongStringReturnsItsLengthOrFails) {
    const Written overMax = Store(test::IdentityLut(), 3);
    EXPECT_EQ(overMax.status, 4);
    EXPECT_EQ(overMax.method, kMethodPositionLists);
    EXPECT_EQ(overMax.out, Bytes(kOutSize, kUntouched));

    for (int32_t capacity : {3, 0, -1}) {
        const Written overCapacity = Store(test::IdentityLut(), 255, capacity);
        EXPECT_EQ(overCapacity.status, -1);
        EXPECT_EQ(overCapacity.out, Bytes(kOutSize, kUntouched));
    }
    EXPECT_EQ(Store(test::IdentityLut(), 4, 4).status, 0);
}

TEST(LUT2BIOS, OverlongHuffmanDataGoesOutBehindLengthTwo) {
    const Written w = Store(StepsOfThree(), 2, 258);
    EXPECT_EQ(w.status, 0);
    EXPECT_EQ(w.method, kMethodHuffman);
    EXPECT_EQ(w.out[0], 2);
    EXPECT_EQ(w.out[1], 0x10);
    EXPECT_EQ(w.out[2], 0x2A);    // codes 01 01 01 0001: bits 0 1 0 1 0 1 0 0
    EXPECT_EQ(w.out[257], 0x22);  // the last six bits, 0 1 0 0 0 1, end the final blue triple
    EXPECT_EQ(w.out[258], kUntouched);
    EXPECT_NE(w.printed.find("# of byte used: 0\n# of bit used in last byte: 0\n"), std::string::npos);
    EXPECT_EQ(w.printed.find("String size"), std::string::npos);
    EXPECT_EQ(Load(Bytes(w.out.begin(), w.out.begin() + 258), kMethodHuffman).status, -1);
    EXPECT_EQ(Store(StepsOfThree(), 255, 257).status, -1);
}

TEST(LUT2BIOS, LongPositionListsWrapTheLengthByte) {
    // 15 count bytes and 255 red positions: a body of 270 bytes.
    const Written w = Store(StepsOfFive(), 1000);
    EXPECT_EQ(w.status, 0);
    EXPECT_EQ(w.method, kMethodPositionLists);
    EXPECT_EQ(w.out[0], (270 & 0xFF) + 1);
    EXPECT_EQ(w.out[270], 255);  // the last red position of value 5
    EXPECT_EQ(w.out[271], kUntouched);
    EXPECT_EQ(Store(StepsOfFive(), 255).status, 271);
    EXPECT_EQ(Load(Bytes(w.out.begin(), w.out.begin() + 271), kMethodPositionLists).status, -1);
}

TEST(BIOS2LUT, BadInputFailsAndLeavesTheLutUntouched) {
    Bytes foreignTable = IdentityHuffmanString();
    foreignTable[1] = 0x23;
    Bytes greenShort = IdentityHuffmanString();
    greenShort[2 + 50] = 0xFE;  // two green ones become one 0
    Bytes tooMany(255, 0xFF);
    tooMany[1] = 0x18;  // 2024 ones

    struct Case {
        const char* name;
        Bytes string;
        int32_t method;
        int32_t count;
    } cases[] = {
        {"foreign table version", foreignTable, 0, kLutEntries},
        {"count 767, huffman", IdentityHuffmanString(), 0, 767},
        {"count 767, lists", {4, 0, 0, 0}, 1, 767},
        {"count 769, lists", {4, 0, 0, 0}, 1, 769},
        {"method 2", {4, 0, 0, 0}, 2, kLutEntries},
        {"method -1", {4, 0, 0, 0}, -1, kLutEntries},
        {"green ends at 254", greenShort, 0, kLutEntries},
        {"more symbols than count", tooMany, 0, kLutEntries},
        {"position 0 decodes to 1", {3, 0x11, 0x01}, 0, kLutEntries},
        {"huffman length 1", {1}, 0, kLutEntries},
        {"huffman length 0", {0, 0x18}, 0, kLutEntries},
        {"red ends at 254", {5, 1, 0, 0, 200}, 1, kLutEntries},
        {"green ends at 256", {7, 0, 0, 0, 0, 1, 0, 9}, 1, kLutEntries},
        {"counts beyond the body", {4, 0, 0, 5, 1, 2, 3, 4, 5}, 1, kLutEntries},
        {"body ends inside the counts", {5, 0, 0, 0, 0, 0, 0, 0}, 1, kLutEntries},
    };
    for (const auto& tc : cases) {
        const Read r = Load(tc.string, tc.method, tc.count);
        EXPECT_EQ(r.status, -1) << tc.name;
        EXPECT_EQ(r.lut, Untouched()) << tc.name;
    }
}

}  // namespace
}  // namespace quarnel::codec
