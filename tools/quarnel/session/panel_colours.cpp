// SPDX-License-Identifier: MIT
#include "session/panel_colours.h"

#include "model/panel_model.h"
#include "session/library_session.h"
#include "session/mode_curve.h"

namespace quarnel::tool {

PanelPrimaries ReadPanelPrimaries(const CurveOptions& options) {
    LibrarySession session(options);
    session.Init();
    const PanelSubject subject = DescribePanel(session);
    PanelPrimaries panel{session.sourceName(), subject.factoryData, {}};
    for (size_t c = 0; c < 3; ++c) {
        const auto xy = ToChromaticity(subject.measured.primaries[c]);
        panel.primaries[c] = xy ? Xy{xy->x, xy->y} : Xy{};
    }
    return panel;
}

std::optional<WhitePoint> ModeWhite(Mode mode, const CurveOptions& options) {
    LibrarySession session(options);
    // Without a successful initialisation only the native mode's curve means anything.
    if (session.Init() != 0 && mode != Mode::Native) return std::nullopt;
    const ModeCurve result = RunMode(session, mode, options);
    if (result.status != 0) return std::nullopt;
    const PanelModel panel = FromMeasurements(DescribePanel(session).measured);
    const auto xy = ToChromaticity(CalibratedWhite(panel, result.curve));
    if (!xy) return std::nullopt;
    return WhitePoint{xy->x, xy->y, Cct(*xy)};
}

}  // namespace quarnel::tool
