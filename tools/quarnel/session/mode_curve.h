// SPDX-License-Identifier: MIT
#pragma once
// The curve of one colour mode, computed through the library from the same
// options that `quarnel lut` takes. Used by the lut and modes commands and by
// the live-display commands.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/curve.h"
#include "session/curve_options.h"
#include "session/panel_source.h"

namespace quarnel::tool {

class LibrarySession;

// Command-line names: slider, theater, vivid, reading-strong, reading-weak,
// reading-multi, native, vx-vivid, vx-curve.
std::optional<Mode> ParseMode(std::string_view name);
std::string_view ModeName(Mode mode);

struct ModeCurve {
    int32_t initStatus = 0;  // request 1
    int32_t status = 0;      // the mode's own request
    Curve curve{};           // outLut after the request
    PanelSubject panel;      // the panel request 1 found
};

// The mode and the options that shape it, for people: "slider, interval
// 0.70", "native, brightness 0.80, api srgb".
std::string ModeSummary(Mode mode, const CurveOptions& options);

// Throws ToolError: a missing calibration file (66), a block that fails its
// checks (65), vx-curve without a tone curve (64).
ModeCurve ComputeModeCurve(Mode mode, const CurveOptions& options);

// Running one mode inside an initialised session, for callers that show
// several modes of one panel: the mode's request (CCTAPI 2..8 or a VX mode)
// and its curve and gains.
ModeCurve RunMode(LibrarySession& session, Mode mode, const CurveOptions& options);

std::vector<std::string> ModeNames();

// The modes shown for a whole panel, each with the options' defaults.
inline constexpr Mode kPanelModes[] = {Mode::Slider,      Mode::Theater,      Mode::Vivid,  Mode::ReadingStrong,
                                       Mode::ReadingWeak, Mode::ReadingMulti, Mode::Native, Mode::VxVivid};

}  // namespace quarnel::tool
