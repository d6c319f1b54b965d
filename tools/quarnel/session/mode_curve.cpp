// SPDX-License-Identifier: MIT
#include "session/mode_curve.h"

#include <algorithm>
#include <cstdio>

#include "io/tool_error.h"
#include "session/library_session.h"

namespace quarnel::tool {
namespace {

struct ModeEntry {
    Mode mode;
    std::string_view name;
    int32_t code;  // CCTAPI request, or CCTAPI_VX mode when vx
    bool vx;
};

constexpr ModeEntry kModes[] = {
    {Mode::Slider, "slider", CCTAPI_GET_LUT, false},
    {Mode::Theater, "theater", CCTAPI_THEATER_MODE, false},
    {Mode::Vivid, "vivid", CCTAPI_VIVID_MODE, false},
    {Mode::ReadingStrong, "reading-strong", CCTAPI_READING_MODE_STRONG, false},
    {Mode::ReadingWeak, "reading-weak", CCTAPI_READING_MODE_WEAK, false},
    {Mode::ReadingMulti, "reading-multi", CCTAPI_READING_MODE_MULTI, false},
    {Mode::Native, "native", CCTAPI_NATIVE_MODE, false},
    {Mode::VxVivid, "vx-vivid", CCTAPI_VX_VIVID_MODE, true},
    {Mode::VxCurve, "vx-curve", CCTAPI_VX_MODE_FIRST, true},
};

const ModeEntry& Entry(Mode mode) {
    return *std::find_if(std::begin(kModes), std::end(kModes), [&](const ModeEntry& e) { return e.mode == mode; });
}

}  // namespace

std::optional<Mode> ParseMode(std::string_view name) {
    for (const auto& entry : kModes)
        if (entry.name == name) return entry.mode;
    return std::nullopt;
}

std::string_view ModeName(Mode mode) { return Entry(mode).name; }

std::string ModeSummary(Mode mode, const CurveOptions& options) {
    std::string text(ModeName(mode));
    char value[64];
    const auto add = [&](const char* format, double v) {
        std::snprintf(value, sizeof value, format, v);
        text += value;
    };
    if (mode == Mode::Slider || mode == Mode::VxVivid || mode == Mode::VxCurve)
        add(", interval %.2f", options.interval);
    if (mode == Mode::ReadingMulti) {
        // A blend between two levels shows as one: "reading level 0.5 of 3".
        add(", reading level %g", options.readingIndex);
        add(" of %.0f", options.readingLevels);
    }
    if (options.brightness != 1.0) add(", brightness %.2f", options.brightness);
    if (options.apiType != 0) add(", api type %.0f", options.apiType);
    return text;
}

std::vector<std::string> ModeNames() {
    std::vector<std::string> names;
    for (const auto& entry : kModes) names.emplace_back(entry.name);
    return names;
}

ModeCurve RunMode(LibrarySession& session, Mode mode, const CurveOptions& options) {
    ModeCurve result;
    const ModeEntry& entry = Entry(mode);
    if (mode == Mode::VxCurve && !options.toneCurve)
        throw ToolError(kExitUsage, "vx-curve needs a tone curve (--curve FILE)");
    const auto run = [&] {
        return entry.vx ? session.Vx(entry.code, mode == Mode::VxCurve ? &*options.toneCurve : nullptr)
                        : session.Request(static_cast<uint32_t>(entry.code));
    };
    result.status = run();
    // Every other request leaves its 16-bit table in outLut, the one the float
    // forms are made from. The native request for nvidia writes only the
    // driver's two float ramps, both identities, and leaves outLut as it was:
    // its curve is the table the same request gives for plain.
    if (mode == Mode::Native && options.apiType == CCT_LUT_API_NVIDIA && result.status == 0) {
        session.SetApiType(CCT_LUT_API_PLAIN);
        run();
        session.SetApiType(options.apiType);
    }
    result.curve = session.OutCurve();
    return result;
}

ModeCurve ComputeModeCurve(Mode mode, const CurveOptions& options) {
    if (mode == Mode::VxCurve && !options.toneCurve)
        throw ToolError(kExitUsage, "vx-curve needs a tone curve (--curve FILE)");
    LibrarySession session(options);
    const int32_t initStatus = session.Init();
    ModeCurve result = RunMode(session, mode, options);
    result.initStatus = initStatus;
    result.panel = DescribePanel(session);
    return result;
}

}  // namespace quarnel::tool
