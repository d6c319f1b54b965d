// SPDX-License-Identifier: MIT
#pragma once
// The end-to-end record of one panel: one line per call naming its outputs, and each distinct output array
// stored once, by value, in a compact lossless form that the reference model (scripts/reference_pipeline.py)
// decodes; it names the first differing entry of a call where a golden comparison names only the line.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace quarnel::test {

// Whole numbers as run-length coded differences: "256*255" is 255 steps of 256 from the previous value (0 at
// the start). Only the ordering of entries matters to the coder, not their meaning.
std::string EncodeRuns(const std::vector<int64_t>& values);

// The distinct arrays of one record under short names ("L0", "I3", "V2"), first seen first named.
class ValueTable {
public:
    std::string Lut(const uint16_t* values, std::size_t count);
    std::string Doubles(char kind, const double* values, std::size_t count);
    std::string Name(char kind, const std::string& encoded);  // any other kind of value list, as it stands

    std::string Lines() const;  // "L0 ..." lines in name order

private:
    std::map<std::string, std::string> named_;  // kind + encoding -> name
    std::vector<std::string> lines_;
    std::map<char, int> counts_;
};

}  // namespace quarnel::test
