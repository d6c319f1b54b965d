// SPDX-License-Identifier: MIT
#pragma once
// The end-to-end record of one panel: one line per call naming its outputs, and each distinct output array
// stored once, by value, in a compact lossless form. Two records compare call by call and entry by entry, so a
// difference is reported as the first differing entry with both values.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace quarnel::test {

// Whole numbers as run-length coded differences: "256*255" is 255 steps of 256 from the previous value (0 at
// the start). Only the ordering of entries matters to the coder, not their meaning.
std::string EncodeRuns(const std::vector<int64_t>& values);
std::vector<int64_t> DecodeRuns(const std::string& text);

// The distinct arrays of one record under short names ("L0", "I3", "N1"), first seen first named.
class ValueTable {
public:
    std::string Lut(const uint16_t* values, std::size_t count);
    std::string Doubles(char kind, const double* values, std::size_t count);
    std::string Floats(char kind, const float* values, std::size_t count);
    std::string Lines() const;  // "L0 ..." lines in name order

private:
    std::string Name(char kind, const std::string& encoded);
    std::map<std::string, std::string> named_;  // kind + encoding -> name
    std::vector<std::string> lines_;
    std::map<char, int> counts_;
};

// Decodes the table lines of a record into values (floating arrays exactly, as doubles).
std::map<std::string, std::vector<double>> ParseTables(const std::string& record);

// The first difference between two records, described in words; empty when they are alike.
std::string FirstDifference(const std::string& expected, const std::string& actual);

}  // namespace quarnel::test
