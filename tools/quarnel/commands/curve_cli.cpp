// SPDX-License-Identifier: MIT
#include "commands/curve_cli.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <map>
#include <optional>
#include <sstream>

#include "commands/number_options.h"
#include "formats/text_formats.h"
#include "io/file_name.h"
#include "io/input_file.h"
#include "io/tool_error.h"
#include "quarnel/cctapi.h"
#include "session/mode_curve.h"

namespace quarnel::tool {
namespace {

const std::map<std::string, int> kApiTypes{
    {"plain", CCT_LUT_API_PLAIN}, {"srgb", CCT_LUT_API_SRGB}, {"nvidia", CCT_LUT_API_NVIDIA},
    {"qcom", CCT_LUT_API_QCOM},   {"igcl", CCT_LUT_API_IGCL}, {"plain5", CCT_LUT_API_PLAIN_ALT},
};

// Documented ranges of the numeric options.
constexpr double kIntervalWarmest = 0.5, kIntervalColdest = 1.5;
constexpr double kBrightnessLeast = 0.0, kBrightnessFull = 1.0;
constexpr double kFewestReadingLevels = 1.0;

// Option types as a person reads them; the ranges are in the options' help.
constexpr const char* kNumber = "NUMBER";
constexpr const char* kWholeNumber = "WHOLE NUMBER";
constexpr const char* kFile = "FILE";

}  // namespace

void AddCurveOptions(CLI::App& command, CurveCli& cli) {
    auto* calib = command.add_option("--calib", cli.calib, "Raw 512-byte calibration block to read")->type_name(kFile);
    cli.firmwareOption = command.add_option("--firmware", cli.firmware, "Read the firmware's block of panel 0 or 1")
                             ->check(CLI::Range(0, 1));
    calib->excludes(cli.firmwareOption);
    command.add_flag("--sample", cli.sample, "Use the built-in sample panel (the default of modes, lut and plot)")
        ->excludes(calib)
        ->excludes(cli.firmwareOption);
    command.add_option("--api", cli.api, "Driver interface the curve is made for")
        ->check(CLI::IsMember({"plain", "srgb", "nvidia", "qcom", "igcl", "plain5"}))
        ->capture_default_str();
    command
        .add_option("--interval", cli.options.interval,
                    "Warmth of slider, vx-vivid and vx-curve: 0.5 warm, 1.0 normal, 1.5 cold")
        ->check(FiniteRange(kIntervalWarmest, kIntervalColdest))
        ->type_name(kNumber)
        ->capture_default_str();
    command.add_option("--brightness", cli.options.brightness, "Brightness scale from 0 to 1, 1.0 leaves the curve")
        ->check(FiniteRange(kBrightnessLeast, kBrightnessFull))
        ->type_name(kNumber)
        ->capture_default_str();
    auto* levels =
        command.add_option("--reading-levels", cli.options.readingLevels, "Reading levels offered, 1 or more")
            ->check(WholeNumberFrom(kFewestReadingLevels))
            ->type_name(kWholeNumber);
    auto* index = command
                      .add_option("--reading-index", cli.options.readingIndex,
                                  "reading-multi's blend, 0 to the levels less one: 0 weak, 0.5 halfway, 1 and above "
                                  "strong")
                      ->check(FiniteFrom(0))
                      ->type_name(kNumber);
    levels->needs(index);
    index->needs(levels);
}

void RequirePanelSource(const CurveCli& cli) {
    if (cli.calib.empty() && (cli.firmwareOption == nullptr || cli.firmwareOption->count() == 0) && !cli.sample)
        throw ToolError(kExitUsage,
                        "which panel? --calib FILE (the calibration file of the notebook maker's creator "
                        "application), --firmware N (the block in the notebook's own firmware) or --sample");
}

CurveOptions ResolveCurveOptions(const CurveCli& cli, const GlobalOptions& global) {
    CurveOptions options = cli.options;
    if (options.readingIndex > options.readingLevels - 1)
        throw ToolError(kExitUsage, "--reading-index: expected a number from 0 to " + Shown(options.readingLevels - 1) +
                                        " (--reading-levels less one), found " + Shown(options.readingIndex));
    if (!cli.calib.empty()) options.calibFile = cli.calib;
    if (cli.firmwareOption != nullptr && cli.firmwareOption->count() > 0) options.firmwarePanel = cli.firmware;
    options.apiType = kApiTypes.at(cli.api);
    options.verbose = global.verbose;
    if (!cli.curveFile.empty()) {
        const std::string text = ReadInputFile(cli.curveFile);
        const bool json = HasExtension(cli.curveFile, "json");
        options.toneCurve = json ? CurveFromJson(text, cli.curveFile) : CurveFromCsv(text, cli.curveFile);
    }
    return options;
}

void AddModeArguments(CLI::App& command, std::string& mode, CurveCli& cli) {
    command.add_option("MODE", mode, "Colour mode")->required()->check(CLI::IsMember(ModeNames()));
    AddCurveOptions(command, cli);
    command.add_option("--curve", cli.curveFile, "Tone curve for vx-curve (CSV or JSON)")->type_name(kFile);
}

namespace {

std::string BrightnessText(double brightness) {
    std::ostringstream text;
    text << brightness;
    return text.str();
}

}  // namespace

SubjectCurve ComputeCurveOrFail(const std::string& modeName, const CurveCli& cli, const GlobalOptions& global) {
    const Mode mode = *ParseMode(modeName);
    const CurveOptions options = ResolveCurveOptions(cli, global);
    ModeCurve result = ComputeModeCurve(mode, options);
    if (result.initStatus != 0) std::cerr << "quarnel: initialisation answered status " << result.initStatus << '\n';
    if (result.status != 0)
        throw ToolError(kExitData, modeName + ": the library could not build the curve (status " +
                                       std::to_string(result.status) + ")");
    // A low brightness can resample every entry down to the curve's first: a
    // black screen, which is never what a user asks a calibration for.
    const auto black = [](const CurvePlane& plane) {
        return std::all_of(plane.begin(), plane.end(), [](uint16_t v) { return v == 0; });
    };
    if (std::all_of(result.curve.begin(), result.curve.end(), black))
        throw ToolError(kExitData, modeName + ": the library's curve is black at brightness " +
                                       BrightnessText(options.brightness) + " (every entry 0); raise --brightness");
    return {result.curve, {std::move(result.panel), ModeSummary(mode, options), std::nullopt}};
}

}  // namespace quarnel::tool
