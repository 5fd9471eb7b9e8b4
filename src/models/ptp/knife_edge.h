// Diffraction over a single knife edge (ITU-R P.526, section 4.1).
//
// nu is the dimensionless diffraction parameter: the edge's height above the direct ray, scaled by
//     sqrt(2 d / (lambda d1 d2)),
// so that it is negative for an edge below the ray.
#pragma once

namespace zel::ptp {

// Below this nu an edge costs nothing. J has still 0.004 dB here: the step belongs to the method.
inline constexpr double kLeastNu = -0.78;

// J(nu), dB, by the approximation (31); 0 from kLeastNu down.
double knifeEdgeLoss(double nu);

// The scale of nu for an edge d1 km and d2 km from the ends of a path of d km: 1/m. The wavelength is in
// metres.
double knifeEdgeScale(double distance, double first, double second, double wavelength);

}  // namespace zel::ptp
