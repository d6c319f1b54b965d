// SPDX-License-Identifier: MIT
// The panel's own display profile with a mode's curve loaded: a matrix and
// three tone curves, so colour-managed programs render for the panel as the
// mode leaves it, and the curve in `vcgt` for the loader that sets the ramp.
// Version 2.4: version 4 headers are still refused by common loaders of
// video card curves. Version 2 convention: `wtpt` is the display's own white
// (Y = 1), the colourants are adapted to D50 with Bradford's transform and
// `chad` holds that transform, so absolute colorimetry gets the panel back.

#include <lcms2.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "formats/binary_formats.h"
#include "io/tool_error.h"
#include "model/panel_model.h"

namespace quarnel::tool {
namespace {

constexpr double kProfileVersion = 2.4;
constexpr size_t kToneCurveSize = 1024;
constexpr double kTableScale = 65535.0;  // full scale of a 16-bit curve entry
constexpr const char* kCopyright = "No copyright, use freely";

using ProfilePtr = std::unique_ptr<void, decltype(&cmsCloseProfile)>;
using ToneCurvePtr = std::unique_ptr<cmsToneCurve, decltype(&cmsFreeToneCurve)>;
using ToneCurves = std::array<ToneCurvePtr, 3>;

[[noreturn]] void Fail() { throw ToolError(kExitCantCreate, "cannot build the display profile"); }

// The profile's colours: absolute colourants and, per channel, the tone
// curve on a 0..1 input grid. Black is carried by curves that start above 0:
// a channel's curve is (black share + response) / (black share + response at
// full input), and its colourant the channel's colour times that top.
struct ProfileColours {
    std::array<Xyz, 3> colourant{};
    std::array<std::vector<cmsUInt16Number>, 3> tone;
    Xyz white{};
};

ProfileColours Colours(const PanelModel& model, const Curve& curve) {
    ProfileColours colours;
    const Xyz shares = BlackShares(model);
    for (size_t c = 0; c < 3; ++c) {
        const double top = shares[c] + Response(model, c, CurveDrive(curve[c], 1.0));
        if (!(top > 0)) throw ToolError(kExitData, "the curve turns a channel off; a profile cannot describe that");
        for (size_t k = 0; k < 3; ++k) {
            colours.colourant[c][k] = model.channel[c][k] * top;
            colours.white[k] += colours.colourant[c][k];
        }
        for (size_t i = 0; i < kToneCurveSize; ++i) {
            const double input = static_cast<double>(i) / (kToneCurveSize - 1);
            const double share = shares[c] + Response(model, c, CurveDrive(curve[c], input));
            colours.tone[c].push_back(
                static_cast<cmsUInt16Number>(std::lround(std::clamp(share / top, 0.0, 1.0) * kTableScale)));
        }
    }
    return colours;
}

cmsCIEXYZ Scaled(const Xyz& xyz, double by) { return {xyz[0] * by, xyz[1] * by, xyz[2] * by}; }

// Bradford's transform from `white` to D50, row-major, as `chad` stores it.
std::array<double, 9> ChromaticAdaptation(const cmsCIEXYZ& white) {
    std::array<double, 9> matrix{};
    for (size_t column = 0; column < 3; ++column) {
        cmsCIEXYZ unit{column == 0 ? 1.0 : 0.0, column == 1 ? 1.0 : 0.0, column == 2 ? 1.0 : 0.0}, adapted{};
        if (!cmsAdaptToIlluminant(&adapted, &white, cmsD50_XYZ(), &unit)) Fail();
        matrix[column] = adapted.X;
        matrix[3 + column] = adapted.Y;
        matrix[6 + column] = adapted.Z;
    }
    return matrix;
}

void WriteColours(cmsHPROFILE profile, const ProfileColours& colours) {
    const double perWhite = 1.0 / colours.white[1];
    const cmsCIEXYZ white = Scaled(colours.white, perWhite), luminance{0, colours.white[1], 0};
    const std::array<double, 9> chad = ChromaticAdaptation(white);
    constexpr cmsTagSignature kColourants[3] = {cmsSigRedColorantTag, cmsSigGreenColorantTag, cmsSigBlueColorantTag};
    constexpr cmsTagSignature kTones[3] = {cmsSigRedTRCTag, cmsSigGreenTRCTag, cmsSigBlueTRCTag};
    bool ok = cmsWriteTag(profile, cmsSigMediaWhitePointTag, &white) &&
              cmsWriteTag(profile, cmsSigLuminanceTag, &luminance) &&
              cmsWriteTag(profile, cmsSigChromaticAdaptationTag, chad.data());
    for (size_t c = 0; c < 3; ++c) {
        const cmsCIEXYZ own = Scaled(colours.colourant[c], perWhite);
        cmsCIEXYZ adapted{};
        const ToneCurvePtr tone(cmsBuildTabulatedToneCurve16(nullptr, kToneCurveSize, colours.tone[c].data()),
                                cmsFreeToneCurve);
        ok = ok && tone && cmsAdaptToIlluminant(&adapted, &white, cmsD50_XYZ(), &own) &&
             cmsWriteTag(profile, kColourants[c], &adapted) && cmsWriteTag(profile, kTones[c], tone.get());
    }
    if (!ok) Fail();
}

void WriteVideoCardCurve(cmsHPROFILE profile, const Curve& curve) {
    ToneCurves planes{ToneCurvePtr(nullptr, cmsFreeToneCurve), ToneCurvePtr(nullptr, cmsFreeToneCurve),
                      ToneCurvePtr(nullptr, cmsFreeToneCurve)};
    for (size_t c = 0; c < 3; ++c) {
        CurvePlane ramp{};
        std::transform(curve[c].begin(), curve[c].end(), ramp.begin(), EntryToRamp);
        planes[c].reset(cmsBuildTabulatedToneCurve16(nullptr, kCurveSize, ramp.data()));
        if (!planes[c]) Fail();
    }
    const cmsToneCurve* vcgt[3] = {planes[0].get(), planes[1].get(), planes[2].get()};
    if (!cmsWriteTag(profile, cmsSigVcgtTag, vcgt)) Fail();
}

void WriteText(cmsHPROFILE profile, cmsTagSignature tag, const std::string& text) {
    std::unique_ptr<cmsMLU, decltype(&cmsMLUfree)> mlu(cmsMLUalloc(nullptr, 1), cmsMLUfree);
    if (!mlu || !cmsMLUsetASCII(mlu.get(), "en", "US", text.c_str()) || !cmsWriteTag(profile, tag, mlu.get())) Fail();
}

std::string PanelName(const CurveSubject& subject) {
    if (subject.display && !subject.display->model.empty())
        return subject.display->manufacturer.empty() ? subject.display->model
                                                     : subject.display->manufacturer + " " + subject.display->model;
    const PanelSubject& panel = subject.panel;
    if (!panel.factoryData) return panel.name + ", no factory data";
    return panel.name + ", calibration version " + std::to_string(panel.calibrationVersion) +
           (panel.measured.tone ? "" : ", no tone measurements");
}

void WriteTexts(cmsHPROFILE profile, const CurveSubject& subject) {
    WriteText(profile, cmsSigProfileDescriptionTag, "Quarnel " + PanelName(subject) + ": " + subject.mode);
    WriteText(profile, cmsSigDeviceModelDescTag, PanelName(subject));
    if (subject.display && !subject.display->manufacturer.empty())
        WriteText(profile, cmsSigDeviceMfgDescTag, subject.display->manufacturer);
    WriteText(profile, cmsSigCopyrightTag, kCopyright);
}

std::wstring Wide(const std::string& text) { return std::wstring(text.begin(), text.end()); }

// The keys a colour daemon matches a profile to its display by.
void WriteMetadata(cmsHPROFILE profile, const CurveSubject& subject) {
    std::vector<std::pair<std::string, std::string>> entries{
        {"DATA_source", subject.panel.factoryData ? "calib" : "standard"},
        {"CMF_product", "Quarnel"},
        {"CMF_binary", "quarnel"},
        {"CMF_version", QUARNEL_VERSION},
        {"QUARNEL_mode", subject.mode}};
    if (subject.display) {
        if (!subject.display->edidMd5.empty()) entries.emplace_back("EDID_md5", subject.display->edidMd5);
        if (!subject.display->deviceId.empty()) entries.emplace_back("MAPPING_device_id", subject.display->deviceId);
    }
    std::unique_ptr<void, decltype(&cmsDictFree)> dict(cmsDictAlloc(nullptr), cmsDictFree);
    bool ok = dict != nullptr;
    for (const auto& [key, value] : entries)
        ok = ok && cmsDictAddEntry(dict.get(), Wide(key).c_str(), Wide(value).c_str(), nullptr, nullptr);
    if (!ok || !cmsWriteTag(profile, cmsSigMetaTag, dict.get())) Fail();
}

}  // namespace

std::string CurveToIcc(const Curve& curve, const CurveSubject& subject) {
    const ProfileColours colours = Colours(FromMeasurements(subject.panel.measured), curve);
    const ProfilePtr profile(cmsCreateProfilePlaceholder(nullptr), cmsCloseProfile);
    if (!profile) Fail();
    cmsHPROFILE p = profile.get();
    cmsSetProfileVersion(p, kProfileVersion);
    cmsSetDeviceClass(p, cmsSigDisplayClass);
    cmsSetColorSpace(p, cmsSigRgbData);
    cmsSetPCS(p, cmsSigXYZData);
    cmsSetHeaderRenderingIntent(p, INTENT_PERCEPTUAL);
    WriteColours(p, colours);
    WriteVideoCardCurve(p, curve);
    WriteTexts(p, subject);
    WriteMetadata(p, subject);
    cmsUInt32Number size = 0;
    if (!cmsSaveProfileToMem(p, nullptr, &size)) Fail();
    std::string bytes(size, '\0');
    if (!cmsSaveProfileToMem(p, bytes.data(), &size)) Fail();
    return bytes;
}

}  // namespace quarnel::tool
