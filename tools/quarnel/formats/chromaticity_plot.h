// SPDX-License-Identifier: MIT
#pragma once
// The CIE 1931 xy diagram of a panel: the whole diagram with the panel's
// gamut beside sRGB's, and an enlarged view of the whites of its modes along
// the Planckian locus.

#include <array>
#include <string>
#include <vector>

#include "model/cie1931.h"

namespace quarnel::tool {

struct LabelledWhite {
    std::string label;  // the modes that share this white
    Xy xy;
    int cct = 0;  // kelvin
};

struct ChromaticityScene {
    std::string title;
    std::string gamutLabel;  // what the panel triangle shows
    std::array<Xy, 3> primaries;
    std::vector<LabelledWhite> whites;
    std::vector<Xy> sliderTrack;  // the slider's white from its warm to its cold end
};

std::string ChromaticityToPng(const ChromaticityScene& scene);
std::string ChromaticityToSvg(const ChromaticityScene& scene);

}  // namespace quarnel::tool
