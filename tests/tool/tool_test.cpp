// SPDX-License-Identifier: MIT
// The quarnel tool as its users meet it: a process with arguments, standard
// output, standard error and an exit code.

#include <cairo.h>
#include <gtest/gtest.h>
#include <lcms2.h>
#include <sys/stat.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <random>
#include <regex>
#include <set>
#include <sstream>

#include "facts/block_layout.h"
#include "support/golden.h"
#include "support/temp_dir.h"

namespace quarnel::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using Values = std::vector<long>;  // 768 curve entries, plane by plane

const fs::path kData = TOOL_DATA;

struct Result {
    int code;
    std::string out, err;
};

class ToolTest : public testing::Test {
protected:
    TempDir dir, tmp;  // tmp is the tool's TMPDIR, empty after every run
    void TearDown() override { EXPECT_TRUE(fs::is_empty(tmp.path())); }

    // Runs a shell command line in the scratch folder; "quarnel" and $QUARNEL are the tool.
    Result Shell(const std::string& line) {
        const std::string command = "cd '" + dir.path().string() + "' && export TMPDIR='" + tmp.path().string() +
                                    "' && QUARNEL='" QUARNEL_TOOL "' && quarnel() { \"$QUARNEL\" \"$@\"; } && { " +
                                    line + "; } >out.txt 2>err.txt";
        const int status = std::system(command.c_str());
        Result r{WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(dir / "out.txt"), ReadFile(dir / "err.txt")};
        fs::remove(dir / "out.txt");
        fs::remove(dir / "err.txt");
        return r;
    }
    Result Run(const std::string& args) { return Shell("timeout 60 '" QUARNEL_TOOL "' " + args); }

    // Runs each "$ LINE" of a transcript in the test data through `run`; the line after it is the code and
    // standard error that gave, "#" lines are notes. Whatever a run says is one line that begins "quarnel: ".
    void ExpectTranscript(const std::string& name, const std::function<Result(const std::string&)>& run) {
        std::istringstream lines(ReadFile(kData / name));
        std::string transcript;
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("#")) transcript += line + '\n';
            if (!line.starts_with("$ ")) continue;
            const Result r = run(line.substr(2));
            transcript += line + '\n' + std::to_string(r.code) + ' ' + (r.err.empty() ? "\n" : r.err);
            EXPECT_TRUE(r.err.empty() || r.err.starts_with("quarnel: ")) << line << ": " << r.err;
            EXPECT_LE(std::count(r.err.begin(), r.err.end(), '\n'), 1) << line << ": " << r.err;
        }
        ExpectGolden("tool/" + name, transcript);
    }

    // Builds a block from a description in the test data; returns its name.
    std::string Block(const std::string& version) {
        const std::string name = "block_" + version + ".bin";
        EXPECT_EQ(Run("block build '" + (kData / ("block_" + version + ".json")).string() + "' -o " + name).code, 0);
        return name;
    }
};

Values Numbers(std::string text, size_t skip, size_t every, size_t from) {
    std::replace(text.begin(), text.end(), ',', ' ');
    std::istringstream in(text);
    Values values;
    std::string line, word;
    for (size_t row = 0; std::getline(in, line); ++row) {
        if (row < skip) continue;
        std::istringstream words(line);
        for (size_t i = 0; words >> word; ++i)
            if (i >= from && i < from + every) values.push_back(std::lround(std::stod(word)));
    }
    return values;
}

Values Planar(const Values& interleaved) {  // 256 rows of r g b into three planes
    if (interleaved.size() != 768) return interleaved;
    Values planes(768);
    for (size_t i = 0; i < 768; ++i) planes[(i % 3) * 256 + i / 3] = interleaved[i];
    return planes;
}

Values FromJson(const Json& json) {
    Values values;
    for (const char* plane : {"red", "green", "blue"})
        for (long v : json.at(plane)) values.push_back(v);
    return values;
}

TEST_F(ToolTest, ModesTableAndJsonForEveryPanel) {
    for (const std::string panel : {"sample", "v3", "v5", "v7"}) {
        SCOPED_TRACE(panel);
        const std::string source = panel == "sample" ? "" : " --calib " + Block(panel);
        const Result table = Run("modes" + source), json = Run("modes --json" + source);
        ASSERT_EQ(table.code, 0) << table.err;
        ASSERT_EQ(json.code, 0) << json.err;
        ExpectGolden("tool/modes_" + panel + ".txt", table.out);
        ExpectGolden("tool/modes_" + panel + ".json", json.out);
    }
    EXPECT_EQ(Run("").out, Run("modes").out);
}

TEST_F(ToolTest, EveryLutFormatCarriesTheSameCurve) {
    const std::string lut = "lut native --api srgb --brightness 0.8 ";
    for (const char* format : {"csv", "json", "cal", "icc", "png", "svg"})
        ASSERT_EQ(Run(lut + "-o curve." + std::string(format)).code, 0) << format;
    const Values expected = FromJson(Json::parse(ReadFile(dir / "curve.json")));
    EXPECT_EQ(Planar(Numbers(ReadFile(dir / "curve.csv"), 1, 3, 1)), expected);
    EXPECT_EQ(Run(lut + "-o -").out, ReadFile(dir / "curve.csv"));
    EXPECT_EQ(Run(lut + "-o - --format json").out, ReadFile(dir / "curve.json"));
    EXPECT_TRUE(ReadFile(dir / "curve.svg").find("<svg") != std::string::npos);
    // Through the identity tone curve a VX curve is the slider's own.
    ASSERT_EQ(Run("string decode 04000000 --method 1 -o identity.json").code, 0);
    EXPECT_EQ(Run("lut vx-curve --curve identity.json -o -").out, Run("lut slider -o -").out);

    std::string inputs;
    for (int i = 0; i < 256; ++i)
        inputs += std::to_string(i * 256) + ' ' + std::to_string(i * 256) + ' ' + std::to_string(i * 256) + '\n';
    WriteFile(dir / "inputs.txt", inputs);
    // Files carry entry / 65280 (the library's full scale is full drive); vcgt holds it in 16 bits.
    Values driven, fullScale;
    for (long v : expected) driven.push_back(std::min(v, 65280L));
    for (long v : driven) fullScale.push_back(std::lround(static_cast<double>(v) * 65535.0 / 65280));
    const Result cal = Shell("'" XICCLU "' -v0 -s 65280 curve.cal <inputs.txt");
    ASSERT_EQ(cal.code, 0) << cal.err;
    EXPECT_EQ(Planar(Numbers(cal.out, 0, 3, 0)), driven);

    const Result icc = Shell("'" ICCDUMP "' -v 3 -t vcgt curve.icc");
    ASSERT_NE(icc.out.find("VideoCardGammaTable:"), std::string::npos) << icc.out;
    ASSERT_NE(icc.out.find("entries   = 256"), std::string::npos);
    std::string entries;  // the "  i: value" lines of the three channels
    std::istringstream lines(icc.out);
    for (std::string line; std::getline(lines, line);)
        if (line.find(": ") != std::string::npos && std::isdigit(static_cast<unsigned char>(line.back())) &&
            line.find_first_not_of(' ') == line.find_first_of("0123456789"))
            entries += line.substr(line.find(": ") + 2) + '\n';
    EXPECT_EQ(Numbers(entries, 0, 1, 0), fullScale);
}

std::string MetaValue(cmsHPROFILE profile, const std::wstring& key) {
    auto* dict = static_cast<cmsHANDLE>(cmsReadTag(profile, cmsSigMetaTag));
    for (const cmsDICTentry* e = dict ? cmsDictGetEntryList(dict) : nullptr; e; e = cmsDictNextEntry(e))
        if (key == e->Name) return std::string(e->Value, e->Value + std::wcslen(e->Value));
    return "";
}

// LittleCMS reads every profile the tool writes as a matrix-shaper display
// profile of its panel; sRGB white lands on full drive in the native mode.
TEST_F(ToolTest, ProfilesOpenAsMatrixShaperDisplayProfiles) {
    struct Case {
        std::string args, file, description, source;
    };
    const Case cases[] = {
        {"lut native", "native.icc", "Quarnel sample panel, calibration version 7: native", "calib"},
        {"lut slider --interval 0.7 --brightness 0.8", "slider.icc", ": slider, interval 0.70, brightness 0.80",
         "calib"},
        {"lut reading-multi --reading-levels 3 --reading-index 1", "multi.icc", "reading level 1 of 3", "calib"},
        {"lut native --calib " + Block("v3"), "v3.icc", "version 3, no tone measurements: native", "calib"},
        {"string decode 04000000 --method 1", "string.icc", "LUT string, no factory data", "standard"},
    };
    for (const Case& c : cases) {
        ASSERT_EQ(Run(c.args + " -o " + c.file).code, 0) << c.args;
        cmsHPROFILE profile = cmsOpenProfileFromFile((dir / c.file).c_str(), "r");
        ASSERT_NE(profile, nullptr) << c.file;
        EXPECT_TRUE(cmsIsMatrixShaper(profile)) << c.file;
        EXPECT_EQ(cmsGetDeviceClass(profile), cmsSigDisplayClass);
        EXPECT_DOUBLE_EQ(cmsGetProfileVersion(profile), 2.4);
        char description[256] = {};
        cmsGetProfileInfoASCII(profile, cmsInfoDescription, "en", "US", description, sizeof description);
        EXPECT_NE(std::string(description).find(c.description), std::string::npos) << description;
        EXPECT_EQ(MetaValue(profile, L"DATA_source"), c.source) << c.file;
        if (c.file == "v3.icc") {  // the measured white, though its primaries add up to another
            const auto* white = static_cast<cmsCIEXYZ*>(cmsReadTag(profile, cmsSigMediaWhitePointTag));
            const auto* lumi = static_cast<cmsCIEXYZ*>(cmsReadTag(profile, cmsSigLuminanceTag));
            const Json measured = Json::parse(ReadFile(kData / "block_v3.json"))["primaries"]["white"];
            for (int k = 0; k < 3; ++k)
                EXPECT_NEAR((&white->X)[k] * measured[1].get<double>(), measured[k].get<double>(), 0.01) << k;
            EXPECT_NEAR(lumi->Y, measured[1].get<double>(), 0.01);
        }
        cmsCloseProfile(profile);
    }
    cmsHPROFILE srgb = cmsCreate_sRGBProfile(), native = cmsOpenProfileFromFile((dir / "native.icc").c_str(), "r");
    cmsHTRANSFORM toPanel = cmsCreateTransform(srgb, TYPE_RGB_8, native, TYPE_RGB_8, INTENT_RELATIVE_COLORIMETRIC, 0);
    const uint8_t white[3] = {255, 255, 255};
    uint8_t drive[3] = {};
    cmsDoTransform(toPanel, white, drive, 1);
    EXPECT_EQ(std::vector<int>(drive, drive + 3), std::vector<int>({255, 255, 255}));
    cmsDeleteTransform(toPanel);
    cmsCloseProfile(native);
    cmsCloseProfile(srgb);
}

// Three planes far apart: red the identity, green late, blue early.
std::string SpreadCsv() {
    std::string csv = "index,red,green,blue\n";
    for (int i = 0; i < 256; ++i)
        csv += std::to_string(i) + ',' + std::to_string(i * 256) + ',' +
               std::to_string(std::max(0, 2 * i - 255) * 256) + ',' + std::to_string(std::min(255, 2 * i) * 256) + '\n';
    return csv;
}

TEST_F(ToolTest, StringRoundTripAndPlotShowsEachCurveWhereItRuns) {
    WriteFile(dir / "spread.csv", SpreadCsv());
    const Result encoded = Run("string encode spread.csv");
    ASSERT_EQ(encoded.code, 0) << encoded.err;
    std::istringstream words(encoded.out);
    std::string label, method, hex;
    words >> label >> method >> hex;
    EXPECT_EQ(Run("string decode " + hex + " --method " + method).out, SpreadCsv());
    ASSERT_EQ(Run("string decode " + hex + " --method " + method + " -o spread.png").code, 0);

    cairo_surface_t* png = cairo_image_surface_create_from_png((dir / "spread.png").c_str());
    ASSERT_EQ(cairo_surface_status(png), CAIRO_STATUS_SUCCESS);
    ASSERT_EQ(cairo_image_surface_get_width(png), 640);
    ASSERT_EQ(cairo_image_surface_get_height(png), 480);
    const auto* pixels = cairo_image_surface_get_data(png);
    const int stride = cairo_image_surface_get_stride(png);
    // Plot area: 544 x 392 from (72, 24); outputs run up to 65535.
    struct Probe {
        int input, level, channel;  // channel in cairo's B, G, R byte order
    };
    for (const Probe& p : {Probe{100, 100, 2}, Probe{100, 200, 0}, Probe{200, 145, 1}, Probe{40, 40, 2}}) {
        const int x = static_cast<int>(std::lround(72 + p.input / 255.0 * 544));
        const int y = static_cast<int>(std::lround(24 + 392 - p.level * 256 / 65535.0 * 392));
        bool found = false;
        for (int row = y - 3; row <= y + 3; ++row) {
            const unsigned char* px = pixels + row * stride + x * 4;
            found = found || (px[p.channel] > 140 && px[(p.channel + 1) % 3] < 60 && px[(p.channel + 2) % 3] < 60);
        }
        EXPECT_TRUE(found) << "input " << p.input << " channel " << p.channel;
    }
    cairo_surface_destroy(png);
}

TEST_F(ToolTest, BuiltBlocksInspectBackToTheirDescription) {
    for (const std::string version : {"v3", "v5", "v7"}) {
        const Json expected = Json::parse(ReadFile(kData / ("block_" + version + ".json")));
        const Result inspect = Run("block inspect --json " + Block(version));
        ASSERT_EQ(inspect.code, 0) << inspect.err;
        const Json report = Json::parse(inspect.out);
        for (const auto& [key, value] : expected.items()) EXPECT_EQ(report.at(key), value) << version << " " << key;
        EXPECT_TRUE(report.at("header_crc").at("ok"));
        EXPECT_EQ(report.contains("tone_crc"), version != "v3");
        EXPECT_EQ(report.at("block_status"), 0);
        // The .ti3 header gives the white's luminance as the description wrote it.
        const std::string ti3 = Run("block measurements block_" + version + ".bin").out;
        std::istringstream luminance(ti3.substr(ti3.find("LUMINANCE_XYZ_CDM2 \"") + 20));
        for (const double v : expected.at("primaries").at("white")) {
            std::string field;
            luminance >> field;
            EXPECT_EQ(std::stod(field), v) << version << " " << field;
        }
    }
}

TEST_F(ToolTest, ErrorsExitWithTheirCodeAndLeaveNoOutput) {
    WriteFile(dir / "short.bin", "HDOC");
    std::string block = ReadFile(dir / Block("v5"));
    block[20] ^= 1;
    WriteFile(dir / "crc.bin", block);
    WriteFile(dir / "bad.json", "{\"version\": 7,");
    WriteFile(dir / "bad.csv", "0,0,0,0\n1,2\n");
    WriteFile(dir / "big.bin", "");
    fs::resize_file(dir / "big.bin", 2 << 20);
    ASSERT_EQ(mkfifo((dir / "pipe").c_str(), 0600), 0);  // no writer: opening it to read would wait for ever
    ExpectTranscript("errors.txt", [&](const std::string& args) { return Run(args); });
    size_t files = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(dir.path())) ++files;
    EXPECT_EQ(files, 7u) << "only the inputs remain";
}

// A panel redder than sRGB: its triangle's red corner lies outside sRGB's.
TEST_F(ToolTest, ChromaticityPictureShowsBothGamutsWhereTheyLie) {
    Json block = Json::parse(ReadFile(kData / "block_v5.json"));
    block["primaries"]["red"] = {150.0, 64.35, 2.0};
    WriteFile(dir / "red.json", block.dump());
    ASSERT_EQ(Run("block build red.json -o red.bin").code, 0);
    ASSERT_EQ(Run("plot chromaticity --calib red.bin -o red.png").code, 0);
    ASSERT_EQ(Run("plot chromaticity -o srgb.svg").code, 0);
    ASSERT_EQ(Run("plot chromaticity -o SRGB.PNG").code, 0);

    cairo_surface_t* png = cairo_image_surface_create_from_png((dir / "red.png").c_str());
    ASSERT_EQ(cairo_surface_status(png), CAIRO_STATUS_SUCCESS);
    EXPECT_EQ(cairo_image_surface_get_width(png), 1140);
    EXPECT_EQ(cairo_image_surface_get_height(png), 620);
    // The whole diagram maps x 0..0.8 to pixels 60..540 and y 0..0.9 to 570..30; a corner of a triangle
    // colours some pixel next to it.
    const auto near = [&png](double x, double y, auto&& colour) {
        const int px = static_cast<int>(std::lround(60 + x * 600)), py = static_cast<int>(std::lround(570 - y * 600));
        bool found = false;
        for (int row = py - 2; row <= py + 2; ++row)
            for (int col = px - 2; col <= px + 2; ++col)
                found = found || colour(cairo_image_surface_get_data(png) + row * cairo_image_surface_get_stride(png) +
                                        col * 4);  // B, G, R
        return found;
    };
    const auto orange = [](const unsigned char* p) { return p[2] > 180 && p[1] > 50 && p[1] < 130 && p[0] < 60; };
    const auto grey = [](const unsigned char* p) { return p[2] < 140 && p[2] == p[1] && p[1] == p[0]; };
    const double sum = 150 + 64.35 + 2;
    EXPECT_TRUE(near(150 / sum, 64.35 / sum, orange));
    EXPECT_FALSE(near(150 / sum, 64.35 / sum, grey));
    EXPECT_TRUE(near(0.64, 0.33, grey));
    EXPECT_FALSE(near(0.64, 0.33, orange));
    cairo_surface_destroy(png);
    // The sample's primaries are sRGB's own: sRGB's dark dashes still show over the panel's line.
    png = cairo_image_surface_create_from_png((dir / "SRGB.PNG").c_str());
    ASSERT_EQ(cairo_surface_status(png), CAIRO_STATUS_SUCCESS);
    const auto dark = [](const unsigned char* p) { return p[2] < 60 && p[2] == p[1] && p[1] == p[0]; };
    for (const auto& [x, y] : {std::pair{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}}) {
        EXPECT_TRUE(near(x, y, dark)) << x << " " << y;
        EXPECT_TRUE(near(x, y, orange)) << x << " " << y;
    }
    cairo_surface_destroy(png);
    // IEC 61966-2-1 primaries, red, green, blue, at those pixels in the vector picture.
    const std::string svg = ReadFile(dir / "srgb.svg");
    EXPECT_NE(svg.find("d=\"M 444 372 L 240 210 M 240 210 L 150 534 M 150 534 L 444 372 \""), std::string::npos);
    // The enlarged view (pixels 610..1120 by 30..390) holds the slider's whole track, which runs steadily
    // to the blue from its warm end to its cold end.
    const size_t track = svg.find("d=\"", svg.find("stroke:rgb(0%,45%,70%);stroke-opacity:1;stroke-dasharray"));
    ASSERT_NE(track, std::string::npos);
    std::istringstream points(svg.substr(track + 3, svg.find('"', track + 3) - track - 3));
    size_t count = 0;
    double previousX = 1120;
    for (std::string command; points >> command;) {
        double x = 0, y = 0;
        points >> x >> y;
        ++count;
        EXPECT_TRUE(x >= 610 && x <= 1120 && y >= 30 && y <= 390) << x << " " << y;
        EXPECT_LT(x, previousX) << "point " << count;
        previousX = x;
    }
    EXPECT_EQ(count, 21u) << "the slider from 0.5 to 1.5 in steps of 0.05";
}

TEST_F(ToolTest, VersionHelpAndLibraryChatterStayInTheirPlaces) {
    const Result version = Run("version");
    EXPECT_EQ(version.code, 0);
    EXPECT_EQ(version.out.rfind("quarnel tool ", 0), 0u);
    EXPECT_NE(version.out.find("\nlibrary interface 8.11.0\nlibrary build v"), std::string::npos) << version.out;
    // Every command the help lists, the tool itself first: each shows an example of itself, and option
    // types are words a person reads, not the parser's own.
    static const std::regex parserType(R"(\b(FLOAT|U?INT)\b)");
    std::vector<std::string> commands{""};
    for (size_t i = 0; i < commands.size(); ++i) {
        const std::string command = commands[i];  // a copy: the list grows below
        const Result help = Run(command + " --help");
        EXPECT_EQ(help.code, 0) << command;
        const size_t example = help.out.find("Example:\n");
        ASSERT_NE(example, std::string::npos) << command;
        EXPECT_NE(help.out.find("quarnel " + command, example), std::string::npos) << help.out;
        EXPECT_FALSE(std::regex_search(help.out, parserType)) << help.out;
        for (const char* file : {"-o TEXT", "FILE TEXT", "--calib TEXT", "--curve TEXT"})
            EXPECT_EQ(help.out.find(file), std::string::npos) << command << ": " << file;
        std::istringstream lines(help.out.substr(0, example));
        bool listed = false;
        for (std::string line; std::getline(lines, line);) {
            if (line.empty() || line[0] != ' ')
                listed = line == "Subcommands:";
            else if (listed && line[2] != ' ')
                commands.push_back((command.empty() ? "" : command + " ") + line.substr(2, line.find(' ', 2) - 2));
        }
    }
    EXPECT_GT(commands.size(), 20u);
    const Result quiet = Run("string decode 04000000 --method 0"),
                 verbose = Run("-v string decode 04000000 --method 0");
    EXPECT_EQ(quiet.out + verbose.out, "");
    EXPECT_EQ(quiet.err.find("Huffman"), std::string::npos);
    EXPECT_NE(verbose.err.find("=== Get Huffman Table v1 ==="), std::string::npos);
}

TEST_F(ToolTest, FaultyDescriptionsAndCurvesAreRefusedNamingWhere) {
    // Each patch is merged into the version-5 description, which is then built.
    ExpectTranscript("description_faults.txt", [&](const std::string& patch) {
        Json description = Json::parse(ReadFile(kData / "block_v5.json"));
        description.merge_patch(Json::parse(patch));
        WriteFile(dir / "d.json", description.dump());
        return Run("block build d.json -o out.bin");
    });
    std::string rows = SpreadCsv(), extra = rows + "256,0,0,0\n";
    const std::pair<std::string, std::string> curves[] = {
        {rows.substr(0, rows.rfind("255,")), "255 rows, expected 256"},
        {extra, "line 258: more than 256 rows"},
        {std::string(rows).replace(rows.find("\n9,") + 3, 1, "65536,0,0,0\n9"),
         "line 11: expected index,red,green,blue"},
        {R"({"red": [], "green": [], "blue": []})", "red: expected an array of 256 entries"},
        // Deep enough to overflow the stack of anything that walks it level by level.
        {"{\"red\": " + std::string(200000, '[') + std::string(200000, ']') + "}", "JSON nested deeper than 64"},
    };
    for (const auto& [text, message] : curves) {
        WriteFile(dir / (text[0] == '{' ? "c.json" : "c.csv"), text);
        const Result r = Run(std::string("string encode ") + (text[0] == '{' ? "c.json" : "c.csv"));
        EXPECT_EQ(r.code, 65) << message;
        EXPECT_NE(r.err.find(message), std::string::npos) << r.err;
    }
    // The slider's curve ends below 65280: no string carries it, and no block.
    ASSERT_EQ(Run("lut slider --interval 0.7 -o warm.json").code, 0);
    EXPECT_NE(Run("string encode warm.json").err.find("warm.json: cannot be stored as a LUT string: red entry 255 is"),
              std::string::npos);
    Json description = Json::parse(ReadFile(kData / "block_v7.json"));
    description["gamma_lut"] = Json::parse(ReadFile(dir / "warm.json"));
    WriteFile(dir / "d.json", description.dump());
    EXPECT_NE(Run("block build d.json -o out.bin").err.find("d.json: cannot be stored as a LUT string: red entry"),
              std::string::npos);
}

TEST_F(ToolTest, InspectedBlocksRebuildByteForByte) {
    std::string undecodable = ReadFile(dir / Block("v7"));
    undecodable[quarnel::facts::kUseMethodV7.offset] = 0;  // the string's method: Huffman, which it is not
    std::string garbage(512, '\xff');
    for (size_t i = 0; i < garbage.size(); ++i) garbage[i] = static_cast<char>(i * 37 + i / 7);
    for (const auto& [bytes, problem] : {std::pair{undecodable,
                                                   "gamma LUT string does not decode with method 0; "
                                                   "the library then reads the block as version 5"},
                                         std::pair{std::string(512, '\xff'), "not a calibration block: bad magic"},
                                         std::pair{garbage, "not a calibration block: bad magic"}}) {
        WriteFile(dir / "in.bin", bytes);
        const Result text = Run("block inspect in.bin"), json = Run("block inspect --json in.bin");
        EXPECT_EQ(text.code, 65);
        EXPECT_NE(text.out.find(std::string("problem: \"") + problem), std::string::npos) << text.out;
        EXPECT_NE(text.err.find(problem), std::string::npos) << text.err;
        WriteFile(dir / "d.json", json.out);
        ASSERT_EQ(Run("block build d.json -o out.bin").code, 0) << json.out;
        EXPECT_EQ(ReadFile(dir / "out.bin"), bytes) << json.out;
    }
}

TEST_F(ToolTest, OutputsKeepWhatTheyNameAndFailedWritesSaySo) {
    ExpectTranscript("output_runs.txt", [&](const std::string& line) { return Shell(line); });
}

// The library takes the index itself as the blend position between the weak
// and the strong reading gains: 0 weak, 1 and above strong, between them a mix.
TEST_F(ToolTest, ReadingIndexBlendsFromWeakToStrong) {
    const auto curve = [&](const std::string& args) {
        const Result r = Run("lut " + args + " -o - --format json");
        EXPECT_EQ(r.code, 0) << args << ": " << r.err;
        return r.code == 0 ? FromJson(Json::parse(r.out)) : Values{};
    };
    const std::string multi = "reading-multi --reading-levels 3 --reading-index ";
    const Values weak = curve("reading-weak"), strong = curve("reading-strong"), half = curve(multi + "0.5");
    EXPECT_EQ(curve(multi + "0"), weak);
    EXPECT_EQ(curve(multi + "1"), strong);
    EXPECT_EQ(curve(multi + "1.5"), strong);
    ASSERT_EQ(half.size(), weak.size());
    // The mode's table is read at 8-bit steps of 256: where the two lie within
    // two steps, the mix may round onto either end.
    constexpr long kTwoSteps = 512;
    size_t apart = 0;
    for (size_t i = 0; i < weak.size(); ++i) {
        const long low = std::min(weak[i], strong[i]), high = std::max(weak[i], strong[i]);
        EXPECT_TRUE(half[i] >= low && half[i] <= high) << i;
        if (high - low <= kTwoSteps) continue;
        ++apart;
        EXPECT_TRUE(half[i] > low && half[i] < high)
            << i << ": " << half[i] << " not between " << low << " and " << high;
    }
    EXPECT_GT(apart, 600u);
}

TEST_F(ToolTest, ModesRowsShowTheCurveLutWritesForEveryDriverType) {
    for (const std::string api : {"plain", "srgb", "nvidia", "qcom", "igcl", "plain5"}) {
        const Json modes = Json::parse(Run("modes --json --api " + api).out);
        for (const Json& row : modes.at("modes")) {
            const std::string lut =
                "lut " + row.at("mode").get<std::string>() + " --api " + api + " -o - --format json";
            const Json curve = Json::parse(Run(lut).out);
            for (const char* plane : {"red", "green", "blue"})
                for (size_t k = 0; k < 5; ++k)
                    EXPECT_EQ(row["curve"][plane][k], curve[plane][std::min<size_t>(k * 64, 255)]) << lut;
        }
    }
    EXPECT_EQ(Run("lut native --api nvidia -o -").out, Run("lut native -o -").out);
}

// Seeded random and mutated inputs for every command: whatever comes in, the
// run ends with a documented code and no sanitizer report, leaves no output
// when it fails, and writes a curve that is not black when it succeeds.
TEST_F(ToolTest, RandomInputsEndInADocumentedWay) {
    std::mt19937 rng(20241124);
    const auto pick = [&](size_t n) { return static_cast<size_t>(rng() % n); };
    const std::string valid[] = {ReadFile(dir / Block("v7")), ReadFile(kData / "block_v7.json"), SpreadCsv(),
                                 Run("lut slider -o - --format json").out};
    const std::string extremes[] = {"nan", "inf", "-1", "1e400", "''", "99999999999999999999", "-0", "0.5", "1.5", "3"};
    const auto mutate = [&](std::string s) {
        switch (pick(4)) {
            case 0:
                s.resize(pick(600));
                for (char& c : s) c = static_cast<char>(rng());
                break;
            case 1:
                for (size_t i = pick(8) + 1; i-- > 0 && !s.empty();)
                    s[pick(s.size())] ^= static_cast<char>(1 << pick(8));
                break;
            case 2:
                s.resize(pick(s.size() + 1));
                break;
            default:
                s.insert(pick(s.size() + 1), std::string(1 + pick(4), "-,.:e9\"[]{}\n"[pick(12)]));
        }
        return s;
    };
    const std::string commands[] = {"modes --calib in.bin --api A",
                                    "block inspect in.bin --json",
                                    "block build in.json -o o.bin",
                                    "string encode in.csv",
                                    "string decode H --method M -o o.csv",
                                    "lut vx-curve --curve in.csv -o o.csv --api A",
                                    "lut vx-curve --curve c.json -o o.cal",
                                    "lut slider --interval X --brightness X -o o.csv --api A",
                                    "lut reading-multi --reading-levels X --reading-index X -o o.csv",
                                    "lut theater --calib in.bin --brightness X -o o.csv --api A"};
    const std::set<int> documented{0, 64, 65, 66, 69, 73, 74};
    for (int run = 0; run < QUARNEL_RANDOM_RUNS; ++run) {
        for (size_t f = 0; f < 4; ++f)
            WriteFile(dir / std::array{"in.bin", "in.json", "in.csv", "c.json"}[f], mutate(valid[f]));
        std::string line = commands[static_cast<size_t>(run) % std::size(commands)], hex;
        for (size_t n = pick(12) + 1; n-- > 0;) hex += "0123456789abcdefx"[pick(17)];
        for (const auto& [key, value] :
             {std::pair<std::string, std::string>{"X", extremes[pick(10)]},
              {"X", extremes[pick(10)]},
              {"A", std::array{"plain", "srgb", "nvidia", "qcom", "igcl", "plain5"}[pick(6)]},
              {"H", hex},
              {"M", extremes[pick(10)]}})
            if (const size_t at = line.find(" " + key); at != std::string::npos) line.replace(at + 1, 1, value);
        fs::remove(dir / "o.csv"), fs::remove(dir / "o.bin"), fs::remove(dir / "o.cal");
        const Result r = Run(line);
        EXPECT_TRUE(documented.count(r.code)) << r.code << " " << line << ": " << r.err;
        EXPECT_EQ(r.err.find("Sanitizer"), std::string::npos) << line << ": " << r.err;
        EXPECT_EQ(r.err.find("runtime error"), std::string::npos) << line << ": " << r.err;
        const bool wrote = fs::exists(dir / "o.csv") || fs::exists(dir / "o.bin") || fs::exists(dir / "o.cal");
        EXPECT_EQ(wrote, r.code == 0 && line.find(" -o ") != std::string::npos) << r.code << " " << line;
        if (r.code == 0 && fs::exists(dir / "o.csv")) {
            const Values curve = Numbers(ReadFile(dir / "o.csv"), 1, 3, 1);
            EXPECT_TRUE(std::any_of(curve.begin(), curve.end(), [](long v) { return v > 0; })) << line;
        }
    }
}

}  // namespace
}  // namespace quarnel::test
