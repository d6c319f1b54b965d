// SPDX-License-Identifier: MIT
#include "display/resample.h"

#include <cmath>

namespace quarnel::tool::display {

std::vector<std::uint16_t> Resample(std::span<const std::uint16_t> in, std::size_t size) {
    std::vector<std::uint16_t> out(size, in.empty() ? 0 : in.back());
    if (in.size() < 2 || size < 2) return out;
    const double step = static_cast<double>(in.size() - 1) / static_cast<double>(size - 1);
    for (std::size_t j = 0; j + 1 < size; ++j) {
        const double x = static_cast<double>(j) * step;
        const auto i = static_cast<std::size_t>(x);
        const double below = in[i];
        const double above = in[i + 1];
        out[j] = static_cast<std::uint16_t>(std::lround(below + (x - static_cast<double>(i)) * (above - below)));
    }
    return out;
}

}  // namespace quarnel::tool::display
