// SPDX-License-Identifier: MIT
#pragma once
// The options that choose a panel and shape its curves, shared by modes and
// lut.

#include <CLI/CLI.hpp>
#include <string>

#include "commands/commands.h"
#include "mode_curve.h"

namespace quarnel::tool {

struct CurveCli {
    std::string calib;
    int firmware = 0;
    std::string api = "plain";
    std::string curveFile;
    CurveOptions options;
    CLI::Option* firmwareOption = nullptr;
};

void AddCurveOptions(CLI::App& command, CurveCli& cli);
// The options as the library takes them; reads --curve when given.
CurveOptions ResolveCurveOptions(const CurveCli& cli, const GlobalOptions& global);

}  // namespace quarnel::tool
