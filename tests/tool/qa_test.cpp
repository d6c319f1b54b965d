// SPDX-License-Identifier: MIT
// quarnel qa over generated lots: verdicts that follow the damage done,
// whites that agree with `quarnel modes`, coverages against geometry, and
// the HTML report as a browser renders it.

#include <cairo.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/temp_dir.h"

namespace quarnel::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

struct Result {
    int code;
    std::string out, err;
};

struct Xy {
    double x, y;
};
using Triangle = std::array<Xy, 3>;
constexpr Triangle kSrgb{{{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}}};
constexpr Triangle kP3{{{0.680, 0.320}, {0.265, 0.690}, {0.150, 0.060}}};

class QaTest : public testing::Test {
protected:
    TempDir dir;

    Result Run(const std::string& args) {
        const std::string command =
            "cd '" + dir.path().string() + "' && timeout 120 '" QUARNEL_TOOL "' " + args + " >out.txt 2>err.txt";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(dir / "out.txt"), ReadFile(dir / "err.txt")};
    }

    // The blocks of `qa --json` by file name.
    std::map<std::string, Json> QaBlocks(const std::string& args, int expectedCode) {
        const Result r = Run("qa " + args + " --json qa.json");
        EXPECT_EQ(r.code, expectedCode) << r.err;
        std::map<std::string, Json> blocks;
        const Json document = Json::parse(ReadFile(dir / "qa.json"));
        for (const Json& block : document.at("blocks")) blocks[block.at("file").get<std::string>()] = block;
        return blocks;
    }

    // A block of the sample panel with these primaries (and their sum as white).
    std::string PanelWith(const std::string& name, const Triangle& primaries) {
        Json description = Json::parse(Run("block sample").out);
        const double luminance[3] = {60, 200, 20};
        std::array<double, 3> white{};
        for (size_t c = 0; c < 3; ++c) {
            const auto [x, y] = primaries[c];
            const std::array<double, 3> xyz{x / y * luminance[c], luminance[c], (1 - x - y) / y * luminance[c]};
            for (size_t k = 0; k < 3; ++k) white[k] += xyz[k];
            description["primaries"][std::array{"red", "green", "blue"}[c]] = xyz;
        }
        description["primaries"]["white"] = white;
        WriteFile(dir / (name + ".json"), description.dump());
        EXPECT_EQ(Run("block build " + name + ".json -o " + name + ".bin").code, 0);
        return name + ".bin";
    }
};

std::vector<std::string> CsvFields(const std::string& line) {
    std::vector<std::string> fields(1);
    bool quoted = false;
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '"' && quoted && i + 1 < line.size() && line[i + 1] == '"')
            fields.back() += line[++i];
        else if (c == '"')
            quoted = !quoted;
        else if (c == ',' && !quoted)
            fields.emplace_back();
        else
            fields.back() += c;
    }
    return fields;
}

TEST_F(QaTest, EveryDamagedBlockGetsTheVerdictOfItsDamage) {
    ASSERT_EQ(Run("block lot --count 240 --seed 11 --damaged 0.25 -o lot").code, 0);
    const auto blocks = QaBlocks("lot --quiet --csv qa.csv", 1);
    const std::map<std::string, std::string> kVerdicts{{"none", "ok"},
                                                       {"flipped-primaries", "header CRC mismatch"},
                                                       {"flipped-tone", "tone CRC mismatch"},
                                                       {"bad-magic", "not a calibration block: bad magic"}};
    std::istringstream manifest(ReadFile(dir / "lot/manifest.csv"));
    std::map<std::string, int> damages, versions;
    std::string line;
    std::getline(manifest, line);
    while (std::getline(manifest, line)) {
        const auto f = CsvFields(line);  // file, version, damage
        SCOPED_TRACE(line);
        ++damages[f[2]], ++versions[f[1]];
        const Json& block = blocks.at("lot/" + f[0]);
        const auto size = fs::file_size(dir / "lot" / f[0]);
        EXPECT_EQ(block.at("verdict"), f[2] == "truncated"
                                           ? "not a calibration block: " + std::to_string(size) + " bytes, expected 512"
                                           : kVerdicts.at(f[2]));
        if (f[2] != "truncated") {
            EXPECT_EQ(block.at("version"), std::stoi(f[1]));
        }
    }
    EXPECT_EQ(blocks.size(), 240u);
    EXPECT_EQ(damages.size(), 5u) << "every kind of damage and undamaged blocks";
    EXPECT_EQ(versions.size(), 4u) << "versions 4 to 7";

    // The CSV says the same, in the columns named for it.
    std::istringstream csv(ReadFile(dir / "qa.csv"));
    std::getline(csv, line);
    const auto header = CsvFields(line);
    EXPECT_EQ(std::vector(header.begin(), header.begin() + 8),
              (std::vector<std::string>{"file", "verdict", "normal_x", "normal_y", "normal_duv", "srgb_coverage",
                                        "p3_coverage", "flags"}));
    size_t rows = 0;
    for (; std::getline(csv, line); ++rows) {
        const auto f = CsvFields(line);
        ASSERT_EQ(f.size(), header.size()) << line;
        const Json& block = blocks.at(f[0]);
        EXPECT_EQ(f[1], block.at("verdict"));
        if (f[1] == "ok") {
            EXPECT_NEAR(std::stod(f[2]), block["modes"][0]["white"]["x"].get<double>(), 1e-6);
        }
    }
    EXPECT_EQ(rows, 240u);
}

TEST_F(QaTest, ACleanLotPassesAndAFailingThresholdFailsIt) {
    ASSERT_EQ(Run("block lot --count 40 --seed 3 --damaged 0 -o lot").code, 0);
    // The walk passes over a pipe, a link loop and a link back up, and waits on none of them.
    ASSERT_EQ(Run("--version >/dev/null && mkfifo lot/pipe.bin && ln -s loop.bin lot/loop.bin && ln -s .. lot/up").code,
              0);
    const Result clean = Run("qa lot");
    EXPECT_EQ(clean.code, 0) << clean.err;
    EXPECT_NE(clean.out.find("lot: 40 blocks, 40 ok, 40 within thresholds"), std::string::npos) << clean.out;
    std::istringstream lines(clean.out);
    size_t blockLines = 0;
    for (std::string line; std::getline(lines, line);) blockLines += line.starts_with("lot/panel-") ? 1 : 0;
    EXPECT_EQ(blockLines, 40u);
    // The outputs do not depend on how many workers share the lot.
    ASSERT_EQ(Run("qa lot --quiet --csv one.csv --jobs 1").code, 0);
    ASSERT_EQ(Run("qa lot --quiet --csv three.csv --jobs 3").code, 0);
    EXPECT_EQ(ReadFile(dir / "one.csv"), ReadFile(dir / "three.csv"));
    // A terminal sees the progress, to the last block, and then the bar erased.
    const Result terminal =
        Run("--version >/dev/null && script -qec \"'" QUARNEL_TOOL "' qa lot -q >/dev/null\" /dev/null");
    ASSERT_EQ(terminal.code, 0) << terminal.err;
    EXPECT_NE(terminal.out.find("] 40/40"), std::string::npos) << terminal.out;
    EXPECT_TRUE(terminal.out.ends_with("\r\033[K")) << terminal.out;
    // No panel of the lot covers the whole of DCI-P3.
    const Result strict = Run("qa lot --quiet --min-p3 0.99");
    EXPECT_EQ(strict.code, 1);
    EXPECT_NE(strict.out.find("40  p3_coverage"), std::string::npos) << strict.out;
    EXPECT_EQ(strict.err, "quarnel: 40 of 40 blocks are not ok or miss a threshold\n");
    // An output that cannot be created is refused before the lot is checked.
    const Result unwritable = Run("qa lot --report no-such-folder/report.html");
    EXPECT_EQ(unwritable.code, 73);
    EXPECT_EQ(unwritable.out, "");
}

TEST_F(QaTest, ModeWhitesAreThoseOfQuarnelModes) {
    ASSERT_EQ(Run("block lot --count 12 --seed 5 --damaged 0 -o lot").code, 0);
    const auto blocks = QaBlocks("lot", 0);
    for (const std::string name : {"lot/panel-01.bin", "lot/panel-06.bin", "lot/panel-12.bin"}) {
        SCOPED_TRACE(name);
        const Result modes = Run("modes --json --calib " + name);
        ASSERT_EQ(modes.code, 0) << modes.err;
        const Json expected = Json::parse(modes.out).at("modes");
        const Json& actual = blocks.at(name).at("modes");
        ASSERT_EQ(actual.size(), expected.size());
        for (size_t i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(actual[i]["mode"], expected[i]["mode"]);
            EXPECT_EQ(actual[i]["white"], expected[i]["white"]);
            EXPECT_EQ(actual[i]["cct"], expected[i]["cct"]);
        }
    }
}

TEST_F(QaTest, BuildingABlockTheLibraryRefusesWarnsInQasWords) {
    ASSERT_EQ(Run("block lot --count 80 --seed 11 --damaged 0.5 -o lot").code, 0);
    const auto blocks = QaBlocks("lot --quiet", 1);
    std::map<std::string, int> seen;
    for (const auto& [file, block] : blocks) {
        const std::string verdict = block.at("verdict");
        if (verdict.starts_with("not a calibration block: ") && verdict != "not a calibration block: bad magic")
            continue;  // a short file has no description to build from
        if (seen[verdict]++ > 0) continue;
        SCOPED_TRACE(file);
        ASSERT_EQ(Run("block inspect --json " + file + " >d.json; '" QUARNEL_TOOL "' block build d.json -o b.bin").code,
                  0);
        EXPECT_EQ(ReadFile(dir / "err.txt"), verdict == "ok" ? "" : "quarnel: warning: b.bin: " + verdict + "\n");
        EXPECT_EQ(ReadFile(dir / "b.bin"), ReadFile(dir / file));
    }
    EXPECT_EQ(seen.size(), 4u) << "ok, both CRCs and the magic";
}

double Area(const Triangle& t) {
    return std::abs((t[1].x - t[0].x) * (t[2].y - t[0].y) - (t[2].x - t[0].x) * (t[1].y - t[0].y)) / 2;
}

bool Inside(const Triangle& t, double x, double y) {
    int sign = 0;
    for (size_t i = 0; i < 3; ++i) {
        const Xy a = t[i], b = t[(i + 1) % 3];
        const int s = (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x) > 0 ? 1 : -1;
        if (sign != 0 && s != sign) return false;
        sign = s;
    }
    return true;
}

// The shared area counted on a fine grid: slow, and nothing like clipping polygons.
double GridCoverage(const Triangle& panel, const Triangle& reference) {
    constexpr int kSteps = 1500;
    size_t both = 0, ref = 0;
    for (int i = 0; i < kSteps; ++i)
        for (int j = 0; j < kSteps; ++j) {
            const double x = (i + 0.5) * 0.8 / kSteps, y = (j + 0.5) * 0.9 / kSteps;
            if (Inside(reference, x, y)) ++ref, both += Inside(panel, x, y);
        }
    return static_cast<double>(both) / static_cast<double>(ref);
}

Triangle Moved(const Triangle& t, double scale, double dx, double dy) {
    const Xy c{(t[0].x + t[1].x + t[2].x) / 3, (t[0].y + t[1].y + t[2].y) / 3};
    Triangle moved{};
    for (size_t i = 0; i < 3; ++i) moved[i] = {c.x + scale * (t[i].x - c.x) + dx, c.y + scale * (t[i].y - c.y) + dy};
    return moved;
}

TEST_F(QaTest, CoverageIsTheSharedAreaOverTheReferenceArea) {
    struct Case {
        const char* name;
        Triangle primaries;
        double srgb, p3, tolerance;
    };
    const Triangle shifted = Moved(kSrgb, 1, 0.03, -0.02);
    const Case cases[] = {
        {"srgb", kSrgb, 1.0, Area(kSrgb) / Area(kP3), 1e-6},  // sRGB lies inside DCI-P3
        {"p3", kP3, 1.0, 1.0, 1e-6},
        {"shrunk", Moved(kSrgb, 0.9, 0, 0), 0.81, 0.81 * Area(kSrgb) / Area(kP3), 1e-6},
        {"shifted", shifted, GridCoverage(shifted, kSrgb), GridCoverage(shifted, kP3), 2e-3},
    };
    std::string args;
    for (const Case& c : cases) args += ' ' + PanelWith(c.name, c.primaries);
    const auto blocks = QaBlocks(args, 1);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Json& block = blocks.at(std::string(c.name) + ".bin");
        EXPECT_NEAR(block.at("srgb_coverage").get<double>(), c.srgb, c.tolerance);
        EXPECT_NEAR(block.at("p3_coverage").get<double>(), c.p3, c.tolerance);
    }
    // The sample panel's tone readings follow gammas of 2.18, 2.22 and 2.27.
    ASSERT_EQ(Run("block sample -o sample.json && '" QUARNEL_TOOL "' block build sample.json -o sample.bin").code, 0);
    const Json gamma = QaBlocks("sample.bin", 0).at("sample.bin").at("gamma");
    EXPECT_NEAR(gamma["red"].get<double>(), 2.18, 1e-3);
    EXPECT_NEAR(gamma["green"].get<double>(), 2.22, 1e-3);
    EXPECT_NEAR(gamma["blue"].get<double>(), 2.27, 1e-3);
}

// Share of the picture's pixels that are not the page's white.
double InkedShare(const fs::path& png) {
    cairo_surface_t* image = cairo_image_surface_create_from_png(png.c_str());
    const int width = cairo_image_surface_get_width(image), height = cairo_image_surface_get_height(image);
    const int stride = cairo_image_surface_get_stride(image);
    const unsigned char* data = cairo_image_surface_get_data(image);
    size_t inked = 0;
    for (int y = 0; data != nullptr && y < height; ++y)
        for (int x = 0; x < width; ++x) {
            uint32_t pixel = 0;
            std::memcpy(&pixel, data + y * stride + 4 * x, sizeof pixel);
            inked += (pixel & 0xFFFFFFu) != 0xFFFFFFu ? 1 : 0;
        }
    cairo_surface_destroy(image);
    return width > 0 && height > 0 ? static_cast<double>(inked) / (width * height) : 0.0;
}

TEST_F(QaTest, TheReportRendersInABrowser) {
    if (std::string(CHROMIUM).empty()) GTEST_SKIP() << "chromium is not installed: the report is not rendered";
    ASSERT_EQ(Run("block lot --count 30 --seed 9 --damaged 0.2 -o lot").code, 0);
    ASSERT_EQ(Run("qa lot --quiet --report report.html").code, 1);
    const std::string html = ReadFile(dir / "report.html");
    for (const char* outside : {"src=", "href=", "<script", "<link", "url(", "@import"})
        EXPECT_EQ(html.find(outside), std::string::npos) << outside << ": the report reaches outside itself";

    const std::string chromium = "'" CHROMIUM
                                 "' --headless --no-sandbox --disable-gpu --hide-scrollbars "
                                 "--user-data-dir=browser --enable-logging=stderr --v=0 --window-size=1280,1400 ";
    const std::string page = " file://" + (dir / "report.html").string() + " 2>browser.txt";
    ASSERT_EQ(
        std::system(("cd '" + dir.path().string() + "' && " + chromium + "--dump-dom" + page + " >dom.html").c_str()),
        0);
    EXPECT_EQ(ReadFile(dir / "browser.txt").find(":CONSOLE"), std::string::npos) << ReadFile(dir / "browser.txt");
    const std::string dom = ReadFile(dir / "dom.html");
    const auto body = dom.find("<tbody id=\"blocks\">");
    ASSERT_NE(body, std::string::npos);
    size_t rows = 0;
    for (auto at = dom.find("<tr", body); at != std::string::npos && at < dom.find("</tbody>", body);
         at = dom.find("<tr", at + 1))
        ++rows;
    EXPECT_EQ(rows, 30u);

    ASSERT_EQ(std::system(("cd '" + dir.path().string() + "' && " + chromium + "--screenshot=shot.png" + page).c_str()),
              0);
    EXPECT_GT(InkedShare(dir / "shot.png"), 0.05) << "the pictures are not drawn";
}

}  // namespace
}  // namespace quarnel::test
