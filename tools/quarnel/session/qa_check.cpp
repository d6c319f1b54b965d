// SPDX-License-Identifier: MIT
#include "session/qa_check.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "io/tool_error.h"
#include "model/block_codec.h"
#include "model/block_file.h"
#include "session/library_session.h"
#include "session/panel_source.h"

namespace quarnel::tool {
namespace {

static_assert(std::is_trivially_copyable_v<QaMeasures>);

// The fixed white the theater request solves its warm, boosted gains for.
constexpr Xy kTheaterWhite{0.3418, 0.3757};
// The library solves every stored gain for a panel that follows this power law.
constexpr double kSolverGamma = 2.2;

Xy Chroma(const Xyz& xyz) {
    const auto xy = ToChromaticity(xyz);
    return xy ? Xy{xy->x, xy->y} : kNoChromaticity;
}

// The white that a stored gain triple stands for: each primary at the
// luminance share the library gave it.
Xy GainsWhite(const PanelMeasurements& measured, const double (&gain)[3]) {
    Xyz mix{};
    for (size_t c = 0; c < 3; ++c)
        for (size_t k = 0; k < 3; ++k) mix[k] += std::pow(gain[c], kSolverGamma) * measured.primaries[c][k];
    return Chroma(mix);
}

// What each mode aims at: D65 for the normal slider position and the modes
// built on its gains, the theater white, the reading gains' own white.
bool ModeAim(Mode mode, const CctContext& ctx, const PanelMeasurements& measured, Xy& aim) {
    switch (mode) {
        case Mode::Slider:
        case Mode::Vivid:
        case Mode::VxVivid:
            aim = kD65;
            return true;
        case Mode::Theater:
            aim = kTheaterWhite;
            return true;
        case Mode::ReadingStrong:
            aim = GainsWhite(measured, ctx.gainReadStrong);
            return true;
        case Mode::ReadingWeak:
        case Mode::ReadingMulti:
            aim = GainsWhite(measured, ctx.gainReadWeak);
            return true;  // level 0 is weak
        default:
            return false;
    }
}

void RunModes(LibrarySession& session, const PanelMeasurements& measured, QaMeasures& m) {
    const PanelModel panel = FromMeasurements(measured);
    const CurveOptions defaults;
    for (size_t i = 0; i < kQaModeCount; ++i) {
        const Mode mode = kPanelModes[i];
        QaMode& row = m.modes[i];
        const ModeCurve result = RunMode(session, mode, defaults);
        row.status = result.status;
        if (result.status != 0) continue;
        const Xyz white = CalibratedWhite(panel, result.curve);
        const auto xy = ToChromaticity(white);
        if (!xy) continue;
        row.measured = true;
        row.white = {xy->x, xy->y};
        row.cct = Cct(*xy);
        row.luminance = white[1];
        row.luminanceShare = white[1] / m.native.whiteY;
        row.hasAim = ModeAim(mode, session.context(), measured, row.aim);
        if (row.hasAim) row.duv = DeltaUv(row.white, row.aim);
    }
    m.modesRun = true;
}

// Strips "PATH: " from a message about the file.
std::string WithoutPath(const std::string& message, const std::string& path) {
    return message.starts_with(path + ": ") ? message.substr(path.size() + 2) : message;
}

}  // namespace

QaResult CheckBlock(const std::string& path, bool verbose) {
    QaResult result;
    QaMeasures& m = result.measures;
    DecodedBlock decoded;
    try {
        const std::string bytes = ReadBlockFile(path);
        Block block{};
        std::copy(bytes.begin(), bytes.end(), block.begin());
        decoded = DecodeBlock(block, verbose);
    } catch (const ToolError& e) {
        result.verdict = WithoutPath(e.what(), path);
        return result;
    }
    m.version = decoded.description.version;
    const auto problem = FindBlockProblem(decoded);
    const PanelMeasurements measured = MeasurementsFromBlock(decoded.description);
    if (decoded.magicOk) {
        m.native = MeasureNative(measured);
        m.measured = true;
    }
    try {
        CurveOptions options;
        options.calibFile = path;
        options.verbose = verbose;
        LibrarySession session(options, false);
        m.initStatus = session.Request(CCTAPI_INIT_GAIN);
        if (m.initStatus == 0 && session.context().fromBios != 0) RunModes(session, measured, m);
    } catch (const ToolError& e) {
        result.verdict = WithoutPath(e.what(), path);
        return result;
    }
    if (problem)
        result.verdict = *problem;
    else if (m.initStatus != 0)
        result.verdict = "initialisation answered status " + std::to_string(m.initStatus);
    else
        result.verdict = kVerdictOk;
    return result;
}

std::string PackResult(const QaResult& result) {
    std::string bytes(sizeof(QaMeasures), '\0');
    std::memcpy(bytes.data(), &result.measures, sizeof(QaMeasures));
    return bytes + result.verdict;
}

bool UnpackResult(std::string_view bytes, QaResult& result) {
    if (bytes.size() < sizeof(QaMeasures)) return false;
    std::memcpy(&result.measures, bytes.data(), sizeof(QaMeasures));
    result.verdict.assign(bytes.substr(sizeof(QaMeasures)));
    return true;
}

}  // namespace quarnel::tool
