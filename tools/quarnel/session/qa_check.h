// SPDX-License-Identifier: MIT
#pragma once
// Factory QA of one calibration block: whether the library uses it, what
// the panel measures, and the white every mode gives it.

#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "model/qa_measures.h"
#include "session/mode_curve.h"

namespace quarnel::tool {

inline constexpr size_t kQaModeCount = std::size(kPanelModes);
inline constexpr std::string_view kVerdictOk = "ok";

struct QaMode {
    int32_t status = 0;
    bool measured = false;  // the request succeeded and its curve gives a white
    Xy white = kNoChromaticity;
    int32_t cct = 0;
    double luminance = kNotMeasured;       // Y of the white, in the block's unit
    double luminanceShare = kNotMeasured;  // of the native white's
    bool hasAim = false;                   // native aims at nothing
    Xy aim = kNoChromaticity;
    double duv = kNotMeasured;  // of the white from the aim
};

// Plain values only: the record crosses from a worker process as bytes.
struct QaMeasures {
    int32_t version = -1;    // the block's version byte; -1 when it was not read
    int32_t initStatus = 0;  // request 1
    bool measured = false;   // the block was read: `native` holds what it says
    NativeMeasures native;
    bool modesRun = false;
    std::array<QaMode, kQaModeCount> modes{};
};

struct QaResult {
    QaMeasures measures;
    std::string verdict;  // "ok", or why the library does not use the block, as block inspect says it
};

// Never throws for anything the file holds; an unreadable file is a verdict.
QaResult CheckBlock(const std::string& path, bool verbose);

// The result as bytes and back, between processes of the same program.
std::string PackResult(const QaResult& result);
// False when the bytes are not a packed result.
bool UnpackResult(std::string_view bytes, QaResult& result);

}  // namespace quarnel::tool
