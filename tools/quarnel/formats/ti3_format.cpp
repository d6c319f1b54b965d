// SPDX-License-Identifier: MIT
#include "formats/ti3_format.h"

#include <charconv>
#include <cstdio>
#include <iterator>
#include <vector>

namespace quarnel::tool {
namespace {

constexpr double kPercent = 100.0;
constexpr size_t kWhite = 3;

struct Patch {
    Drive drive;  // 0..1
    Xyz xyz;
};

std::vector<Patch> Patches(const PanelMeasurements& measured) {
    std::vector<Patch> patches;
    if (measured.tone) {
        patches.push_back({{0, 0, 0}, measured.tone->black});
        for (size_t c = 0; c < 3; ++c)
            for (size_t j = 0; j < kGreyLevels; ++j) {
                Drive drive{};
                drive[c] = kToneDriveLevels[j + 1] / kToneDriveLevels.back();
                patches.push_back({drive, measured.tone->levels[c][j]});
            }
    }
    for (size_t c = 0; c < 3; ++c) {
        Drive drive{};
        drive[c] = 1;
        patches.push_back({drive, measured.primaries[c]});
    }
    patches.push_back({{1, 1, 1}, measured.primaries[kWhite]});
    return patches;
}

// A value the block keeps in single precision, in the fewest digits that
// give it back: 277.13 rather than the widened 277.130005.
std::string AsStored(double v) {
    char text[64];
    const auto result =
        std::to_chars(std::begin(text), std::end(text), static_cast<float>(v), std::chars_format::fixed);
    return {text, result.ptr};
}

std::string Format(const char* format, double a, double b, double c) {
    char text[128];
    std::snprintf(text, sizeof text, format, a, b, c);
    return text;
}

}  // namespace

std::string MeasurementsToTi3(const PanelMeasurements& measured, const std::string& description) {
    const Xyz& white = measured.primaries[kWhite];
    const double perWhite = white[1] > 0 ? kPercent / white[1] : 1.0;
    const std::vector<Patch> patches = Patches(measured);
    std::string text = "CTI3\n\nDESCRIPTOR \"" + description +
                       "\"\nORIGINATOR \"quarnel\"\nDEVICE_CLASS \"DISPLAY\"\nCOLOR_REP \"RGB_XYZ\"\n" +
                       "LUMINANCE_XYZ_CDM2 \"" + AsStored(white[0]) + " " + AsStored(white[1]) + " " +
                       AsStored(white[2]) + "\"\n" +
                       "NORMALIZED_TO_Y_100 \"YES\"\n\nNUMBER_OF_FIELDS 7\nBEGIN_DATA_FORMAT\n"
                       "SAMPLE_ID RGB_R RGB_G RGB_B XYZ_X XYZ_Y XYZ_Z\nEND_DATA_FORMAT\n\nNUMBER_OF_SETS " +
                       std::to_string(patches.size()) + "\nBEGIN_DATA\n";
    for (size_t i = 0; i < patches.size(); ++i) {
        const Patch& p = patches[i];
        text += std::to_string(i + 1) +
                Format(" %.6f %.6f %.6f", p.drive[0] * kPercent, p.drive[1] * kPercent, p.drive[2] * kPercent) +
                Format(" %.6f %.6f %.6f\n", p.xyz[0] * perWhite, p.xyz[1] * perWhite, p.xyz[2] * perWhite);
    }
    return text + "END_DATA\n";
}

}  // namespace quarnel::tool
