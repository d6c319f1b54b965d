// SPDX-License-Identifier: MIT
// A display profile whose video card gamma tag carries the curve. Written
// as a version 2.4 profile: version 4 headers are still refused by common
// loaders of video card curves.

#include <lcms2.h>

#include <algorithm>
#include <memory>

#include "formats/binary_formats.h"
#include "tool_error.h"

namespace quarnel::tool {
namespace {

constexpr double kProfileVersion = 2.4;

struct ProfileCloser {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
struct CurveFreer {
    void operator()(cmsToneCurve* curve) const { cmsFreeToneCurve(curve); }
};

void SetText(cmsHPROFILE profile, cmsTagSignature tag, const char* text) {
    cmsMLU* mlu = cmsMLUalloc(nullptr, 1);
    cmsMLUsetASCII(mlu, "en", "US", text);
    cmsWriteTag(profile, tag, mlu);
    cmsMLUfree(mlu);
}

}  // namespace

std::string CurveToIcc(const Curve& curve) {
    std::unique_ptr<void, ProfileCloser> profile(cmsCreate_sRGBProfile());
    std::unique_ptr<cmsToneCurve, CurveFreer> planes[3];
    for (size_t c = 0; c < 3; ++c) {
        CurvePlane ramp{};
        std::transform(curve[c].begin(), curve[c].end(), ramp.begin(), EntryToRamp);
        planes[c].reset(cmsBuildTabulatedToneCurve16(nullptr, kCurveSize, ramp.data()));
    }
    if (!profile || !planes[0] || !planes[1] || !planes[2])
        throw ToolError(kExitCantCreate, "cannot build the display profile");
    cmsSetProfileVersion(profile.get(), kProfileVersion);
    cmsSetDeviceClass(profile.get(), cmsSigDisplayClass);
    SetText(profile.get(), cmsSigProfileDescriptionTag, "Quarnel display calibration");
    SetText(profile.get(), cmsSigCopyrightTag, "No copyright, use freely");
    const cmsToneCurve* vcgt[3] = {planes[0].get(), planes[1].get(), planes[2].get()};
    cmsUInt32Number size = 0;
    if (!cmsWriteTag(profile.get(), cmsSigVcgtTag, vcgt) || !cmsSaveProfileToMem(profile.get(), nullptr, &size))
        throw ToolError(kExitCantCreate, "cannot build the display profile");
    std::string bytes(size, '\0');
    if (!cmsSaveProfileToMem(profile.get(), bytes.data(), &size))
        throw ToolError(kExitCantCreate, "cannot build the display profile");
    return bytes;
}

}  // namespace quarnel::tool
