// SPDX-License-Identifier: MIT
#pragma once
// CIE 1931 chromaticity, the CIE 1960 (u, v) plane and McCamy's correlated
// colour temperature: the formulas as they stand, without the clamps,
// roundings and warnings that each user puts around them.

namespace quarnel::facts {

struct Xy {
    double x = 0.0;
    double y = 0.0;
};

struct Uv {
    double u = 0.0;
    double v = 0.0;
};

// (X, Y, Z) -> (x, y); the caller makes sure that X + Y + Z is not 0.
Xy ChromaticityOf(double X, double Y, double Z);

Uv ToUv(Xy p);
Xy FromUv(Uv p);

// McCamy's approximation of the correlated colour temperature, in kelvin,
// unrounded.
double McCamyKelvin(Xy p);

// Every colour temperature the library reports lies in this range.
inline constexpr int kReportedCctMin = 2222;
inline constexpr int kReportedCctMax = 13000;

}  // namespace quarnel::facts
