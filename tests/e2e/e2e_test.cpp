// SPDX-License-Identifier: MIT
// Every request end to end through the exported entry points: a calibration file of each block version (and
// the ways of having none), then every request with and without its flags and every VX mode, for every lut api
// type. One record per panel in tests/data/e2e/records: statuses, gains and every output array by value (the
// NVIDIA floats as the digest of their bytes, which the reference model recomputes), and each call's messages
// and trace log by value. A message text or a trace log is kept as its shape, every number masked as {}, once
// for all panels in tests/data/e2e/messages.txt; the record keeps its numbers and the tables that the trace log
// dumps, and the trace log's float arrays are checked against the call's.

#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <regex>
#include <sstream>

#include "calib/block_writer.h"
#include "e2e/record.h"
#include "platform/fake_acpi_device.h"
#include "platform/fake_display_system.h"
#include "platform/trace_file.h"
#include "quarnel/cctapi.h"
#include "support/capture.h"
#include "support/golden.h"
#include "support/temp_dir.h"

namespace quarnel {
namespace {

using test::Row;
using test::RowOf;

struct Primary {
    double x, y, Y;
};
using Primaries = std::array<Primary, 3>;
constexpr Primaries kSrgb{{{0.640, 0.330, 63.5}, {0.300, 0.600, 214.0}, {0.150, 0.060, 21.6}}};
constexpr Primaries kIps{{{0.633, 0.337, 58.0}, {0.312, 0.618, 190.0}, {0.153, 0.052, 19.5}}};
constexpr Primaries kWide{{{0.680, 0.320, 71.0}, {0.265, 0.690, 229.0}, {0.150, 0.060, 17.5}}};

enum class Source { kFile, kFirmware, kMissingFile };

struct Panel {
    const char* name;
    uint8_t version;
    Primaries rgb = kSrgb;
    double lutGamma = 1.0;  // the factory gamma string's curve (version 6 and later)
    uint32_t method = 1;    // the string method that curve comes out as
    uint8_t step = 16;      // byte 297
    Source source = Source::kFile;
    int32_t userK = 1, panelIndex = 0;
    double scale = 1.0;
    bool badIcc = false, brokenCrc = false;
};

void PrintTo(const Panel& panel, std::ostream* out) { *out << panel.name; }

bool Regenerating() {
    const char* regenerate = std::getenv("QUARNEL_REGENERATE");
    return regenerate != nullptr && std::string(regenerate) == "1";
}

std::string Fnv(const std::string& text) {
    uint64_t h = 14695981039346656037u;
    for (unsigned char ch : text) h = (h ^ ch) * 1099511628211u;
    std::ostringstream hex;
    hex << std::hex << h;
    return hex.str();
}

// The temp folder and the local time vary from run to run, and Windows ends lines in text files with a carriage
// return; the rest of a transcript does not vary.
std::string Normalized(std::string text, const std::string& folder) {
    std::erase(text, '\r');
    for (std::size_t at; (at = text.find(folder)) != std::string::npos;) text.replace(at, folder.size(), "<dir>/");
    for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', end + 1))
        if (end >= 24 && text[end - 21] == ' ' && text[end - 11] == ':' && text[end - 8] == ':')  // ctime
            text.replace(end - 24, 24, "<time>"), end -= 18;
    return text;
}

std::vector<uint8_t> FactoryGammaString(const Panel& p) {
    uint16_t lut[3][256];
    for (int c = 0; c < 3; ++c)
        for (int i = 0; i < 256; ++i)
            lut[c][i] = static_cast<uint16_t>(std::lround(255 * std::pow(i / 255.0, p.lutGamma + 0.02 * c)) * 256);
    std::vector<uint8_t> text(256);
    uint32_t method = 9;
    test::CaptureStdout([&] { EXPECT_EQ(LUT2BIOS(&lut[0][0], 200, text.data(), 256, &method), 0) << p.name; });
    EXPECT_EQ(method, p.method) << p.name;
    text.resize(text[0]);
    return text;
}

std::vector<uint8_t> Block(const Panel& p) {
    test::BlockFields f;
    f.version = p.version;
    f.byte297 = p.step;
    f.breakHeaderCrc = p.brokenCrc;
    f.primaries[9] = f.primaries[10] = f.primaries[11] = 0;
    for (std::size_t r = 0; r < 3; ++r) {
        const auto [x, y, Y] = p.rgb[r];
        const double xyz[3] = {x / y * Y, Y, (1 - x - y) / y * Y};
        for (std::size_t c = 0; c < 3; ++c) f.primaries[9 + c] += f.primaries[r * 3 + c] = static_cast<float>(xyz[c]);
    }
    f.whites = {0.3127f, 0.329f, 0.9f * f.primaries[10], 0.3100f, 0.3230f};
    for (std::size_t ch = 0; ch < 3; ++ch)  // black plus a 2.2 power law of the primary at five levels
        for (double level : {42.0, 86.0, 128.0, 168.0, 210.0})
            for (std::size_t c = 0; c < 3; ++c)
                f.tone.push_back(static_cast<float>(0.2 + std::pow(level / 255, 2.2) * f.primaries[ch * 3 + c]));
    if (p.version >= 6) f.lutString = FactoryGammaString(p), f.useMethod = static_cast<uint8_t>(p.method);
    return test::WriteBlock(f);
}

// One panel's calls in a fresh folder, with no displays, a firmware that holds nothing, and tracing on for
// the calls of lut api type 0.
struct Recorder {
    explicit Recorder(const Panel& panel) : p(panel), block(Block(panel)) {
        if (p.source == Source::kFile) test::WriteFile(dir / "panel.bin", test::AsString(block));
    }

    void Fill(CctContext& ctx, int32_t type) const {
        static constexpr double kIcc[4][3] = {
            {0.4360, 0.2225, 0.0139}, {0.3851, 0.7169, 0.0971}, {0.1431, 0.0606, 0.7141}, {0.9642, 1.0, 0.8249}};
        ctx = {};
        std::copy_n(&kIcc[0][0], 12, &ctx.icc[0][0]);
        ctx.icc[2][2] = p.badIcc ? 0.0 : ctx.icc[2][2];
        for (int i = 0; i < 3 * 256; ++i)
            ctx.oriLut[i / 256][i % 256] = ctx.outLut[i / 256][i % 256] = static_cast<uint16_t>(i % 256 * 256);
        ctx.interval = 1.0, ctx.lutApiType = type, ctx.lutDcModeScale = p.scale, ctx.rdLevels = 3, ctx.rdIndex = 0.5;
        ctx.enableUserK = p.source == Source::kFirmware ? 0 : p.userK, ctx.panelIndex = p.panelIndex;
        ctx.kalzenPath = folder.c_str(), ctx.kalzenFilename = "panel.bin";
    }

    void Case(CctContext& ctx, const char* entry, uint32_t code, const std::function<int32_t()>& call) {
        const bool tracing = ctx.lutApiType == 0;
        if (tracing) test::WriteFile(trace, "");
        if (!tracing) std::filesystem::remove(trace);
        test::DebugCapture debug;
        int32_t status = 0;
        std::string said = test::CaptureStdout([&] { status = call(); });
        for (wchar_t ch : debug.joined()) said += static_cast<char>(ch);
        said = Normalized(said, folder);
        const std::string traced = Normalized(tracing ? test::ReadFile(trace) : "", folder);
        EXPECT_EQ(std::filesystem::exists(trace), tracing) << "no request creates the trace file";
        char head[64];
        std::snprintf(head, sizeof head, "type %d %s 0x%02x interval %g", ctx.lutApiType, entry, code, ctx.interval);
        out += Row(head, "status", status, "out", values.Lut(&ctx.outLut[0][0], 768), "igcl",
                   values.Doubles('I', &ctx.outIgcl[0][0], 768), "nv", NvName(&ctx.outNvPreGamma[0][0]), "said",
                   Shape(said), "trace", Trace(traced, ctx));
        std::string gains =
            Row("  fromBios", ctx.fromBios, "biosVer", ctx.biosVer, "gammaK", ctx.gammaK, "rdIndex", ctx.rdIndex);
        const double* triples[] = {ctx.gainNormal, ctx.gainWarm, ctx.gainCold, ctx.gainReadStrong, ctx.gainReadWeak};
        const char* names[] = {"  Nor", "  W", "  C", "  RdS", "  RdW"};
        for (int i = 0; i < 5; ++i) gains += Row(names[i], triples[i][0], triples[i][1], triples[i][2]);
        if (gains != lastGains) out += lastGains = gains;
    }

    // A text as the name of its shape, every number masked (not the digits of a name), and the name of the list
    // of its numbers.
    std::string Shape(const std::string& said) {
        static const std::regex kWord(R"([A-Za-z_][A-Za-z_0-9]*|-?[0-9]+(\.[0-9]+)?)");
        std::string shape, numbers;
        auto at = said.cbegin();
        for (std::sregex_iterator m(said.begin(), said.end(), kWord), end; m != end; ++m) {
            if (std::isalpha(static_cast<unsigned char>(m->str()[0])) || m->str()[0] == '_') continue;
            shape.append(at, (*m)[0].first) += "{}";
            numbers += (numbers.empty() ? "" : " ") + m->str();
            at = (*m)[0].second;
        }
        shape.append(at, said.cend());
        const std::string name = Fnv(shape);
        shapes[name] = shape;
        return name + " " + values.Name('V', numbers);
    }

    // A trace log by value: its LUT dumps as tables of the record, its float dumps checked against the arrays
    // the call left, and the rest as a shape.
    std::string Trace(const std::string& log, const CctContext& ctx) {
        std::istringstream in(log);
        std::string rest, luts, title;
        std::vector<double> dump;
        for (std::string line; std::getline(in, line) || !dump.empty(); line.clear()) {
            if (line.starts_with("[")) {
                std::istringstream row(line.substr(line.find_first_not_of(':', line.find(']') + 1)));
                for (double v; row >> v;) dump.push_back(v);
                continue;
            }
            const bool igcl = title.starts_with("Out Intel IGCL"), nvidia = title.starts_with("Out Nvidia");
            if (dump.size() == 768 && !igcl) {  // red, green, blue of a level a line
                std::vector<uint16_t> lut(768);
                for (std::size_t i = 0; i < 768; ++i) lut[i % 3 * 256 + i / 3] = static_cast<uint16_t>(dump[i]);
                luts += " " + values.Lut(lut.data(), 768);
            }
            const float* nv =
                title.find("Pre") != std::string::npos ? &ctx.outNvPreGamma[0][0] : &ctx.outNvPostGamma[0][0];
            for (std::size_t i = 0; i < dump.size() && (igcl || nvidia); ++i)
                if (std::abs(dump[i] - (igcl ? ctx.outIgcl[i % 3][i / 3] : nv[i])) > 5.1e-7) {  // six decimals
                    ADD_FAILURE() << p.name << ": " << title << " entry " << i << " shows " << dump[i];
                    break;
                }
            dump.clear();
            if (!line.empty() || in) rest += line + "\n", title = line;
        }
        return Shape(rest) + luts;
    }

    // The float arrays as the digest of their bytes, which the reference model recomputes: by value they would
    // make up most of the records.
    std::string NvName(const float* nv) {
        return "#" + Fnv(std::string(reinterpret_cast<const char*>(nv), 6144 * sizeof(float)));
    }

    std::string Record() {
        out = "block " + RowOf(block.data(), block.size());
        uint16_t curve[3][256];  // a caller's tone curve for the VX modes
        for (int i = 0; i < 3 * 256; ++i)
            curve[i / 256][i % 256] = static_cast<uint16_t>(
                std::floor(255 * std::pow((i % 256) / 255.0, 0.9 + 0.05 * (i / 256)) + 0.5) * 256);
        CctContext caller;
        Fill(caller, 0);
        out += Row("caller scale", p.scale, "enableUserK", caller.enableUserK, "panelIndex", p.panelIndex, "rdLevels",
                   caller.rdLevels, "rdIndex", caller.rdIndex, "file", p.source != Source::kMissingFile, "curve",
                   values.Lut(&curve[0][0], 768)) +
               "icc " + RowOf(&caller.icc[0][0], 12);
        for (int32_t type = 0; type <= 6; ++type) {
            CctContext ctx;
            Fill(ctx, type);
            for (uint32_t code : {0x81u, 0x41u, 0xC1u, 1u}) Case(ctx, "code", code, [&] { return CCTAPI(code, &ctx); });
            const CctContext init = ctx;
            auto run = [&](const char* entry, uint32_t code, double interval, const std::function<int32_t()>& call) {
                ctx = init;
                ctx.interval = interval;
                Case(ctx, entry, code, call);
            };
            for (uint32_t code = 2; code <= 8; ++code)
                for (uint32_t flags : {0u, 0x80u, 0x40u, 0xC0u})
                    for (double interval : {1.0, 0.75, 1.4})
                        if ((code == 2 || interval == 1.0) && (code != 8 || flags < 0x40))
                            run("code", code | flags, interval, [&] { return CCTAPI(code | flags, &ctx); });
            for (int32_t mode : {3, 26, 21, 22, 23, 24, 25, 4, 27})
                for (double interval : {1.0, 0.6, 2.0})
                    if (interval == 1.0 || mode == 3 || mode == 21)
                        run("vx", static_cast<uint32_t>(mode), interval,
                            [&] { return CCTAPI_VX(mode, &ctx, &curve[0][0]); });
        }
        return out + values.Lines();
    }

    const Panel& p;
    std::vector<uint8_t> block;
    test::TempDir dir;
    std::string folder = dir.path().string() + "/";
    std::filesystem::path trace = dir / "CctTrace.txt";
    platform::ScopedTraceFilePath traceScope{trace.string()};
    test::FakeDisplaySystem displays;
    platform::ScopedDisplaySystem displayScope{displays};
    test::FakeAcpiDevice firmware;  // answers nothing
    std::string out, lastGains;
    test::ValueTable values;
    std::map<std::string, std::string> shapes;
};

const Panel kPanels[] = {
    {.name = "v1_ips", .version = 1, .rgb = kIps},
    {.name = "v2_ips", .version = 2, .rgb = kIps, .scale = 0.7},
    {.name = "v3_srgb", .version = 3},
    {.name = "v4_srgb", .version = 4},
    {.name = "v5_wide_tone", .version = 5, .rgb = kWide},
    {.name = "v6_huffman", .version = 6, .rgb = kWide, .lutGamma = 1.3, .method = 0},
    {.name = "v6_lists", .version = 6, .rgb = kIps, .scale = 0.85},
    {.name = "v7_step0", .version = 7, .rgb = kWide, .lutGamma = 1.3, .method = 0, .step = 0},
    {.name = "v7_step16", .version = 7, .rgb = kWide, .lutGamma = 1.3, .method = 0},
    {.name = "v7_step32", .version = 7, .rgb = kWide, .lutGamma = 1.3, .method = 0, .step = 32},
    {.name = "v7_step24", .version = 7, .rgb = kWide, .lutGamma = 1.3, .method = 0, .step = 24},
    {.name = "v7_step64", .version = 7, .rgb = kWide, .lutGamma = 1.3, .method = 0, .step = 64},
    {.name = "v7_step200", .version = 7, .rgb = kWide, .lutGamma = 1.3, .method = 0, .step = 200},
    {.name = "v8", .version = 8, .rgb = kIps, .step = 64, .scale = 0.5},
    {.name = "no_factory_firmware", .version = 4, .source = Source::kFirmware},
    {.name = "no_factory_missing_file", .version = 4, .source = Source::kMissingFile},
    {.name = "no_factory_header_crc", .version = 4, .brokenCrc = true},
    {.name = "panel_index_2", .version = 4, .panelIndex = 2},
    {.name = "bad_icc", .version = 4, .badIcc = true},
    {.name = "user_k_2", .version = 7, .rgb = kWide, .lutGamma = 1.3, .method = 0, .step = 64, .userK = 2},
};

class EndToEnd : public testing::TestWithParam<Panel> {};

// The shapes of a panel's messages and trace logs, each kept once for all panels. Regenerating adds the new ones;
// to drop those no record names (the model's shape check lists them), delete the file and regenerate all panels.
void ExpectShapes(const std::map<std::string, std::string>& shapes) {
    const std::filesystem::path file = std::filesystem::path(QUARNEL_TEST_DATA_DIR) / "e2e/messages.txt";
    const std::string text = std::filesystem::exists(file) ? test::ReadFile(file) : "";
    std::map<std::string, std::string> kept;
    for (std::size_t at = 0; at < text.size();) {  // "## name size", the text and a line end
        const std::size_t gap = text.find(' ', at + 3), end = text.find('\n', gap);
        const std::size_t size = std::stoul(text.substr(gap + 1, end - gap));
        kept[text.substr(at + 3, gap - at - 3)] = text.substr(end + 1, size);
        at = end + 1 + size + 1;
    }
    if (!Regenerating()) {
        for (const auto& [name, shape] : shapes)
            EXPECT_EQ(kept[name], shape) << "not in " << file << " (QUARNEL_REGENERATE=1 adds it)";
        return;
    }
    kept.insert(shapes.begin(), shapes.end());
    std::string out;
    for (const auto& [name, shape] : kept)
        out += "## " + name + " " + std::to_string(shape.size()) + "\n" + shape + "\n";
    test::WriteFile(file, out);
}

TEST_P(EndToEnd, EveryRequestOfEveryType) {
    Recorder recorder(GetParam());
    test::ExpectGolden(std::string("e2e/records/") + GetParam().name + ".txt", recorder.Record());
    ExpectShapes(recorder.shapes);
}

INSTANTIATE_TEST_SUITE_P(Panels, EndToEnd, testing::ValuesIn(kPanels),
                         [](const testing::TestParamInfo<Panel>& panel) { return std::string(panel.param.name); });

}  // namespace
}  // namespace quarnel
