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

#include "curve.h"
#include "panel/panel_source.h"

namespace quarnel::tool {

enum class Mode { Slider, Theater, Vivid, ReadingStrong, ReadingWeak, ReadingMulti, Native, VxVivid, VxCurve };

// Command-line names: slider, theater, vivid, reading-strong, reading-weak,
// reading-multi, native, vx-vivid, vx-curve.
std::optional<Mode> ParseMode(std::string_view name);
std::string_view ModeName(Mode mode);

struct CurveOptions {
    std::optional<std::string> calibFile;  // raw calibration block on disk
    std::optional<int> firmwarePanel;      // panel index for the firmware read
    int apiType = 0;                       // lutApiType, 0..5
    double interval = 1.0;                 // slider: 0.5 warm .. 1.0 normal .. 1.5 cold
    double brightness = 1.0;               // lutDcModeScale
    double readingLevels = 2.0;
    double readingIndex = 0.0;
    std::optional<Curve> toneCurve;  // required by vx-curve
    bool verbose = false;            // library chatter to standard error instead of nowhere
};
// Neither calibFile nor firmwarePanel: the tool's built-in sample panel.

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

}  // namespace quarnel::tool
