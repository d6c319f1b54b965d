// SPDX-License-Identifier: MIT
// The quarnel tool as its users meet it: a process with arguments, standard
// output, standard error and an exit code.

#include <cairo.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <sstream>

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

    // Runs a shell command line in the scratch folder; "quarnel" is the tool.
    Result Shell(const std::string& line) {
        const std::string command = "cd '" + dir.path().string() + "' && export TMPDIR='" + tmp.path().string() +
                                    "' && quarnel() { '" QUARNEL_TOOL "' \"$@\"; } && { " + line +
                                    "; } >out.txt 2>err.txt";
        const int status = std::system(command.c_str());
        Result r{WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(dir / "out.txt"), ReadFile(dir / "err.txt")};
        fs::remove(dir / "out.txt");
        fs::remove(dir / "err.txt");
        return r;
    }
    Result Run(const std::string& args) { return Shell("quarnel " + args); }

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
        inputs += std::to_string(i * 257) + ' ' + std::to_string(i * 257) + ' ' + std::to_string(i * 257) + '\n';
    WriteFile(dir / "inputs.txt", inputs);
    const Result cal = Shell("'" XICCLU "' -v0 -s 65535 curve.cal <inputs.txt");
    ASSERT_EQ(cal.code, 0) << cal.err;
    EXPECT_EQ(Planar(Numbers(cal.out, 0, 3, 0)), expected);

    const Result icc = Shell("'" ICCDUMP "' -v 3 -t vcgt curve.icc");
    ASSERT_NE(icc.out.find("VideoCardGammaTable:"), std::string::npos) << icc.out;
    ASSERT_NE(icc.out.find("entries   = 256"), std::string::npos);
    std::string entries;  // the "  i: value" lines of the three channels
    std::istringstream lines(icc.out);
    for (std::string line; std::getline(lines, line);)
        if (line.find(": ") != std::string::npos && std::isdigit(static_cast<unsigned char>(line.back())) &&
            line.find_first_not_of(' ') == line.find_first_of("0123456789"))
            entries += line.substr(line.find(": ") + 2) + '\n';
    EXPECT_EQ(Numbers(entries, 0, 1, 0), expected);
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
    }
}

TEST_F(ToolTest, ErrorsExitWithTheirCodeAndLeaveNoOutput) {
    WriteFile(dir / "short.bin", "HDOC");
    std::string block = ReadFile(dir / Block("v5"));
    block[20] ^= 1;
    WriteFile(dir / "crc.bin", block);
    WriteFile(dir / "bad.json", "{\"version\": 7,");
    WriteFile(dir / "bad.csv", "0,0,0,0\n1,2\n");
    struct Case {
        std::string args;
        int code;
        std::string message;
    };
    const Case cases[] = {
        {"bogus", 64, "bogus"},
        {"lut sepia -o out.csv", 64, "sepia"},
        {"lut native -o out.txt", 64, "out.txt: cannot tell the format"},
        {"lut vx-curve -o out.csv", 64, "vx-curve needs a tone curve"},
        {"lut native --api hdr -o out.csv", 64, "hdr"},
        {"modes --calib none.bin", 66, "none.bin: cannot read input"},
        {"lut vx-curve --curve bad.csv -o out.csv", 65, "bad.csv: line 2: expected index,red,green,blue"},
        {"modes --calib short.bin", 65, "short.bin: not a calibration block: 4 bytes"},
        {"modes --calib crc.bin", 65, "crc.bin: header CRC mismatch"},
        {"block inspect crc.bin", 65, "crc.bin: header CRC mismatch"},
        {"block build bad.json -o out.bin", 65, "bad.json: malformed JSON"},
        {"block build none.json -o out.bin", 66, "none.json: cannot read input"},
        {"string encode bad.csv", 65, "bad.csv: line 2"},
        {"string decode 0400zz --method 1 -o out.csv", 65, "malformed hex"},
        {"string decode 04000000 --method 0 -o out.csv", 65, "does not decode"},
        {"string decode 04000000 --method 1 -o missing/out.csv", 73, "missing/out.csv: cannot create output"},
        {"lut native -o out.png --format tiff", 64, "unknown format \"tiff\""},
        {"block sample --output out.json", 64, "--output"},
    };
    for (const Case& c : cases) {
        const Result r = Run(c.args);
        EXPECT_EQ(r.code, c.code) << c.args;
        EXPECT_EQ(r.err.rfind("quarnel: ", 0), 0u) << r.err;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << c.args << ": " << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
    }
    size_t files = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(dir.path())) ++files;
    EXPECT_EQ(files, 5u) << "only the inputs remain";
}

TEST_F(ToolTest, VersionHelpAndLibraryChatterStayInTheirPlaces) {
    const Result version = Run("version");
    EXPECT_EQ(version.code, 0);
    EXPECT_EQ(version.out.rfind("quarnel tool ", 0), 0u);
    EXPECT_NE(version.out.find("\nlibrary interface 8.11.0\nlibrary build v"), std::string::npos) << version.out;
    for (const char* command : {"", "modes", "lut", "block", "block inspect", "block build", "block sample", "string",
                                "string encode", "string decode", "version"}) {
        const Result help = Run(std::string(command) + " --help");
        EXPECT_EQ(help.code, 0) << command;
        EXPECT_NE(help.out.find("Example:\n  quarnel " + std::string(command)), std::string::npos) << help.out;
    }
    const Result quiet = Run("string decode 04000000 --method 0"),
                 verbose = Run("-v string decode 04000000 --method 0");
    EXPECT_EQ(quiet.out + verbose.out, "");
    EXPECT_EQ(quiet.err.find("Huffman"), std::string::npos);
    EXPECT_NE(verbose.err.find("=== Get Huffman Table v1 ==="), std::string::npos);
}

TEST_F(ToolTest, OutputsKeepWhatTheyNameAndFailedWritesSaySo) {
    const std::string lut = "quarnel lut slider --format csv -o ";
    const struct {
        std::string line;
        int code;
        std::string err;
    } cases[] = {
        // A null device of our own (skipped where mknod is not allowed): a regression must not replace the system's.
        {"{ mknod n c 1 3 2>/dev/null || exit 0; } && " + lut + "n && test -c n", 0, ""},
        {"mkfifo f && { timeout 5 cat f >got & } && " + lut + "f && wait && test -p f && test $(wc -l <got) = 257", 0,
         ""},
        {"echo x >t && chmod 600 t && ln -s t l && " + lut +
             "l && test -L l && test $(wc -l <t)$(stat -c %a t) = 257600",
         0, ""},
        {"(" + lut + "- >/dev/full)", 74, "standard output: write error: No space left on device"},
        {"{ sleep 0.3; quarnel modes; echo $? >c; } | true; exit $(cat c)", 74, "standard output: write error: Broken"},
        {"quarnel lut slider --firmware 0 -o - >/dev/null", 0, "firmware panel 0: this machine has no firmware"},
        {"quarnel lut slider --interval 0.7 -o s.csv >&- && quarnel lut slider --interval 0.7 -o - | cmp - s.csv", 0,
         ""},
        {"quarnel modes >&-", 74, "standard output: write error"},
        {"quarnel --version | grep -q '^library build v'", 0, ""},
        {"for i in 1 2 3 4 5 6; do env --default-signal=INT '" QUARNEL_TOOL "' lut slider -o s.png & sleep 0.00$i; "
         "kill -INT $! 2>/dev/null; done; wait; ! ls -A | grep '^[.]'",
         0, ""},
    };
    for (const auto& c : cases) {
        const Result r = Shell(c.line);
        EXPECT_EQ(r.code, c.code) << c.line << ": " << r.err;
        EXPECT_EQ(r.err.empty() ? "" : r.err.substr(0, 9), c.err.empty() ? "" : "quarnel: ") << r.err;
        EXPECT_NE(r.err.find(c.err), std::string::npos) << c.line << ": " << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), c.err.empty() ? 0 : 1) << r.err;
    }
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
