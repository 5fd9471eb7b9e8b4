#!/usr/bin/python3
"""Checks the evaluation of the irregular terrain model by a published example and by closed forms.

  irregular_terrain_check.py [path2200.json] [unittest options]
"""
import cmath
import json
import math
import os
import random
import sys
import unittest
from dataclasses import replace
from unittest import mock

import compare
import irregular_terrain as model
import links

PATH_2200 = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data", "path2200.json")


def path_with(**changes):
    """A path over level average ground, 30 km, 100 MHz."""
    values = dict(distance=30.0, frequency=100.0, surface_refractivity=301.0, radius=8497.0, heights=[10.0, 10.0],
                  impedance=model.ground_impedance(100.0, False, 15, 0.005, model.PRINTED), figures=model.PRINTED, mode="double horizon",
                  delta_h=90.0, effective=[10.0, 10.0], horizon=[13.0, 13.0], angle=[-0.0015, -0.0015])
    values.update(changes)
    return model.Path(**values)


def variability_at(climate, distance=200.0, frequency=100.0):
    return model.Variability(path_with(distance=distance, frequency=frequency), climate)


class PublishedExample(unittest.TestCase):
    """Path 2200, printed to 0.1 dB, with 0.05 dB on top of the rounding."""

    @classmethod
    def setUpClass(cls):
        with open(PATH_2200, encoding="utf-8") as file:
            cls.path = json.load(file)
        cls.results = [cls.evaluated(figures) for figures in (model.PRINTED, model.EXACT)]

    @classmethod
    def evaluated(cls, figures):
        given = cls.path
        return model.evaluate(given["elevations_m"], 1000 * given["distance_km"] / given["intervals"], given["tx_agl_m"], given["rx_agl_m"],
                              given["freq_mhz"], given["polarization"], given["climate"], given["relative_permittivity"],
                              given["conductivity_s_per_m"], given["surface_refractivity_n_units"], given["confidence"],
                              given["reliability"], figures)

    def test_every_loss_is_the_printed_one(self):
        for result in self.results:
            for row, printed in zip(result["loss_db"], self.path["loss_db"], strict=True):
                for loss, expected in zip(row, printed, strict=True):
                    self.assertAlmostEqual(loss, expected, delta=0.05 + 0.05)

    def test_the_intermediate_values_are_the_printed_ones(self):
        for result in self.results:
            self.assertAlmostEqual(result["free_space_db"], self.path["free_space_db"], delta=0.05)
            self.assertAlmostEqual(result["delta_h_m"], self.path["delta_h_m"], delta=0.5)
            for height, expected in zip(result["effective_heights_m"], self.path["effective_heights_m"], strict=True):
                self.assertAlmostEqual(height, expected, delta=0.05)
            self.assertEqual(result["mode"], self.path["mode"])


class SmallLaws(unittest.TestCase):
    def test_free_space_loss_is_that_between_isotropic_antennas(self):
        # 20 log(4 pi d / lambda); 32.45 is 32.4478 rounded
        for distance, frequency in ((1, 20), (77.8, 41.5), (900, 20000)):
            exact = 20 * math.log10(4 * math.pi * 1000 * distance * frequency / 299.792458)
            self.assertAlmostEqual(model.free_space_loss(distance, frequency), exact, delta=0.0025)

    def test_a_deviate_has_its_fraction_above_it(self):
        # Two- and three-decimal normal tables
        for fraction, z in ((0.5, 0.0), (0.1, 1.2816), (0.01, 2.3263), (0.9, -1.2816), (0.95, -1.6449)):
            self.assertAlmostEqual(model.deviate(fraction), z, delta=5e-5)

    def test_the_effective_radius_is_four_thirds_for_the_standard_atmosphere(self):
        # N_s = 301 gives 8497 km by definition of the standard in TN101
        self.assertAlmostEqual(model.effective_radius(301), 8497, delta=8)
        self.assertAlmostEqual(model.effective_radius(301) / 6370, 4 / 3, delta=0.002)

    def test_sea_level_refractivity_falls_by_a_factor_e_in_9460_metres(self):
        self.assertAlmostEqual(model.refractivity_at_surface([9460.0] * 30, 301.0), 301 / math.e, delta=1e-9)

    def test_the_mean_elevation_leaves_out_a_tenth_at_either_end(self):
        # 21 samples, n = 20: indexes 2 to 18 count
        raised = [1e4, 1e4] + [0.0] * 17 + [1e4, 1e4]
        self.assertEqual(model.refractivity_at_surface(raised, 301.0), 301.0)
        raised[2] = 17 * 9460.0
        self.assertAlmostEqual(model.refractivity_at_surface(raised, 301.0), 301 / math.e, delta=1e-9)

    def test_a_knife_edge_at_grazing_costs_half_the_field(self):
        self.assertEqual(model.knife_edge(0), 6.02)
        self.assertAlmostEqual(model.knife_edge(0), 20 * math.log10(2), delta=0.001)

    def test_a_knife_edge_far_in_the_shadow_has_the_asymptote_of_the_fresnel_integral(self):
        # |F| -> 1 / (sqrt(2) pi v): 20 log(sqrt(2) pi v) = 12.953 + 20 log v
        for v in (3, 10, 100):
            self.assertAlmostEqual(model.knife_edge(v * v), 20 * math.log10(math.sqrt(2) * math.pi * v), delta=0.001)

    def test_a_knife_edge_is_the_fresnel_integral_within_a_quarter_decibel(self):
        for v in (0.5, 1.0, 1.5, 2.0, 2.39, 2.5):
            # The complementary Fresnel integral from v on by quadrature; the contour is turned so that it decays.
            steps, reach = 4000, 8.0
            total = 0j
            turn = cmath.exp(-1j * math.pi / 4)
            for i in range(steps):
                t = (i + 0.5) * reach / steps
                total += cmath.exp(-1j * math.pi / 2 * (v + turn * t) ** 2) * turn * reach / steps
            self.assertAlmostEqual(model.knife_edge(v * v), -20 * math.log10(abs(total) / math.sqrt(2)), delta=0.25)

    def test_the_knife_edge_pieces_join(self):
        self.assertAlmostEqual(model.knife_edge(5.76 - 1e-9), model.knife_edge(5.76), delta=0.02)

    def test_scatter_pieces_join_within_the_rounding_of_their_figures(self):
        # The curves as published meet at 10 km; at 70 km they are 0.31 dB apart, in TN101's own figures as well.
        for join, jump in ((10, 0.0), (70, 0.31)):
            self.assertAlmostEqual(model.scatter_distance(join) - model.scatter_distance(join + 1e-9), jump, delta=0.01)
        note_101 = 129.5 + 0.212 * 70 + 37.5 * math.log10(70) - (119.2 + 0.157 * 70 + 45 * math.log10(70))
        self.assertAlmostEqual(note_101, 0.31, delta=0.01)

    def test_scatter_is_that_of_technical_note_101(self):
        # F there, less 32.45 dB and 40 log theta d
        for theta_d, f in ((5, 135.82 + 0.33 * 5 + 30 * math.log10(5)), (40, 129.5 + 0.212 * 40 + 37.5 * math.log10(40)),
                           (100, 119.2 + 0.157 * 100 + 45 * math.log10(100))):
            self.assertAlmostEqual(model.scatter_distance(theta_d), f - 32.45 - 40 * math.log10(theta_d), delta=0.06)

    def test_frequency_gain_vanishes_for_high_antennas_and_joins_at_whole_eta(self):
        self.assertAlmostEqual(model.frequency_gain_at(1e4, 3.3), 0, delta=1e-5)
        for eta in (2, 3, 4, 5):
            self.assertAlmostEqual(model.frequency_gain_at(1.5, eta - 1e-9), model.frequency_gain_at(1.5, eta), delta=1e-6)
        self.assertEqual(model.frequency_gain_at(1.5, 0.2), model.frequency_gain_at(1.5, 1))
        self.assertEqual(model.frequency_gain_at(1.5, 9), model.frequency_gain_at(1.5, 5))
        self.assertAlmostEqual(model.frequency_gain_at(1, 1), 10 * math.log10(50), delta=1e-12)

    def test_ground_impedance_is_that_of_the_dielectric(self):
        self.assertAlmostEqual(model.ground_impedance(1000, False, 5, 0, model.PRINTED), 2, delta=1e-12)
        self.assertAlmostEqual(model.ground_impedance(1000, True, 5, 0, model.PRINTED), 0.4, delta=1e-12)
        # x = 18000 sigma / f
        root = model.ground_impedance(100, False, 80, 5, model.EXACT)
        self.assertAlmostEqual((root ** 2).imag, 18000 * 5 / 100, delta=2)


class TerrainAnalysis(unittest.TestCase):
    def test_the_horizon_of_a_triangle_is_its_top(self):
        # 20 km, a top of 300 m at 8 km; angle (300 - 30) / 8000 - 8000 / 2 a
        elevations = [300 * min(i / 80, (200 - i) / 120) for i in range(201)]
        found = model.find_horizons(elevations, 100.0, [30.0, 60.0], 8500.0)
        self.assertEqual(found.indexes, [80, 80])
        self.assertEqual(found.distances, [80, 120])
        self.assertAlmostEqual(found.angles[0], 270 / 8000 - 8000 / 17e6, delta=1e-12)
        self.assertAlmostEqual(found.angles[1], 240 / 12000 - 12000 / 17e6, delta=1e-12)

    def test_without_an_obstacle_both_ends_look_at_each_other(self):
        found = model.find_horizons([0.0] * 11, 100.0, [30.0, 60.0], 8500.0)
        self.assertEqual(found.indexes, [None, None])
        self.assertEqual(found.distances, [10, 10])
        self.assertAlmostEqual(found.angles[0], 0.03 - 1000 / 17e6, delta=1e-12)

    def test_the_horizon_over_the_sea_is_at_the_tangent(self):
        # sqrt(2 a h): 13038 m for 10 m and 8500 km
        found = model.find_horizons([0.0] * 6001, 10.0, [10.0, 10.0], 8500.0)
        self.assertAlmostEqual(10.0 * found.distances[0], math.sqrt(2 * 8.5e6 * 10), delta=5)
        self.assertAlmostEqual(found.angles[0], -math.sqrt(2 * 10 / 8.5e6), delta=1e-9)

    def test_horizons_are_those_of_one_pass_that_raises_the_ray(self):
        # The other formulation: walk once, lift the first end's ray at each sample above it, the second end's only from there on.
        dice = random.Random(7)
        for _ in range(200):
            n, spacing, radius = dice.randint(2, 60), dice.choice((30.0, 250.0, 1000.0)), 8500.0
            z = [dice.uniform(0, 200) for _ in range(n + 1)]
            heights = [dice.uniform(1, 150), dice.uniform(1, 150)]
            length, top, seen = n * spacing, [z[0] + heights[0], z[-1] + heights[1]], True
            slope = [(top[1] - top[0]) / length - length / (2000 * radius), (top[0] - top[1]) / length - length / (2000 * radius)]
            reach = [n, n]
            for i in range(1, n):
                for own, steps in ((0, i), (1, n - i)):
                    d = steps * spacing
                    above = z[i] - (d / (2000 * radius) + slope[own]) * d - top[own]
                    if above > 0 and (own == 0 or not seen):
                        slope[own] += above / d
                        reach[own] = steps
                        seen = False
            found = model.find_horizons(z, spacing, heights, radius)
            self.assertEqual(found.distances, reach)
            self.assertAlmostEqual(found.angles[0], slope[0], delta=1e-12)
            self.assertAlmostEqual(found.angles[1], slope[1], delta=1e-12)

    def test_a_fit_of_a_straight_line_is_that_line(self):
        line = [3.0 + 0.7 * i for i in range(41)]
        for first, last in ((0, 40), (2.7, 31.2), (0, 1), (39.5, 40), (12.2, 12.3)):
            at_first, at_last = model.straight_line(line, first, last)
            self.assertAlmostEqual(at_first, 3, delta=1e-9)
            self.assertAlmostEqual(at_last, 31, delta=1e-9)

    def test_a_fit_gives_its_end_samples_half_weight(self):
        # 0 0 1: mean 1/4, slope 1/2 -> -1/4 at the first, 3/4 at the last
        at_first, at_last = model.straight_line([0.0, 0.0, 1.0], 0, 2)
        self.assertAlmostEqual(at_first, -0.25, delta=1e-12)
        self.assertAlmostEqual(at_last, 0.75, delta=1e-12)

    def test_limits_of_a_fit_are_cut_at_the_first_and_raised_at_the_last(self):
        self.assertEqual(model.fit_limits(2.9, 7.1, 10), (2, 8))
        self.assertEqual(model.fit_limits(2.0, 7.0, 10), (2, 7))
        self.assertEqual(model.fit_limits(-1.0, 12.0, 10), (0, 10))
        # Nothing between: one more on either side, as far as there is one
        self.assertEqual(model.fit_limits(4.0, 4.0, 10), (3, 5))
        self.assertEqual(model.fit_limits(0.0, 0.0, 10), (0, 1))
        self.assertEqual(model.fit_limits(10.0, 10.0, 10), (9, 10))

    def test_an_incline_has_no_irregularity(self):
        self.assertAlmostEqual(model.terrain_irregularity([5.0 * i for i in range(101)], 100.0, 3.3, 94.1), 0, delta=1e-9)

    def test_less_than_two_intervals_have_no_irregularity(self):
        self.assertEqual(model.terrain_irregularity([0.0, 90.0, 0.0, 80.0], 100.0, 0.5, 2.4), 0.0)

    def test_the_irregularity_of_even_slopes_is_eight_tenths_of_their_height(self):
        # Deviations spread evenly over 100 m: interdecile range 80 m; 60 km, raised by 1 / (1 - 0.8 exp(-60/50))
        slopes = [100.0 * abs(2 * ((i / 60) % 1) - 1) for i in range(601)]
        raised = 80 / (1 - 0.8 * math.exp(-60 / 50))
        self.assertAlmostEqual(model.terrain_irregularity(slopes, 100.0, 0, 600), raised, delta=0.03 * raised)

    def test_over_level_ground_the_effective_heights_are_the_structural_ones(self):
        path = model.prepare([200.0] * 301, 500.0, 25.0, 8.0, 100, "vertical", 15, 0.005, 301, model.PRINTED)
        self.assertEqual(path.mode, "double horizon")
        for height, structural in zip(path.effective, (25, 8), strict=True):
            self.assertAlmostEqual(height, structural, delta=1e-9)

    def test_one_sample_that_both_see_is_a_single_horizon(self):
        elevations = [0.0] * 41
        elevations[15] = 400.0
        path = model.prepare(elevations, 1000.0, 10, 10, 100, "vertical", 15, 0.005, 301, model.PRINTED)
        self.assertEqual(path.mode, "single horizon")
        for distance, expected in zip(path.horizon, (15, 25), strict=True):
            self.assertAlmostEqual(distance, expected, delta=1e-9)

    def test_heights_that_do_not_see_each_other_on_a_path_within_sight_grow(self):
        # A dip that the samples do not show: 30 km of two intervals, smooth horizons of 13 km each
        path = model.prepare([0.0, -10.0, 0.0], 15000.0, 5, 5, 100, "vertical", 15, 0.005, 301, model.PRINTED)
        self.assertEqual(path.mode, "line of sight")
        self.assertIn("heights grown", path.branch)
        self.assertGreaterEqual(path.total_horizon, 30 - 1e-9)
        self.assertGreater(path.effective[0], 5)


class Attenuation(unittest.TestCase):
    def test_two_rays_over_a_perfect_mirror_reach_twice_the_field(self):
        # Phase at 2 k h h / d -> above pi / 2 the model levels it off towards pi, where R = -1 doubles the field: -6.02 dB
        path = path_with(delta_h=0.0, effective=[100.0, 100.0], heights=[100.0, 100.0], frequency=10000.0, impedance=1e6 + 0j)
        self.assertAlmostEqual(model.two_ray(path, 5.0), -20 * math.log10(2), delta=0.001)

    def test_two_rays_far_away_cancel_as_the_square_of_the_distance(self):
        # |1 - exp(i delta)| -> delta = 2 k h h / d for R = -1
        path = path_with(delta_h=0.0, effective=[10.0, 10.0], frequency=100.0, impedance=1e9 + 0j)
        for distance in (100.0, 200.0):
            phase = 2 * path.wave_number * 100 / (1000 * distance)
            self.assertAlmostEqual(model.two_ray(path, distance), -20 * math.log10(phase), delta=0.001)

    def test_very_rough_ground_leaves_a_diffuse_reflection(self):
        # |R| = sqrt(sin psi) when the specular one is weaker
        path = path_with(delta_h=500.0, effective=[1000.0, 1000.0], frequency=10000.0, impedance=1e6 + 0j)
        sine = 2 / math.hypot(10, 2)
        self.assertAlmostEqual(model.two_ray(path, 10.0), -20 * math.log10(1 + math.sqrt(sine)), delta=0.01)

    def test_the_smooth_earth_distance_is_that_of_the_older_reports(self):
        # TN101 8: x = B_0 C_0^2 f^(1/3) d, K = 0.017778 C_0 f^(-1/3) / |Z| (horizontal)
        impedance = model.ground_impedance(100.0, False, 15, 0.005, model.PRINTED)
        for radius in (500.0, 8497.0):
            x, k = model.smooth_earth_term(path_with(), radius, 20.0)
            c_0 = (8497 / radius) ** (1 / 3)
            k_0 = 0.017778 * c_0 * 100 ** (-1 / 3) / abs(impedance)
            self.assertAlmostEqual(k / k_0, 1, delta=4e-4)
            self.assertAlmostEqual(x / ((1.607 - k_0) * c_0 ** 2 * 100 ** (1 / 3) * 20), 1, delta=4e-4)

    def test_the_height_gain_is_that_of_the_distance_far_out(self):
        self.assertAlmostEqual(model.smooth_height_gain(2000, 0.1), model.smooth_distance_gain(2000), delta=1e-12)
        self.assertAlmostEqual(model.smooth_height_gain(1, 1e-6), -117, delta=1e-12)
        self.assertAlmostEqual(model.smooth_height_gain(1999.999, 0.1), model.smooth_distance_gain(2000), delta=0.2)
        self.assertAlmostEqual(model.smooth_height_gain(100, 1e-6), 40 * 2 - 117, delta=1e-12)

    def test_the_smooth_share_has_roughness_in_wavelengths(self):
        # w = 1 / (1 + 0.1 sqrt(Q)), Q in wavelengths; 25.1 is 10 sqrt(2 pi) = 25.066 rounded
        path = path_with(figures=model.EXACT)
        wavelength = 299.792458 / 100
        q = 90 * (1 - 0.8 * math.exp(-0.8)) / wavelength * (1 + (26 + -0.003 * 8497) / 40)
        self.assertAlmostEqual(model.smooth_share(path, 40.0), 1 / (1 + 0.1 * math.sqrt(q)), delta=1e-9)

    def test_very_rough_ground_counts_to_a_thousand_wavelengths(self):
        path = path_with(delta_h=5000.0, frequency=20000.0, angle=[0.0, 0.0], figures=model.EXACT)
        self.assertAlmostEqual(model.smooth_share(path, 26.0), 1 / (1 + 0.1 * math.sqrt(2000)), delta=1e-9)

    def test_clutter_is_nothing_on_level_ground_and_15_decibels_at_most(self):
        self.assertEqual(model.clutter_factor(path_with(delta_h=0.0)), 0)
        self.assertEqual(model.clutter_factor(path_with(delta_h=100.0, frequency=20000.0, heights=[500.0, 500.0])), 15)

    def test_a_path_of_two_low_antennas_has_no_scatter(self):
        low = path_with(frequency=20.0, effective=[0.5, 0.5], heights=[0.5, 0.5], horizon=[2.9, 2.9], angle=[-0.0003, -0.0003])
        self.assertIsNone(model.frequency_gain(low, 205.8))
        self.assertIsNone(model.scatter_line(low))
        self.assertIsNotNone(model.scatter_line(path_with(frequency=100.0)))

    def test_a_large_frequency_gain_is_that_of_the_farther_distance(self):
        path = path_with(frequency=20.0)
        asked = []
        for far, near, expected in ((16.0, 3.0, 16.0), (14.0, 18.0, 14.0), (14.0, 15.0, 15.0), (2.0, 3.0, 3.0)):
            with mock.patch.object(model, "frequency_gain", lambda p, d: far if d > 300 else near), \
                    mock.patch.object(model, "scatter_attenuation", lambda p, d, gain: asked.append(gain) or 100.0 + d):
                model.scatter_line(path)
            self.assertEqual(asked[-2:], [expected, far])

    def test_scatter_of_one_gain_has_the_published_sum(self):
        path = path_with(surface_refractivity=301.0, angle=[0.0, 0.0])
        angle = 300 / 8497
        expected = model.scatter_distance(300 * angle) + 10 * math.log10(100 * angle ** 4) + 4.0
        self.assertAlmostEqual(model.scatter_attenuation(path, 300.0, 4.0), expected, delta=1e-9)


class Joins(unittest.TestCase):
    """The reference attenuation is one curve where the ranges meet."""

    def test_line_of_sight_and_diffraction_meet_at_the_smooth_earth_horizons(self):
        for delta_h in (0.0, 30.0, 200.0):
            path = path_with(delta_h=delta_h, angle=[-0.001, -0.001], effective=[30.0, 20.0])
            line = model.diffraction_line(path)
            curve = model.sight_curve(path, line)
            self.assertAlmostEqual(curve.at(path.total_smooth), line.at(path.total_smooth), delta=1e-9)

    def test_diffraction_and_scatter_meet_at_their_join(self):
        path = path_with(distance=400.0)
        join = model.reference_attenuation(path).join
        below, above = path_with(distance=join - 1e-9), path_with(distance=join + 1e-9)
        methods = [model.reference_attenuation(p) for p in (below, above)]
        self.assertEqual([m.method for m in methods], ["diffraction", "troposcatter"])
        self.assertAlmostEqual(methods[0].attenuation, methods[1].attenuation, delta=1e-6)


class Variabilities(unittest.TestCase):
    def test_deviations_join_where_ducting_begins(self):
        for climate in model.CLIMATES:
            v = variability_at(climate)
            self.assertAlmostEqual(v.time_deviation(v.ducting_from - 1e-9), v.time_deviation(v.ducting_from + 1e-9), delta=1e-6)

    def test_a_median_of_time_and_situation_is_the_reference_less_the_climate(self):
        for climate in model.CLIMATES:
            v = variability_at(climate)
            self.assertAlmostEqual(v.attenuation(60.0, 0.0, 0.0), 60.0 - v.median, delta=1e-12)

    def test_a_gain_over_free_space_is_compressed_to_its_limit(self):
        v = variability_at(5)
        self.assertAlmostEqual(v.attenuation(v.median - 10.0, 0, 0), -10 * 39 / 129, delta=1e-12)
        self.assertAlmostEqual(v.attenuation(v.median, 0, 0), 0, delta=1e-12)

    def test_the_effective_distance_is_130_kilometres_at_the_horizons(self):
        path = path_with(frequency=100.0)
        smooth = 2 * math.sqrt(2 * 9000 * 0.01) + (575.7e12 / (100 / 47.7)) ** (1 / 3) / 1000
        for distance, expected in ((smooth, 130), (smooth / 2, 65), (smooth + 70, 200)):
            path.distance = distance
            self.assertAlmostEqual(model.effective_distance(path), expected, delta=1e-9)

    def test_climates_two_and_five_have_the_same_median_and_six_less(self):
        self.assertEqual(variability_at(2).median, variability_at(5).median)
        self.assertLess(variability_at(6).median, variability_at(7).median)

    def test_high_confidence_and_high_reliability_cost_loss_in_every_climate(self):
        for climate in model.CLIMATES:
            v = variability_at(climate)
            losses = [v.attenuation(80.0, model.deviate(q), 0.0) for q in (0.1, 0.5, 0.9, 0.99)]
            self.assertEqual(losses, sorted(losses))
            losses = [v.attenuation(80.0, 0.0, model.deviate(p)) for p in (0.1, 0.5, 0.9, 0.99)]
            self.assertEqual(losses, sorted(losses))


class Links(unittest.TestCase):
    def test_the_generator_gives_what_its_recurrence_says(self):
        draw = links.Draw(0)
        self.assertEqual([draw.unit() for _ in range(2)], [(1013904223 >> 8) / 2 ** 24, (1196435762 >> 8) / 2 ** 24])

    def test_every_regime_has_its_twenty_links(self):
        with open(os.devnull, "w", encoding="utf-8") as nowhere:
            self.assertTrue(links.summary(nowhere))

    def largest_move(self, figures):
        """dB, over all links and levels, that other figures make."""
        largest = 0.0
        for link, result, _, _ in links.examples():
            other = model.evaluate(**links.arguments(link), figures=figures)
            largest = max([largest] + [abs(a - b) for row, row_2 in zip(result["loss_db"], other["loss_db"], strict=True)
                                       for a, b in zip(row, row_2, strict=True)])
        return largest

    def test_rounded_figures_matter_less_than_the_comparison_allows_but_for_one(self):
        # 25.1 for 10 sqrt(2 pi) = 25.066 is the one whose rounding shows, where rounded earth and knife edges are far apart.
        self.assertLess(self.largest_move(replace(model.EXACT, weight_root=model.PRINTED.weight_root)), compare.LOSS)
        self.assertGreater(self.largest_move(replace(model.PRINTED, weight_root=model.EXACT.weight_root)), 0.05)


if __name__ == "__main__":
    if len(sys.argv) > 1 and sys.argv[1].endswith(".json"):
        PATH_2200 = sys.argv.pop(1)
    unittest.main()
