"""The radio model over heights of the caller's own."""
import array
import json
import math
import pathlib
import unittest

import zelprofiler01 as zel

from support import listed, needs_no_numpy, needs_numpy, numpy

# A rolling ground, 91 samples 90 m apart.
GROUND = [200 + 40 * math.sin(i / 7) + 15 * math.sin(i / 2.3) for i in range(91)]
PATH = (90, 30, 10, 450)


class OnePath(unittest.TestCase):
    def test_has_a_loss(self):
        loss = zel.longley_rice(GROUND, *PATH)
        self.assertIs(type(loss), float)
        self.assertGreater(loss, 32.45 + 20 * math.log10(450 * 8.1) - 20)
        self.assertEqual(zel.longley_rice(elevations=GROUND, spacing=90, tx=30, rx=10, frequency=450), loss)

    def test_has_the_losses_of_the_published_example(self):
        # Crystal Palace to Mursley, printed to 0.1 dB.
        published = json.loads((pathlib.Path(__file__).parents[1] / "models/longrice/data/path2200.json").read_text())
        ground = published["elevations_m"]
        found = zel.longley_rice(ground, 77800 / (len(ground) - 1), 143.9, 8.5, 41.5, surface_refractivity=314,
                                 confidence=[0.5, 0.9, 0.1], reliability=[0.01, 0.1, 0.5, 0.9, 0.99])
        printed = [[128.6, 137.6, 119.6], [132.2, 140.8, 123.5], [135.8, 144.3, 127.2], [138.0, 146.5, 129.4],
                   [139.7, 148.4, 131.0]]
        for row, wanted in zip(found, printed):
            for loss, decibels in zip(row, wanted):
                self.assertAlmostEqual(loss, decibels, delta=0.1)

    def test_has_levels_as_axes_reliability_first(self):
        one = zel.longley_rice(GROUND, *PATH, reliability=0.9, confidence=0.7)
        rows = zel.longley_rice(GROUND, *PATH, reliability=[0.5, 0.9, 0.99])
        self.assertEqual(len(rows), 3)
        self.assertLess(rows[0], rows[1])
        table = zel.longley_rice(GROUND, *PATH, reliability=[0.5, 0.9, 0.99], confidence=[0.5, 0.7])
        self.assertEqual((len(table), len(table[0])), (3, 2))
        self.assertEqual(table[1][1], one)
        self.assertEqual(listed(row[0] for row in table), listed(rows))
        self.assertEqual(listed(zel.longley_rice(GROUND, *PATH, confidence=[0.7], reliability=0.9)), [one])

    def test_has_everything_else_in_full(self):
        full = zel.longley_rice(GROUND, *PATH, full=True, reliability=[0.5, 0.9])
        self.assertEqual(listed(full.loss_db), listed(zel.longley_rice(GROUND, *PATH, reliability=[0.5, 0.9])))
        self.assertAlmostEqual(full.distance_km, 8.1)
        self.assertAlmostEqual(full.free_space_db, 32.45 + 20 * math.log10(450 * 8.1), places=6)
        self.assertAlmostEqual(full.loss_db[0] - full.free_space_db, full.reference_attenuation_db, delta=15)
        self.assertIn(full.method, ("line of sight", "diffraction", "troposcatter"))
        self.assertEqual((full.error, full.surface_refractivity), ("", 301))
        self.assertEqual({len(full.effective_heights_m), len(full.horizon_distances_m), len(full.horizon_angles_rad)}, {2})
        self.assertIsInstance(full.warnings, tuple)
        self.assertIs(type(full.terrain_irregularity_m), float)
        self.assertIn("LongleyRice(", repr(full))
        self.assertIs(type(zel.longley_rice(GROUND, *PATH, full=True).loss_db), float)

    def test_knows_the_parameters_of_the_model(self):
        usual = zel.longley_rice(GROUND, *PATH)
        self.assertEqual(zel.longley_rice(GROUND, *PATH, polarization="horizontal", climate=5, permittivity=15,
                                          conductivity=0.005, surface_refractivity=301, confidence=0.5, reliability=0.5), usual)
        low = (90, 2, 2, 30)
        for other in ({"polarization": "Vertical"}, {"climate": 1, "reliability": 0.99}, {"permittivity": 80},
                      {"conductivity": 5}, {"surface_refractivity": 400}, {"sea_level_refractivity": 400}):
            base = {"reliability": other["reliability"]} if "reliability" in other else {}
            self.assertNotEqual(zel.longley_rice(GROUND, *low, **other), zel.longley_rice(GROUND, *low, **base), other)

    def test_that_is_wrong_raises_path_error_with_its_argument(self):
        wrong = (({"elevations": [1.0]}, "elevations"), ({"elevations": []}, "elevations"),
                 ({"elevations": [1, math.nan, 3]}, "elevations"), ({"elevations": [1, math.inf]}, "elevations"),
                 ({"elevations": [1, 1e9]}, "elevations"), ({"spacing": 0}, "spacing"), ({"spacing": math.nan}, "spacing"),
                 ({"tx": -1}, "tx"), ({"rx": math.inf}, "rx"), ({"frequency": 0}, "frequency"), ({"climate": 0}, "climate"),
                 ({"climate": 8}, "climate"), ({"climate": 2.5}, "climate"), ({"climate": math.nan}, "climate"),
                 ({"climate": 1e30}, "climate"), ({"permittivity": 0}, "permittivity"), ({"conductivity": -1}, "conductivity"),
                 ({"surface_refractivity": -1}, "surface_refractivity"),
                 ({"sea_level_refractivity": -1}, "sea_level_refractivity"), ({"confidence": 0}, "confidence"),
                 ({"reliability": 1}, "reliability"), ({"reliability": 50}, "reliability"), ({"confidence": []}, "confidence"),
                 ({"reliability": [0.5, math.nan]}, "reliability"))
        usual = dict(elevations=GROUND, spacing=90, tx=30, rx=10, frequency=450)
        for arguments, parameter in wrong:
            with self.assertRaises(zel.PathError, msg=str(arguments)) as raised:
                zel.longley_rice(**{**usual, **arguments})
            self.assertEqual((raised.exception.parameter, raised.exception.status), (parameter, 5), arguments)
            self.assertTrue(str(raised.exception).startswith(parameter + ": "), str(raised.exception))

    def test_of_arguments_of_the_wrong_kind_raises(self):
        usual = dict(elevations=GROUND, spacing=90, tx=30, rx=10, frequency=450)
        wrong = (({"elevations": 5}, TypeError), ({"elevations": "120 130"}, TypeError), ({"elevations": None}, TypeError),
                 ({"elevations": ["1", "2"]}, TypeError), ({"elevations": [1, None]}, TypeError), ({"spacing": "90"}, TypeError),
                 ({"frequency": None}, TypeError), ({"polarization": "diagonal"}, ValueError), ({"polarization": 1}, ValueError),
                 ({"confidence": "0.5"}, TypeError), ({"confidence": None}, TypeError), ({"climate": "5"}, TypeError),
                 ({"errors": None}, ValueError))
        for arguments, error in wrong:
            with self.assertRaises(error, msg=str(arguments)):
                zel.longley_rice(**{**usual, **arguments})


class ManyPaths(unittest.TestCase):
    HIGHER = [height + i / 2 for i, height in enumerate(GROUND)]

    def setUp(self):
        self.wanted = [zel.longley_rice(GROUND, *PATH), zel.longley_rice(self.HIGHER, *PATH)]

    def test_are_rows_of_elevations(self):
        self.assertEqual(listed(zel.longley_rice([GROUND, self.HIGHER], *PATH)), self.wanted)
        self.assertEqual(listed(zel.longley_rice([array.array("d", GROUND), array.array("d", self.HIGHER)], *PATH)), self.wanted)

    def test_may_have_different_lengths(self):
        found = listed(zel.longley_rice([GROUND, GROUND[:40]], *PATH))
        self.assertEqual(found, [self.wanted[0], zel.longley_rice(GROUND[:40], *PATH)])

    def test_may_lie_over_one_ground(self):
        found = listed(zel.longley_rice(GROUND, 90, 30, [10, 20, 30], 450))
        self.assertEqual(found, [zel.longley_rice(GROUND, 90, 30, rx, 450) for rx in (10, 20, 30)])
        found = listed(zel.longley_rice(GROUND, *PATH, polarization=["horizontal", "vertical"], climate=[1, 5]))
        self.assertEqual(found[0], zel.longley_rice(GROUND, *PATH, climate=1))
        self.assertEqual(found[1], zel.longley_rice(GROUND, *PATH, polarization="vertical"))

    def test_have_the_path_as_first_axis(self):
        table = zel.longley_rice([GROUND, self.HIGHER], *PATH, reliability=[0.5, 0.9, 0.99], confidence=[0.5, 0.7])
        self.assertEqual((len(table), len(table[0]), len(table[0][0])), (2, 3, 2))
        self.assertEqual([table[i][0][0] for i in range(2)], self.wanted)
        self.assertEqual(len(zel.longley_rice([GROUND], *PATH)), 1)

    def test_have_nan_for_what_the_model_refuses_or_raise_it(self):
        wrong = [*GROUND[:-1], math.nan]
        found = listed(zel.longley_rice([GROUND, wrong], *PATH))
        self.assertEqual(found[0], self.wanted[0])
        self.assertTrue(math.isnan(found[1]))
        full = zel.longley_rice([GROUND, wrong], *PATH, full=True)
        self.assertEqual(full.error[0], "")
        self.assertIn("elevation of sample 91", full.error[1])
        self.assertTrue(math.isnan(full.distance_km[1]))
        self.assertEqual((len(full.mode), full.mode[1], full.warnings[1]), (2, "", ()))
        with self.assertRaisesRegex(zel.PathError, "^path 1: elevations: ") as raised:
            zel.longley_rice([GROUND, wrong], *PATH, errors="raise")
        self.assertEqual(raised.exception.index, 1)
        self.assertTrue(math.isnan(zel.longley_rice([GROUND, GROUND], *PATH, climate=[5, 2.5])[1]))
        with self.assertRaisesRegex(zel.PathError, "^path 1: climate"):
            zel.longley_rice(GROUND, *PATH, climate=[5, 2.5], errors="raise")

    def test_that_do_not_fit_each_other_raise(self):
        with self.assertRaisesRegex(ValueError, "elevations have 2 rows, other arguments 3 entries"):
            zel.longley_rice([GROUND, GROUND], 90, [10, 20, 30], 10, 450)
        with self.assertRaisesRegex(ValueError, "do not fit each other"):
            zel.longley_rice(GROUND, 90, [10, 20, 30], [10, 20], 450)
        with self.assertRaises((ValueError, TypeError)):
            zel.longley_rice([[GROUND]], *PATH)

    def test_of_none_are_empty(self):
        self.assertEqual(len(zel.longley_rice(GROUND, 90, [], 10, 450)), 0)

    def test_of_samples_are_their_heights(self):
        heights = zel.sample(36.40, -84.35, 36.22, -84.12, 300)
        spacing = heights.distance_km * 1000 / 299
        self.assertEqual(zel.longley_rice(heights, spacing, 30, 10, 450),
                         zel.longley_rice(listed(heights), spacing, 30, 10, 450))
        rows = zel.sample([36.40, 36.39], -84.35, 36.22, -84.12, 300)
        self.assertEqual(len(zel.longley_rice(rows, spacing, 30, 10, 450)), 2)

    @needs_numpy
    def test_are_arrays_of_numpy_in_any_layout(self):
        ground = numpy.array([GROUND, self.HIGHER])
        fields = numpy.zeros((2, 91), dtype=[("tag", "u1"), ("height", "f8")])
        fields["height"] = ground
        for many in (ground, numpy.asfortranarray(ground), ground.T.copy().T, numpy.repeat(ground, 2, axis=1)[:, ::2],
                     fields["height"], ground.astype(">f8"), ground.astype(object), numpy.ma.array(ground)):
            self.assertEqual(listed(zel.longley_rice(many, *PATH)), self.wanted)
        single = ground.astype("f4")
        self.assertEqual(listed(zel.longley_rice(single, *PATH)), listed(zel.longley_rice(single.astype("f8"), *PATH)))
        self.assertEqual(zel.longley_rice(numpy.round(ground[0]).astype(int), *PATH),
                         zel.longley_rice(numpy.round(ground[0]), *PATH))
        backwards = ground[0, ::-1]
        self.assertEqual(zel.longley_rice(backwards, *PATH), zel.longley_rice(listed(backwards), *PATH))
        masked = numpy.ma.array(ground, mask=numpy.zeros_like(ground, bool))
        masked[1, 4] = numpy.ma.masked
        self.assertEqual([math.isnan(loss) for loss in zel.longley_rice(masked, *PATH)], [False, True])
        for wrong in (numpy.zeros((2, 2, 2)), numpy.float64(5), numpy.array(["1", "2"])):
            with self.assertRaises((TypeError, ValueError)):
                zel.longley_rice(wrong, *PATH)
        self.assertEqual(zel.longley_rice(numpy.zeros((0, 5)), *PATH).shape, (0,))
        self.assertEqual(zel.longley_rice(ground, *PATH, reliability=[0.5, 0.9], confidence=0.5).shape, (2, 2))
        self.assertEqual(zel.longley_rice(ground, *PATH, full=True).effective_heights_m.shape, (2, 2))

    @needs_numpy
    def test_read_float64_where_it_is(self):
        import resource
        large = numpy.full((400, 30000), 100.0)
        large[:, ::7] = 120
        zel.longley_rice(large[:2], 10, 10, 10, 450)
        before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
        zel.longley_rice(large, 10, 10, 10, 450)
        grown = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - before
        self.assertLess(grown, large.nbytes / 1024 / 4, "KiB")

    @needs_no_numpy
    def test_are_lists_and_arrays_of_python_where_there_is_no_numpy(self):
        self.assertIsInstance(zel.longley_rice([GROUND, GROUND], *PATH), array.array)
        self.assertIsInstance(zel.longley_rice(GROUND, *PATH, reliability=[0.5, 0.9], confidence=[0.5]), list)
        view = memoryview(array.array("d", GROUND))
        self.assertEqual(zel.longley_rice(view, *PATH), zel.longley_rice(GROUND, *PATH))


if __name__ == "__main__":
    unittest.main()
