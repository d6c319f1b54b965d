// SPDX-License-Identifier: MIT
#include "facts/loci.h"

#include <cmath>

namespace quarnel::facts {
namespace {

// Each coefficient multiplies its whole power, the terms added left to right.
double Cubic(double a3, double a2, double a1, double a0, double v) {
    return a3 * (v * v * v) + a2 * (v * v) + a1 * v + a0;
}

}  // namespace

// The cubic spline of Kim et al. (2002). The second warm x coefficient is
// 0.234358 here (published 0.2343589): the system's value, on which every
// target placed on the locus rests.
double PlanckianX(double t) {
    if (t <= kPlanckianWarmEnd) return -0.2661239e9 / (t * t * t) - 0.234358e6 / (t * t) + 0.8776956e3 / t + 0.17991;
    return -3.0258469e9 / (t * t * t) + 2.1070379e6 / (t * t) + 0.2226347e3 / t + 0.24039;
}

double PlanckianY(double t, double x) {
    if (t <= kPlanckianWarmestEnd) return Cubic(-1.1063814, -1.3481102, 2.18555832, -0.20219683, x);
    if (t <= kPlanckianWarmEnd) return Cubic(-0.9549476, -1.37418593, 2.09137015, -0.16748867, x);
    return Cubic(3.081758, -5.8733867, 3.75112997, -0.37001483, x);
}

Xy PlanckianXy(double kelvin) {
    const double x = PlanckianX(kelvin);
    return {x, PlanckianY(kelvin, x)};
}

// CIE 15:2004, with the powers of ten formed as the system has always formed
// them, so that every daylight target keeps its last bit.
Xy DaylightXy(double t) {
    const double e6 = std::pow(10.0, 6.0);
    const double e9 = std::pow(10.0, 9.0);
    const double e3 = std::pow(10.0, 3.0);
    double x;
    if (t <= kDaylightWarmEnd)
        x = 2.9678 * e6 / (t * t) - 4.607 * e9 / (t * t * t) + 0.09911 * e3 / t + 0.244063;
    else
        x = 1.9018 * e6 / (t * t) - 2.0064 * e9 / (t * t * t) + 0.24748 * e3 / t + 0.23704;
    return {x, 2.87 * x - 3.0 * (x * x) - 0.275};
}

}  // namespace quarnel::facts
