// SPDX-License-Identifier: MIT
#include "commands/number_options.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <sstream>

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

}  // namespace

std::string Shown(double v) {
    std::ostringstream text;
    text << v;
    return text.str();
}

CLI::Validator FiniteRange(double low, double high) {
    const std::string range = "a number from " + Shown(low) + " to " + Shown(high);
    return CLI::Validator(
        [=](const std::string& text) {
            const auto v = FiniteNumber(text);
            return v && *v >= low && *v <= high ? std::string() : "expected " + range + ", found \"" + text + "\"";
        },
        "");
}

CLI::Validator FiniteFrom(double low) {
    return CLI::Validator(
        [=](const std::string& text) {
            const auto v = FiniteNumber(text);
            return v && *v >= low ? std::string()
                                  : "expected a number of at least " + Shown(low) + ", found \"" + text + "\"";
        },
        "");
}

CLI::Validator FiniteAbove(double low) {
    return CLI::Validator(
        [=](const std::string& text) {
            const auto v = FiniteNumber(text);
            return v && *v > low ? std::string()
                                 : "expected a number greater than " + Shown(low) + ", found \"" + text + "\"";
        },
        "");
}

CLI::Validator WholeNumberFrom(double low) {
    return CLI::Validator(
        [=](const std::string& text) {
            const auto v = FiniteNumber(text);
            return v && *v >= low && std::floor(*v) == *v
                       ? std::string()
                       : "expected a whole number of at least " + Shown(low) + ", found \"" + text + "\"";
        },
        "");
}

}  // namespace quarnel::tool
