// SPDX-License-Identifier: MIT
#include "calib/block_parser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "calib/block_writer.h"
#include "support/capture.h"
#include "support/golden.h"

namespace quarnel {
namespace {

using test::Row;

// Every field the parser fills, with what it printed.
std::string Parsed(const std::string& title, const std::vector<uint8_t>& block, int32_t length = kBlockSize) {
    BiosData d;
    std::copy_n(block.begin(), d.raw.size(), d.raw.begin());
    d.length = length;
    bool inBounds = false;
    std::string printed = test::CaptureStdout([&] { inBounds = ParseHeader(d); });
    std::replace(printed.begin(), printed.end(), '\0', '@');  // a zero magic byte, kept a text file
    return Row("==", title, "in bounds", inBounds, "status", d.BiosDataStatus, "crc", CheckHeaderCrc(d),
               CheckToneCrc(d)) +
           printed + Row(+d.version, +d.subVersion, d.dataWord, d.word60, "cursor", d.cursor) +
           test::RowOf(d.bytes66.data(), 4) + test::RowOf(&d.primaries[0][0], 12) +
           Row(d.firstWhite[0], d.firstWhite[1], d.targetLuminance, d.defaultWhite[0], d.defaultWhite[1]) +
           test::RowOf(&d.tone[0][0], 3 * kToneRowSize) + Row(+d.useMethod, +d.lutStringSize) +
           test::RowOf(d.lutString.data(), d.lutString.size());
}

TEST(ParseHeader, VersionsMagicsLutStringsAndLengths) {
    std::string text;
    for (uint8_t version = 1; version <= 8; ++version)
        text += Parsed("version " + std::to_string(version), test::WriteBlock({.version = version}));
    for (uint8_t version : {uint8_t{6}, uint8_t{7}})  // the trailer sits one byte later from version 7
        text += Parsed(
            "trailer",
            test::WriteBlock(
                {.version = version, .byte297 = 0x77, .useMethod = 0, .lutString = {6, 0x17, 0x4B, 0x40, 0x11, 0x22}}));
    for (const std::array<uint8_t, 4>& magic : std::initializer_list<std::array<uint8_t, 4>>{
             {'R', '2', 'R', 0}, {'R', '2', 'R', 'X'}, {'H', 'D', 'O', 'c'}, {0, 0, 0, 0}})
        text += Parsed("magic", test::WriteBlock({.magic = magic}));
    for (auto [version, size] : {std::pair<uint8_t, uint8_t>{7, 212}, {7, 213}, {6, 213}, {6, 214}, {8, 255}}) {
        std::vector<uint8_t> string(size, 0xEE);
        string[0] = size;
        text +=
            Parsed("lut string " + std::to_string(size), test::WriteBlock({.version = version, .lutString = string}));
    }
    for (int32_t length : {0, 3, 11, 59, 102, 296})
        text += Parsed("length " + std::to_string(length), test::WriteBlock({}), length);
    for (int at : {4, 5, 8, 11, 12, 35, 59, 60, 61, 70, 71, 90, 91, 102, 103, 200, 282, 285, 296}) {
        std::vector<uint8_t> block = test::WriteBlock({.version = 5});
        block[static_cast<std::size_t>(at)] ^= 0x11;  // only the primaries and the tone levels are covered
        text += Parsed("flipped " + std::to_string(at), block);
    }
    test::ExpectGolden("block_parse.txt", text);
}

}  // namespace
}  // namespace quarnel
