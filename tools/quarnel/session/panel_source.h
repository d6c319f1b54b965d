// SPDX-License-Identifier: MIT
#pragma once
// Which panel a curve is for and what its factory measured, as request 1
// found it.

#include <array>
#include <string>

#include "model/block_codec.h"
#include "model/panel_model.h"

namespace quarnel::tool {

struct PanelSubject {
    std::string name;             // "sample panel", the block file, "firmware panel 0"
    int calibrationVersion = -1;  // the block's version, -1 without factory data
    bool factoryData = false;
    PanelMeasurements measured;
};

// The colour space the library falls back on without factory data (rows
// red, green, blue, white; columns X, Y, Z), as the library gives it.
const std::array<Xyz, 4>& DefaultColourSpace();

// The measurements of a block: primaries, and black and tone levels from
// version 5 on.
PanelMeasurements MeasurementsFromBlock(const BlockDescription& block);

// One of the record's colour tables (rows red, green, blue, white; columns
// X, Y, Z).
std::array<Xyz, 4> ColourTableRows(const double (&table)[4][3]);

// A curve whose panel is unknown (read from a display, decoded from a
// string): the fallback colour space at a gamma of 2.2.
PanelSubject UnknownPanel(const std::string& name);

}  // namespace quarnel::tool
