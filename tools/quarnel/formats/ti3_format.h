// SPDX-License-Identifier: MIT
#pragma once
// A panel's factory measurements as a CGATS chart file of the kind
// ArgyllCMS's profilers read (.ti3): RGB drive in percent to CIE XYZ.

#include <string>

#include "model/panel_model.h"

namespace quarnel::tool {

// Rows: black and each channel's grey levels (when measured), the three
// primaries and white at full drive. XYZ scaled so white has Y = 100; the
// absolute white goes in LUMINANCE_XYZ_CDM2.
std::string MeasurementsToTi3(const PanelMeasurements& measured, const std::string& description);

}  // namespace quarnel::tool
