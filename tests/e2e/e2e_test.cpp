// SPDX-License-Identifier: MIT
// Every request end to end through the exported entry points: a calibration file of each block version (and
// the ways of having none), then every request with and without its flags and every VX mode, for every lut api
// type. One record per panel in tests/data/e2e/records: statuses, gains and every output array by value (the
// NVIDIA floats by value for the panels kept in full, else as a digest), with the digest of the trace log; the
// messages of each call in tests/data/e2e/messages.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
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
    bool badIcc = false, brokenCrc = false, full = false;
};

void PrintTo(const Panel& panel, std::ostream* out) { *out << panel.name; }

std::string Fnv(const std::string& text) {
    uint64_t h = 14695981039346656037u;
    for (unsigned char ch : text) h = (h ^ ch) * 1099511628211u;
    std::ostringstream hex;
    hex << std::hex << h;
    return hex.str();
}

// The temp folder and the local time vary from run to run; the rest of a transcript does not.
std::string Normalized(std::string text, const std::string& folder) {
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
                   SaidName(said), "trace", Fnv(traced));
        std::string gains =
            Row("  fromBios", ctx.fromBios, "biosVer", ctx.biosVer, "gammaK", ctx.gammaK, "rdIndex", ctx.rdIndex);
        const double* triples[] = {ctx.gainNormal, ctx.gainWarm, ctx.gainCold, ctx.gainReadStrong, ctx.gainReadWeak};
        const char* names[] = {"  Nor", "  W", "  C", "  RdS", "  RdW"};
        for (int i = 0; i < 5; ++i) gains += Row(names[i], triples[i][0], triples[i][1], triples[i][2]);
        if (gains != lastGains) out += lastGains = gains;
        if (keepText) text += Row("##", head, "status", status) + said + traced;
    }

    // Each distinct message text once, under the name the calls refer to.
    std::string SaidName(const std::string& said) {
        auto [at, fresh] = saidNames.try_emplace(said, std::string("S") + std::to_string(saidNames.size()));
        if (fresh) messages += std::string("## ") + at->second + " " + std::to_string(said.size()) + "\n" + said + "\n";
        return at->second;
    }

    // The float arrays by value for the panels kept in full; for the others their digest (they are large).
    std::string NvName(const float* nv) {
        return p.full ? values.Floats('N', nv, 6144) : std::string("#") + Fnv(RowOf(nv, 6144));
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
    std::string out, text, lastGains, messages;
    test::ValueTable values;
    std::map<std::string, std::string> saidNames;
    bool keepText = false;
};

const Panel kPanels[] = {
    {.name = "v1_ips", .version = 1, .rgb = kIps},
    {.name = "v2_ips", .version = 2, .rgb = kIps, .scale = 0.7},
    {.name = "v3_srgb", .version = 3, .full = true},
    {.name = "v4_srgb", .version = 4, .full = true},
    {.name = "v5_wide_tone", .version = 5, .rgb = kWide, .full = true},
    {.name = "v6_huffman", .version = 6, .rgb = kWide, .lutGamma = 1.3, .method = 0},
    {.name = "v6_lists", .version = 6, .rgb = kIps, .scale = 0.85},
    {.name = "v7_step0", .version = 7, .rgb = kWide, .lutGamma = 1.3, .method = 0, .step = 0},
    {.name = "v7_step16", .version = 7, .rgb = kWide, .lutGamma = 1.3, .method = 0, .full = true},
    {.name = "v7_step32", .version = 7, .rgb = kWide, .lutGamma = 1.3, .method = 0, .step = 32},
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

// A record compares call by call, so a difference names the first differing entry and both values.
void ExpectRecord(const std::string& name, const std::string& actual) {
    const std::filesystem::path file = std::filesystem::path(QUARNEL_TEST_DATA_DIR) / name;
    const char* regenerate = std::getenv("QUARNEL_REGENERATE");
    if (regenerate != nullptr && std::string(regenerate) == "1") return test::WriteFile(file, actual);
    const std::string difference = test::FirstDifference(test::ReadFile(file), actual);
    EXPECT_TRUE(difference.empty()) << file << ": " << difference << " (QUARNEL_REGENERATE=1 rewrites it)";
}

TEST_P(EndToEnd, EveryRequestOfEveryType) {
    Recorder recorder(GetParam());
    ExpectRecord(std::string("e2e/records/") + GetParam().name + ".txt", recorder.Record());
    test::ExpectGolden(std::string("e2e/messages/") + GetParam().name + ".txt", recorder.messages);
}

INSTANTIATE_TEST_SUITE_P(Panels, EndToEnd, testing::ValuesIn(kPanels),
                         [](const testing::TestParamInfo<Panel>& panel) { return std::string(panel.param.name); });

TEST(EndToEndMessages, InitSliderAndVxModeTranscript) {
    Recorder r(kPanels[3]);
    r.keepText = true;
    CctContext ctx;
    r.Fill(ctx, 0);
    r.Case(ctx, "code", 1, [&] { return CCTAPI(1, &ctx); });
    ctx.interval = 0.75;
    r.Case(ctx, "code", 2, [&] { return CCTAPI(2, &ctx); });
    const uint16_t* identity = &ctx.oriLut[0][0];
    r.Case(ctx, "vx", 21, [&] { return CCTAPI_VX(21, &ctx, identity); });
    test::ExpectGolden("e2e/messages/init_slider_vx.txt", r.text);
}

}  // namespace
}  // namespace quarnel
