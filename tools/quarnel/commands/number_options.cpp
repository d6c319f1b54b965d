// SPDX-License-Identifier: MIT
#include "commands/number_options.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <sstream>
#include <string>

namespace quarnel::tool {

// The option's text as a finite number, or nothing: "", "nan", "inf" and
// trailing characters are all refused.
namespace {

std::optional<double> FiniteNumber(const std::string& text) {
    double v = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || !std::isfinite(v))
        return std::nullopt;
    return v;
}

// Accepts a finite number that `fits`; refuses anything else with
// "expected <what>, found "<text>"".
template <typename Fits>
CLI::Validator NumberValidator(Fits fits, std::string what) {
    return CLI::Validator(
        [=](const std::string& text) {
            const auto v = FiniteNumber(text);
            return v && fits(*v) ? std::string() : "expected " + what + ", found \"" + text + "\"";
        },
        "");
}

}  // namespace

std::string Shown(double v) {
    std::ostringstream text;
    text << v;
    return text.str();
}

CLI::Validator FiniteRange(double low, double high) {
    return NumberValidator([=](double v) { return v >= low && v <= high; },
                           "a number from " + Shown(low) + " to " + Shown(high));
}

CLI::Validator FiniteFrom(double low) {
    return NumberValidator([=](double v) { return v >= low; }, "a number of at least " + Shown(low));
}

CLI::Validator FiniteAbove(double low) {
    return NumberValidator([=](double v) { return v > low; }, "a number greater than " + Shown(low));
}

CLI::Validator WholeNumberFrom(double low) {
    return NumberValidator([=](double v) { return v >= low && std::floor(v) == v; },
                           "a whole number of at least " + Shown(low));
}

}  // namespace quarnel::tool
