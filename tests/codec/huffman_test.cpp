#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "codec/bit_packing.h"
#include "codec/huffman_coding.h"
#include "codec/huffman_tree.h"
#include "support/capture.h"

namespace quarnel::codec {
namespace {

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

TEST(HuffmanTree, TableV1GivesTheFixedCodebook) {
    const HuffmanTree tree = QuietTree();
    const std::map<int, BitSequence> expected{
        {0, Bits("01")}, {1, Bits("1")}, {2, Bits("001")}, {3, Bits("0001")}, {4, Bits("0000")}};
    EXPECT_EQ(tree.codebook, expected);
}

TEST(HuffmanTree, BuildPrintsTheTableAndClosesTheWalk) {
    const std::string printed = test::CaptureStdout([] { BuildTreeV1(); });
    EXPECT_EQ(printed,
              "ptable before sorting...\n"
              "[0] 0:0.050100\n[1] 1:0.904300\n[2] 2:0.044100\n[3] 3:0.001200\n[4] 4:0.000100\n\n"
              "ptable after sorting...\n"
              "[0] 1:0.904300\n[1] 0:0.050100\n[2] 2:0.044100\n[3] 3:0.001200\n[4] 4:0.000100\n\n"
              "codeVec is empty\n");
    // The shared path is empty again, so a second build gives the same codes.
    EXPECT_EQ(QuietTree().codebook, QuietTree().codebook);
}

TEST(HuffmanTree, PrintsTheCodebook) {
    const HuffmanTree tree = QuietTree();
    EXPECT_EQ(test::CaptureStdout([&] { PrintCodebook(tree); }),
              "Codebook <Key> : <Code>\n0 : 01\n1 : 1\n2 : 001\n3 : 0001\n4 : 0000\n");
}

TEST(HuffmanCoding, EncodesAndDecodesASymbolSequence) {
    const HuffmanTree tree = QuietTree();
    const std::vector<int> symbols{1, 1, 0, 2, 4, 3};
    BitSequence bits;
    ASSERT_TRUE(Encode(tree, symbols.data(), symbols.size(), bits));
    EXPECT_EQ(bits, Bits("110100100000001"));

    std::vector<int> decoded;
    Decode(tree, bits, decoded);
    EXPECT_EQ(decoded, symbols);
}

TEST(HuffmanCoding, DecodeDropsAnUnfinishedCode) {
    const HuffmanTree tree = QuietTree();
    for (const char* tail : {"0", "00", "000"}) {
        std::vector<int> decoded;
        Decode(tree, Bits(std::string("1101") + tail), decoded);
        EXPECT_EQ(decoded, (std::vector<int>{1, 1, 0})) << tail;
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

TEST(BitPacking, PacksLeastSignificantBitFirst) {
    struct Case {
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
        EXPECT_EQ(UnpackBits(packed.bytes.data(), packed.bytesUsed), [&] {
            BitSequence padded = Bits(tc.bits);
            padded.resize(packed.bytes.size() * 8, false);
            return padded;
        }()) << tc.bits;
    }
}

TEST(BitPacking, ReportsNothingBeyond253Bytes) {
    const PackedBits full = PackBits(BitSequence(253 * 8, true));
    EXPECT_EQ(full.bytesUsed, 253);
    EXPECT_EQ(full.bitsInLastByte, 8);

    const PackedBits over = PackBits(BitSequence(253 * 8 + 1, true));
    EXPECT_EQ(over.bytes.size(), 254u);
    EXPECT_EQ(over.bytes.back(), 0x01);
    EXPECT_EQ(over.bytesUsed, 0);
    EXPECT_EQ(over.bitsInLastByte, 0);
}

}  // namespace
}  // namespace quarnel::codec
