// SPDX-License-Identifier: MIT
#include "chroma/panel_colours.h"

#include "formats/binary_formats.h"
#include "library_session.h"
#include "mode_run.h"

namespace quarnel::tool {

PanelPrimaries ReadPanelPrimaries(const CurveOptions& options) {
    LibrarySession session(options);
    session.Init();
    const CctContext& ctx = session.context();
    PanelPrimaries panel{session.sourceName(), ctx.fromBios != 0, {}};
    const auto& table = panel.factoryData ? ctx.bios : ctx.icc;
    for (size_t c = 0; c < 3; ++c) {
        const double sum = table[c][0] + table[c][1] + table[c][2];
        panel.primaries[c] = sum > 0 ? Xy{table[c][0] / sum, table[c][1] / sum} : Xy{};
    }
    return panel;
}

std::optional<WhitePoint> ModeWhite(Mode mode, const CurveOptions& options) {
    LibrarySession session(options);
    // Without a successful initialisation only the native mode's gains mean anything.
    if (session.Init() != 0 && mode != Mode::Native) return std::nullopt;
    const ModeCurve result = RunMode(session, mode, options);
    if (!result.gains) return std::nullopt;
    return WhiteFromGains(session.context(), *result.gains);
}

std::string ModeProfile(const std::string& modeName, const CurveCli& cli, const GlobalOptions& global) {
    return CurveToIcc(ComputeCurveOrFail(modeName, cli, global));
}

}  // namespace quarnel::tool
