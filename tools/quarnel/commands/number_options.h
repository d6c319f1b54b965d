// SPDX-License-Identifier: MIT
#pragma once
// Checks of numeric options that refuse "", "nan", "inf" and trailing
// characters, and say the range in a person's words: "expected a number from
// 0 to 1, found "nan"".

#include <CLI/CLI.hpp>
#include <string>

namespace quarnel::tool {

// `v` as a person writes it: 0.5, 1, 1e+06.
std::string Shown(double v);

CLI::Validator FiniteRange(double low, double high);
CLI::Validator FiniteFrom(double low);
// Greater than `low`: a threshold that is a scale or a ratio cannot be 0.
CLI::Validator FiniteAbove(double low);
CLI::Validator WholeNumberFrom(double low);

}  // namespace quarnel::tool
