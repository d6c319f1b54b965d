// SPDX-License-Identifier: MIT
#include "display/ramp.h"

#include <algorithm>

#include "display/resample.h"

namespace quarnel::tool::display {

std::vector<std::uint16_t> RampPlanes(const Curve& curve, std::size_t size) {
    std::vector<std::uint16_t> planes;
    planes.reserve(3 * size);
    for (const CurvePlane& plane : curve) {
        CurvePlane scaled{};
        std::ranges::transform(plane, scaled.begin(), EntryToRamp);
        const std::vector<std::uint16_t> resampled = Resample(scaled, size);
        planes.insert(planes.end(), resampled.begin(), resampled.end());
    }
    return planes;
}

}  // namespace quarnel::tool::display
