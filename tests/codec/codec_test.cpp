// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "codec/bit_packing.h"
#include "codec/huffman_coding.h"
#include "codec/huffman_string.h"
#include "codec/huffman_tree.h"
#include "codec/lut_differences.h"
#include "codec/position_lists.h"
#include "core/half_up.h"
#include "lut/sample_luts.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"
#include "support/golden.h"

namespace quarnel::codec {
namespace {

using Bytes = std::vector<uint8_t>;
using test::Row;

constexpr uint8_t kUntouched = 0xAA;
constexpr uint16_t kUntouchedEntry = 0x1234;

std::string Text(const BitSequence& bits) {
    std::string text;
    for (bool bit : bits) text += bit ? '1' : '0';
    return text;
}

std::string Hex(const Bytes& bytes) {
    std::ostringstream out;
    out << std::hex << std::setfill('0');
    for (std::size_t i = 0; i < bytes.size(); ++i) out << std::setw(2) << int{bytes[i]} << (i % 32 == 31 ? "\n" : " ");
    return out.str() + "\n";
}

TEST(Huffman, FixedTableCodebookAndTranscripts) {
    std::string text;
    for (int round = 0; round < 2; ++round) {  // the shared walk path is empty again after a build
        uint32_t symbols[5], lengths[5], codes[5], count = 0;
        double p[5];
        int32_t status = -9;
        text += test::CaptureStdout([&] { status = GetHfmInfor(symbols, p, lengths, codes, &count); });
        text += Row("status", status, "count", count);
        for (int i = 0; i < 5; ++i) text += Row(symbols[i], p[i], lengths[i], codes[i]);
    }
    int32_t version = 0;
    text += test::CaptureStdout([&] { version = ShowHfmVer(); });
    text += Row("ShowHfmVer", version);
    HuffmanTree tree;
    test::CaptureStdout([&] { tree = BuildTreeV1(); });
    for (const std::vector<int>& symbols : std::vector<std::vector<int>>{{1, 1, 0, 2, 4, 3}, {1, 5}, {1, -1}, {8}}) {
        BitSequence bits;
        bool ok = false;
        text += test::CaptureStdout([&] { ok = Encode(tree, symbols.data(), symbols.size(), bits); });
        for (std::size_t tail = 0; tail < 4; ++tail) {  // an unfinished code is dropped
            BitSequence padded = bits;
            padded.resize(bits.size() + tail, false);
            std::vector<int> decoded;
            Decode(tree, padded, decoded);
            text += Row("encode", ok, Text(bits), "tail", std::string(tail, '0'), "decodes to");
            for (int symbol : decoded) text += Row(symbol);
        }
    }
    test::ExpectGolden("huffman.txt", text);
}

// Strings longer than 253 bytes do not fit a block; the packing reports them as empty.
TEST(BitPacking, FillsAtMost253Bytes) {
    const PackedBits full = PackBits(BitSequence(253 * 8, true)), over = PackBits(BitSequence(253 * 8 + 1, true));
    EXPECT_EQ(std::tuple(full.bytesUsed, full.bitsInLastByte, over.bytesUsed, over.bitsInLastByte),
              std::tuple(253, 8, 0, 0));
}

// A LUT from one plane's 8-bit differences: 0, then `pattern` repeated `times`, then 1 up to position 255.
struct PlaneSteps {
    std::vector<int> pattern;
    int times = 0;
};

Lut16 LutFromSteps(const PlaneSteps& r, const PlaneSteps& g = {}, const PlaneSteps& b = {}) {
    Lut16 lut{};
    const PlaneSteps* planes[3] = {&r, &g, &b};
    for (int c = 0; c < 3; ++c) {
        std::vector<int> d{0};
        for (int t = 0; t < planes[c]->times; ++t)
            d.insert(d.end(), planes[c]->pattern.begin(), planes[c]->pattern.end());
        d.resize(kLutLevels, 1);
        for (int i = 0, value = 0; i < kLutLevels; ++i)
            lut[LutIndex(c, i)] = static_cast<uint16_t>((value += d[static_cast<std::size_t>(i)]) * kLutStep);
    }
    return lut;
}

struct Named {
    const char* name;
    Lut16 lut;
};

std::vector<Named> SampleLuts() {
    std::vector<int> tie;  // 12 pairs 0, 2 and 29 triples 0, 0, 3: both strings are 121 bytes
    for (int k = 0; k < 12; ++k) tie.insert(tie.end(), {0, 2});
    for (int k = 0; k < 29; ++k) tie.insert(tie.end(), {0, 0, 3});
    Lut16 fallingGreen = test::IdentityLut(), redHigh = test::IdentityLut(), blueHigh = test::IdentityLut();
    for (int i = 100; i < 256; ++i) fallingGreen[LutIndex(1, i)] = static_cast<uint16_t>((i - 2) * 256);
    redHigh[LutIndex(0, 0)] = 1;
    blueHigh[LutIndex(2, 0)] = 255;
    return {
        {"identity", test::IdentityLut()},
        {"red dip", LutFromSteps({{1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 2}, 1})},
        {"huffman shorter", LutFromSteps({}, {{0, 2}, 57})},
        {"tie", LutFromSteps({tie, 1})},
        {"steps of three", LutFromSteps({{0, 0, 3}, 85}, {{0, 0, 3}, 85}, {{0, 0, 3}, 85})},
        {"steps of five", LutFromSteps({{0, 0, 0, 0, 5}, 51})},
        {"bowed", LutFromSteps({{1, 0, 2}, 20}, {{1, 2, 0, 1}, 25}, {{0, 1, 1, 2}, 30})},
        {"falling green", fallingGreen},
        {"red starts high", redHigh},
        {"blue starts high", blueHigh},
        {"red step of eight", LutFromSteps({{0, 0, 0, 0, 0, 0, 0, 8}, 1})},
    };
}

// Loads `string`, returning the transcript and how the result compares with `lut`.
std::string LoadTranscript(const Bytes& string, int32_t method, const Lut16& lut) {
    Lut16 out;
    out.fill(kUntouchedEntry);
    int32_t status = 0;
    const std::string printed =
        test::CaptureStdout([&] { status = BIOS2LUT(out.data(), string.data(), kLutEntries, method); });
    const char* result = out == lut ? "same" : out[0] == kUntouchedEntry ? "untouched" : "differs";
    return printed + Row("load", method, "status", status, result);
}

// The sums taken one at a time: a plane must stay within 0..255 all the way and end at 255.
std::optional<Lut16> SummedOneByOne(const Differences& d) {
    Lut16 lut{};
    int64_t sum = 0;
    for (std::size_t i = 0; i < d.size(); ++i) {
        sum = i % kLutLevels == 0 ? 0 : sum + d[i];
        if (sum < 0 || sum > 255 || (i % kLutLevels == kTopLevel && sum != 255)) return std::nullopt;
        lut[i] = static_cast<uint16_t>(sum * 256);
    }
    return lut;
}

TEST(SumDifferences, AgreesWithSummingOneByOne) {
    std::mt19937 rng(20261125);
    std::uniform_int_distribution<int> at(1, 255), small(-3, 3);
    const int extremes[] = {std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 256, -1};
    for (int round = 0; round < 2000; ++round) {
        Differences d{};
        for (int i = 0; i < kLutEntries; ++i) d[static_cast<std::size_t>(i)] = i % kLutLevels != 0;
        for (int k = round % 5, delta = 0; k > 0; --k) {  // moves that keep a plane's end; every fourth round, not
            d[static_cast<std::size_t>(LutIndex(round % 3, at(rng)))] += delta = small(rng);
            if (round % 4 != 0) d[static_cast<std::size_t>(LutIndex(round % 3, at(rng)))] -= delta;
        }
        if (round % 97 == 0) d[static_cast<std::size_t>(LutIndex(1, at(rng)))] = extremes[round / 97 % 4];
        Lut16 lut;
        const bool summed = SumDifferences(d, lut.data());
        ASSERT_EQ(summed ? std::optional(lut) : std::nullopt, SummedOneByOne(d)) << round;
    }
}

TEST(LutString, StoresAndLoadsSampleLutsUnderEveryLimit) {
    std::string text;
    for (const auto& [name, lut] : SampleLuts()) {
        const std::pair<uint32_t, int32_t> limits[] = {{255, 1024}, {3, 1024}, {4, 4},     {255, 3},    {255, 0},
                                                       {255, -1},   {2, 258},  {255, 257}, {1000, 1024}};
        for (const auto& [maxSize, capacity] : limits) {
            Bytes out(1024, kUntouched);
            uint32_t method = 99;
            int32_t status = 0;
            const std::string printed =
                test::CaptureStdout([&] { status = LUT2BIOS(lut.data(), maxSize, out.data(), capacity, &method); });
            while (!out.empty() && out.back() == kUntouched) out.pop_back();
            text += Row("==", name, maxSize, capacity, "status", status, "method", method) + printed + Hex(out);
            if (status == 0) text += LoadTranscript(out, static_cast<int32_t>(method), lut);
        }
        std::optional<Bytes> strings[2];  // by method: Huffman, position lists
        test::CaptureStdout([&] {
            if (const auto d = MakeDifferences(lut.data())) {
                strings[0] = EncodeHuffmanString(*d);
                strings[1] = EncodePositionLists(*d);
            }
        });
        for (int32_t method : {0, 1})
            text += strings[method] ? Hex(*strings[method]) + LoadTranscript(*strings[method], method, lut)
                                    : Row("no string", method);
    }
    test::ExpectGolden("lut_strings.txt", text);
}

TEST(Exports, NullPointersFailAndWriteNothing) {
    uint32_t a[5] = {}, b[5] = {}, c[5] = {}, count = 7, method = 99;
    double p[5] = {};
    EXPECT_EQ(GetHfmInfor(nullptr, p, b, c, &count) + GetHfmInfor(a, nullptr, b, c, &count) +
                  GetHfmInfor(a, p, nullptr, c, &count) + GetHfmInfor(a, p, b, nullptr, &count) +
                  GetHfmInfor(a, p, b, c, nullptr),
              -5);
    EXPECT_EQ(count + b[0] + c[0] + a[4], 7u);
    Lut16 lut = test::IdentityLut();
    Bytes out(8, kUntouched);
    EXPECT_EQ(LUT2BIOS(nullptr, 255, out.data(), 8, &method) + LUT2BIOS(lut.data(), 255, nullptr, 8, &method) +
                  LUT2BIOS(lut.data(), 255, out.data(), 8, nullptr),
              -3);
    EXPECT_EQ(std::tuple(method, out), std::tuple(99u, Bytes(8, kUntouched)));
    const Bytes string{4, 0, 0, 0};
    lut.fill(kUntouchedEntry);
    EXPECT_EQ(BIOS2LUT(nullptr, string.data(), kLutEntries, 1) + BIOS2LUT(lut.data(), nullptr, kLutEntries, 1), -2);
    EXPECT_EQ(lut[0], kUntouchedEntry);
}

// The identity as a Huffman string: 0 then 255 ones per plane, 771 bits.
Bytes IdentityHuffmanString() {
    Bytes s{99, 0x13};
    for (int planeEnd : {0xFE, 0xFD, 0xFB}) {
        s.push_back(static_cast<uint8_t>(planeEnd));
        s.insert(s.end(), 31, 0xFF);
    }
    s.push_back(0x07);
    return s;
}

TEST(BIOS2LUT, BadInputFailsAndLeavesTheLutUntouched) {
    Bytes foreignTable = IdentityHuffmanString(), greenShort = IdentityHuffmanString(), tooMany(255, 0xFF);
    foreignTable[1] = 0x23;
    greenShort[2 + 50] = 0xFE;  // two green ones become one 0
    tooMany[1] = 0x18;          // 2024 ones
    const struct {
        const char* name;
        Bytes string;
        int32_t method, count;
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
        Lut16 lut;
        lut.fill(kUntouchedEntry);
        int32_t status = 0;
        test::CaptureStdout([&] { status = BIOS2LUT(lut.data(), tc.string.data(), tc.count, tc.method); });
        EXPECT_EQ(std::tuple(status, lut[0], lut[767]), std::tuple(-1, kUntouchedEntry, kUntouchedEntry)) << tc.name;
    }
    EXPECT_EQ(LoadTranscript({1}, 1, test::IdentityLut()), Row("load", 1, "status", 0, "same"));  // an empty body
    EXPECT_EQ(LoadTranscript({0}, 1, test::IdentityLut()), Row("load", 1, "status", 0, "same"));  // no body at all
    for (const Bytes& headless : {Bytes{1}, Bytes{0, 0x20}}) {  // no data bytes, whatever follows the length byte
        const std::string t = LoadTranscript(headless, 0, test::IdentityLut());
        EXPECT_NE(t.find("=== Convert from Bios String ===\n\n=== Create Huffman Tree ==="), std::string::npos);
        EXPECT_EQ(t.substr(t.find("\n=== Decode ===\n")),
                  "\n=== Decode ===\n" + Row("load", 0, "status", -1, "untouched"));
    }
    EXPECT_EQ(LoadTranscript(IdentityHuffmanString(), 0, test::IdentityLut()).substr(0, 1), "\n");
}

// Seeded random panel curves (a power law per plane, exponent 0.6..1.6) that
// the string can hold decode from it to exactly the curve they came from.
TEST(LutString, RandomCurvesDecodeToTheCurveTheyCameFrom) {
    std::mt19937 rng(17);
    std::uniform_real_distribution<double> exponent(0.6, 1.6);
    int stored = 0;
    for (int n = 0; n < 200; ++n) {
        Lut16 lut{}, back{};
        for (int c = 0; c < 3; ++c) {
            const double g = exponent(rng);
            for (int i = 0; i < 256; ++i)
                lut[LutIndex(c, i)] = static_cast<uint16_t>(HalfUp(std::pow(i / 255.0, g) * 255) * 256);
        }
        Bytes out(256);
        uint32_t method = 0;
        int32_t status[2] = {};
        test::CaptureStdout([&] {
            status[0] = LUT2BIOS(lut.data(), 255, out.data(), 256, &method);
            status[1] = BIOS2LUT(back.data(), out.data(), kLutEntries, static_cast<int32_t>(method));
        });
        if (status[0] != 0) continue;
        ++stored;
        ASSERT_EQ(status[1], 0);
        ASSERT_EQ(back, lut) << n;
    }
    EXPECT_GT(stored, 20);
}

}  // namespace
}  // namespace quarnel::codec
