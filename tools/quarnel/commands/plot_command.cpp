// SPDX-License-Identifier: MIT
// quarnel plot chromaticity: the panel's gamut and the white of every mode in
// the CIE 1931 xy diagram.

#include <cmath>
#include <memory>

#include "commands/commands.h"
#include "commands/curve_cli.h"
#include "formats/chromaticity_plot.h"
#include "io/atomic_file.h"
#include "io/file_name.h"
#include "io/tool_error.h"
#include "session/panel_colours.h"

namespace quarnel::tool {
namespace {

// The slider first: its dot takes the colour of the slider's track.
constexpr Mode kPlottedModes[] = {Mode::Slider,  Mode::Vivid,       Mode::VxVivid,      Mode::Native,
                                  Mode::Theater, Mode::ReadingWeak, Mode::ReadingMulti, Mode::ReadingStrong};
// Whites closer than this in x and y share one dot and one label.
constexpr double kSameWhite = 0.0005;
// The slider's track: its warm end to its cold end.
constexpr double kSliderWarm = 0.5, kSliderCold = 1.5, kSliderStep = 0.05;

struct PlotCli {
    CurveCli curve;
    std::string output = "chromaticity.png";
};

std::string ModeLabel(Mode mode, const CurveOptions& options) {
    std::string label(ModeName(mode));
    if (mode != Mode::Slider && mode != Mode::VxVivid) return label;
    char value[16];
    std::snprintf(value, sizeof value, "%.2f", options.interval);
    std::string text = value;
    while (text.back() == '0' && text[text.size() - 2] != '.') text.pop_back();
    return label + " " + text;
}

void AddWhite(std::vector<LabelledWhite>& whites, const std::string& label, const WhitePoint& white) {
    for (auto& w : whites)
        if (std::abs(w.xy.x - white.x) < kSameWhite && std::abs(w.xy.y - white.y) < kSameWhite) {
            w.label += ", " + label;
            return;
        }
    whites.push_back({label, {white.x, white.y}, white.cct});
}

ChromaticityScene Scene(const CurveOptions& options) {
    const PanelPrimaries panel = ReadPanelPrimaries(options);
    ChromaticityScene scene{panel.source,
                            panel.factoryData ? "panel primaries, factory measurement"
                                              : "panel primaries: none measured, the record's colour space",
                            panel.primaries,
                            {},
                            {}};
    for (Mode mode : kPlottedModes)
        if (const auto white = ModeWhite(mode, options)) AddWhite(scene.whites, ModeLabel(mode, options), *white);
    CurveOptions slider = options;
    // Counted in steps: a sum of steps overshoots the cold end, where the
    // library takes the interval as out of range.
    const auto steps = static_cast<int>(std::lround((kSliderCold - kSliderWarm) / kSliderStep));
    for (int i = 0; i <= steps; ++i) {
        slider.interval = i == steps ? kSliderCold : kSliderWarm + i * kSliderStep;
        if (const auto white = ModeWhite(Mode::Slider, slider)) scene.sliderTrack.push_back({white->x, white->y});
    }
    return scene;
}

void Run(const PlotCli& cli, const GlobalOptions& global) {
    const std::string extension = ExtensionOf(cli.output);
    if (extension != "png" && extension != "svg")
        throw ToolError(kExitUsage, cli.output + ": the picture is written as .png or .svg");
    const ChromaticityScene scene = Scene(ResolveCurveOptions(cli.curve, global));
    WriteFileAtomically(cli.output, extension == "png" ? ChromaticityToPng(scene) : ChromaticityToSvg(scene));
}

}  // namespace

void AddPlotCommand(CLI::App& app, const GlobalOptions& global) {
    auto* plot = app.add_subcommand("plot", "Pictures of the panel");
    plot->require_subcommand(1);
    plot->footer("Example:\n  quarnel plot chromaticity -o panel.png");
    auto cli = std::make_shared<PlotCli>();
    auto* command = plot->add_subcommand(
        "chromaticity", "The panel's gamut and every mode's white in the CIE 1931 xy diagram, beside sRGB");
    AddCurveOptions(*command, cli->curve);
    command->add_option("-o", cli->output, "Picture to write, .png or .svg")->type_name("FILE")->capture_default_str();
    command->footer(
        "Left: the whole diagram with the spectral locus, the panel's primaries, sRGB and the Planckian\n"
        "locus. Right: the whites enlarged, colour temperatures marked along the Planckian locus.\n"
        "Example:\n  quarnel plot chromaticity --interval 0.7 -o panel.svg");
    command->callback([cli, &global] { Run(*cli, global); });
}

}  // namespace quarnel::tool
