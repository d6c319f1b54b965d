// SPDX-License-Identifier: MIT
#pragma once
// The options that choose a panel and shape its curves, shared by modes and
// lut.

#include <CLI/CLI.hpp>
#include <string>

#include "commands/commands.h"
#include "formats/curve_subject.h"
#include "session/mode_curve.h"

namespace quarnel::tool {

struct CurveCli {
    std::string calib;
    int firmware = 0;
    std::string api = "plain";
    std::string curveFile;
    CurveOptions options;
    CLI::Option* firmwareOption = nullptr;
    bool sample = false;  // the built-in sample panel, asked for by name
};

void AddCurveOptions(CLI::App& command, CurveCli& cli);
// Commands that reach a real display take no made-up panel unasked: throws
// ToolError (64) unless --calib, --firmware or --sample was given.
void RequirePanelSource(const CurveCli& cli);
// The options as the library takes them; reads --curve when given.
CurveOptions ResolveCurveOptions(const CurveCli& cli, const GlobalOptions& global);

// MODE and the curve options, --curve included: the arguments of every
// command that computes one mode's curve.
void AddModeArguments(CLI::App& command, std::string& mode, CurveCli& cli);

struct SubjectCurve {
    Curve curve;
    CurveSubject subject;  // the panel and the mode with its options
};

// MODE's curve as the library builds it for these options. A request that
// fails is bad input data; a failed initialisation is only reported.
SubjectCurve ComputeCurveOrFail(const std::string& modeName, const CurveCli& cli, const GlobalOptions& global);

}  // namespace quarnel::tool
