// SPDX-License-Identifier: MIT
// The facts that the library and the tool share, against published values
// and the block's own arithmetic.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "calib/block_writer.h"
#include "facts/block_layout.h"
#include "facts/crc16.h"
#include "facts/loci.h"

namespace quarnel::facts {
namespace {

TEST(Crc16, MatchesThePublishedCheckValueAndTheBitByBitReference) {
    const std::string check = "123456789";
    EXPECT_EQ(Crc16(reinterpret_cast<const uint8_t*>(check.data()), check.size()), 0x29B1);
    uint16_t initial = 0;
    const CrcTable table = MakeCrcTable(initial);
    EXPECT_EQ(std::tuple(initial, table[0], table[1], table[128], table[255]),
              std::tuple(0xFFFF, 0, 0x1021, 0x9188, 0x1EF0));
    const std::vector<uint8_t> block = test::WriteBlock({});  // every length: groups of four and bytes left over
    for (std::size_t n = 0; n <= block.size(); ++n)
        ASSERT_EQ(Crc16(block.data(), n), test::ReferenceCrc16(block.data(), n));
}

// Each version's fields follow one another without a gap or an overlap, from
// byte 0 to the last byte that version uses.
TEST(BlockLayout, EachVersionsFieldsTileTheBlockFromItsStart) {
    const std::vector<std::pair<int, std::size_t>> used = {{0, 60},  {1, 60},  {2, 62},  {3, 70},  {4, 91},
                                                           {5, 297}, {6, 512}, {7, 512}, {8, 512}, {255, 512}};
    for (const auto& [version, end] : used) {
        std::vector<BlockField> carried;
        std::ranges::copy_if(kBlockFields, std::back_inserter(carried),
                             [&](const BlockField& f) { return Carries(f, version); });
        ASSERT_TRUE(std::ranges::is_sorted(carried, {}, &BlockField::offset)) << version;
        std::size_t at = 0;
        for (const BlockField& f : carried) {
            EXPECT_EQ(f.offset, at) << "version " << version << ": " << f.name;
            at = End(f);
        }
        EXPECT_EQ(at, end) << version;
        EXPECT_TRUE(Carries(TrailerOf(version).lutString, version) == (version >= 6)) << version;
    }
}

std::string Versions(const BlockField& f) {
    if (f.firstVersion == 0 && f.lastVersion == kLastVersion) return "all";
    return std::to_string(f.firstVersion) + (f.firstVersion == f.lastVersion ? " only" : " on");
}

std::string StoredAs(const BlockField& f) {
    std::ostringstream out;
    switch (f.type) {
        case FieldType::Characters:
            out << f.size << " characters";
            break;
        case FieldType::Byte:
            out << (f.size == 1 ? "unsigned byte" : std::to_string(f.size) + " unsigned bytes");
            break;
        case FieldType::BigEndian:
            out << "unsigned " << 8 * f.size << "-bit, big-endian";
            break;
        case FieldType::Singles:
            out << f.size / kSingleSize << " single-precision float" << (f.size > kSingleSize ? "s" : "");
            break;
        case FieldType::Crc:
            out << "CRC-16, low byte first";
            break;
        case FieldType::Reserved:
            out << "not read";
            break;
        case FieldType::StringLength:
            out << "unsigned byte N";
            break;
        case FieldType::String:
            out << "N bytes";
            break;
    }
    return out.str();
}

// The field table as the block-format document shows it.
std::string FieldTable() {
    std::ostringstream table;
    table << "| Offset | Size | Versions | Field | Stored as |\n|---|---|---|---|---|\n";
    for (const BlockField& f : kBlockFields) {
        table << "| " << f.offset << " | " << (f.type == FieldType::String ? "N, at most " : "") << f.size << " | "
              << Versions(f) << " | ";
        if (f.type == FieldType::Reserved)
            table << "reserved";
        else
            table << '`' << f.name << '`';
        table << " | " << StoredAs(f) << " |\n";
    }
    return table.str();
}

// With QUARNEL_REGENERATE=1 the document's table is written anew instead.
TEST(BlockLayout, TheBlockFormatDocumentShowsTheFieldTable) {
    const std::string path = QUARNEL_DOCS_DIR "/block-format.md";
    std::ostringstream read;
    read << std::ifstream(path, std::ios::binary).rdbuf();
    std::string doc = read.str();
    const std::string begin = "<!-- block fields: generated from src/facts/block_layout.h -->\n";
    const std::size_t from = doc.find(begin), to = doc.find("<!-- end of block fields -->");
    ASSERT_TRUE(from != std::string::npos && to != std::string::npos && from < to) << path;
    const std::size_t start = from + begin.size();
    const char* regenerate = std::getenv("QUARNEL_REGENERATE");
    if (regenerate != nullptr && std::string(regenerate) == "1") {
        doc.replace(start, to - start, FieldTable());
        std::ofstream(path, std::ios::binary) << doc;
        return;
    }
    EXPECT_EQ(doc.substr(start, to - start), FieldTable()) << "QUARNEL_REGENERATE=1 writes " << path << " anew";
}

// Published Planckian chromaticities (CIE 1931, 2 degrees) and CIE daylight
// illuminants, one point inside every segment of both approximations; the
// approximations keep within 5e-4 of them.
TEST(Loci, PublishedChromaticities) {
    const struct {
        Xy (*locus)(double);
        double kelvin;
        Xy published;
    } points[] = {
        {PlanckianXy, 2000, {0.52669, 0.41331}},  {PlanckianXy, 3000, {0.43694, 0.40404}},
        {PlanckianXy, 5000, {0.34511, 0.35161}},  {PlanckianXy, 6500, {0.31352, 0.32363}},
        {PlanckianXy, 10000, {0.28070, 0.28844}}, {DaylightXy, 5003, {0.34567, 0.35850}},  // D50
        {DaylightXy, 6504, {0.31271, 0.32902}},                                            // D65
        {DaylightXy, 7504, {0.29902, 0.31485}},                                            // D75
    };
    for (const auto& p : points) {
        const Xy xy = p.locus(p.kelvin);
        EXPECT_NEAR(xy.x, p.published.x, 5e-4) << p.kelvin;
        EXPECT_NEAR(xy.y, p.published.y, 5e-4) << p.kelvin;
    }
}

// A temperature at a segment's end belongs to the warmer segment: the locus
// runs on from below without a step, and may step by the approximation's
// small error just above.
TEST(Loci, SegmentEndsBelongToTheWarmerSegment) {
    const auto step = [](Xy (*locus)(double), double a, double b) {
        const Xy p = locus(a), q = locus(b);
        return std::max(std::abs(p.x - q.x), std::abs(p.y - q.y));
    };
    const double e = 1e-6;
    for (double end : {double{kPlanckianWarmestEnd}, double{kPlanckianWarmEnd}}) {
        EXPECT_LT(step(PlanckianXy, end - e, end), 1e-9) << end;
        EXPECT_LT(step(PlanckianXy, end, end + e), 2e-4) << end;
    }
    EXPECT_LT(step(DaylightXy, kDaylightWarmEnd - e, kDaylightWarmEnd), 1e-9);
    EXPECT_LT(step(DaylightXy, kDaylightWarmEnd, kDaylightWarmEnd + e), 2e-4);
}

}  // namespace
}  // namespace quarnel::facts
