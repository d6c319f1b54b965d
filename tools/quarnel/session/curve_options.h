// SPDX-License-Identifier: MIT
#pragma once
// What a caller asks of the library for one panel: the colour mode and the
// record's inputs that shape its curve.

#include <optional>
#include <string>

#include "model/curve.h"

namespace quarnel::tool {

enum class Mode { Slider, Theater, Vivid, ReadingStrong, ReadingWeak, ReadingMulti, Native, VxVivid, VxCurve };

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

}  // namespace quarnel::tool
