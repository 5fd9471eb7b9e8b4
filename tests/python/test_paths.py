"""Losses, heights and profiles of paths: one, many, and such as cannot be computed."""
import array
import decimal
import fractions
import math
import pathlib
import pickle
import tempfile
import unittest
import warnings

import zelprofiler01 as zel

from support import A, B, OUTSIDE, PATH, listed, needs_no_numpy, needs_numpy, numpy, run_script

FREQUENCY = 450.0
# GetPathLoss for PATH at 450 MHz, to which the command line's `loss` agrees (README).
LOSS = 133.77


class LossOfOnePath(unittest.TestCase):
    def test_is_the_number_of_get_path_loss(self):
        control = zel.ProfileControl()
        self.assertEqual(zel.get_path_loss(*PATH), control.GetPathLoss(A, B))
        zel.settings.set_for_this_run("Profile/Prf_Freq", 450)
        self.addCleanup(zel.settings.set_for_this_run, "Profile/Prf_Freq", 100)
        self.assertEqual(zel.get_path_loss(*PATH), control.GetPathLoss(A, B))
        self.assertEqual(zel.get_path_loss(*PATH, FREQUENCY), control.GetPathLoss(A, B))
        self.assertAlmostEqual(zel.get_path_loss(*PATH, FREQUENCY), LOSS, places=2)

    def test_is_a_float_for_numbers_of_every_kind(self):
        loss = zel.get_path_loss(*PATH, FREQUENCY)
        for frequency in (450, fractions.Fraction(450), decimal.Decimal(450)):
            self.assertEqual(zel.get_path_loss(*PATH, frequency), loss)
        self.assertIs(type(loss), float)

    @needs_numpy
    def test_is_a_float_for_numbers_of_numpy(self):
        loss = zel.get_path_loss(*PATH, FREQUENCY)
        for frequency in (numpy.float64(450), numpy.float32(450), numpy.int64(450), numpy.array(450), numpy.array(450.0),
                          numpy.longdouble(450)):
            self.assertEqual(zel.get_path_loss(*PATH, frequency), loss)
            self.assertIs(type(zel.get_path_loss(*PATH, frequency)), float)

    def test_takes_its_arguments_by_name(self):
        self.assertEqual(zel.get_path_loss(lat1=A[0], lon1=A[1], h1=A[2], lat2=B[0], lon2=B[1], h2=B[2], frequency=450),
                         zel.get_path_loss(*PATH, 450))

    def test_takes_heights_from_the_settings_where_none_is_given(self):
        self.assertEqual(zel.get_path_loss(*A[:2], None, *B[:2], None, FREQUENCY), zel.get_path_loss(*PATH, FREQUENCY))
        zel.settings.set_for_this_run("Profile/Prf_HtL", 100)
        self.addCleanup(zel.settings.set_for_this_run, "Profile/Prf_HtL", 30)
        self.assertEqual(zel.get_path_loss(*A[:2], None, *B, FREQUENCY), zel.get_path_loss(*A[:2], 100, *B, FREQUENCY))

    def test_takes_stations_apart(self):
        self.assertEqual(zel.get_path_loss(*zel.Station(*A), *zel.Station(*B), FREQUENCY), zel.get_path_loss(*PATH, FREQUENCY))

    def test_over_ground_without_data_raises_what_is_missing(self):
        with self.assertRaises(zel.TerrainError) as raised:
            zel.get_path_loss(*OUTSIDE, *B, FREQUENCY)
        self.assertEqual((raised.exception.status, raised.exception.index), (2, None))
        self.assertRegex(str(raised.exception), "outside")
        again = pickle.loads(pickle.dumps(raised.exception))
        self.assertEqual((again.status, str(again)), (2, str(raised.exception)))

    def test_between_coincident_ends_raises(self):
        with self.assertRaises(zel.ZelError) as raised:
            zel.get_path_loss(*A, *A, FREQUENCY)
        self.assertEqual(raised.exception.status, 4)

    def test_of_a_request_that_cannot_be_computed_raises_path_error(self):
        for path in ((*PATH, -1), (*PATH, 0), (*PATH, math.nan), (*PATH, math.inf), (A[0], A[1], -5, *B, FREQUENCY),
                     (A[0], A[1], math.nan, *B, FREQUENCY), (A[0], A[1], 1e9, *B, FREQUENCY)):
            with self.assertRaises(zel.PathError, msg=str(path)) as raised:
                zel.get_path_loss(*path)
            self.assertEqual(raised.exception.status, 5)
            self.assertIsInstance(raised.exception, ValueError)

    def test_outside_the_model_s_frequencies_raises_and_is_none_in_full(self):
        for frequency in (19.9, 20001):
            with self.assertRaisesRegex(zel.PathError, "20 to 20000 MHz"):
                zel.get_path_loss(*PATH, frequency)
            loss = zel.path_loss(*PATH, frequency)
            self.assertIsNone(loss.modeled_db)
            self.assertGreater(loss.free_space_db, 80)

    def test_of_places_that_are_none_raises(self):
        for wrong in ((91, -84), (36, 1e9), (math.nan, -84), (36, math.inf)):
            with self.assertRaises(zel.ZelError, msg=str(wrong)) as raised:
                zel.get_path_loss(*wrong, 30, *B, FREQUENCY)
            self.assertIn(raised.exception.status, (4, 5))

    def test_of_arguments_that_are_no_numbers_raises_type_error(self):
        for wrong in ("36", b"36", None, True, 1j, object(), {}, {36.4}, lambda: 1):
            with self.assertRaisesRegex(TypeError, "lat1 must be a number, not", msg=repr(wrong)):
                zel.get_path_loss(wrong, *PATH[1:])
        for wrong in ("30", False):
            with self.assertRaisesRegex(TypeError, "h2 must be a number, not"):
                zel.get_path_loss(*PATH[:5], wrong)
        with self.assertRaisesRegex(OverflowError, "lon1"):
            zel.get_path_loss(A[0], 10**400, *PATH[2:])
        with self.assertRaises(TypeError):
            zel.get_path_loss(*PATH[:5])
        with self.assertRaisesRegex(ValueError, 'errors must be "nan" or "raise"'):
            zel.get_path_loss(*PATH, errors="ignore")

    def test_in_full_says_what_it_was_computed_from(self):
        loss = zel.path_loss(*PATH, FREQUENCY)
        self.assertEqual(loss.modeled_db, zel.get_path_loss(*PATH, FREQUENCY))
        self.assertEqual(loss.reverse_modeled_db, zel.path_loss(*B, *A, FREQUENCY).modeled_db)
        self.assertIsNone(zel.path_loss(*PATH, FREQUENCY, reverse=False).reverse_modeled_db)
        self.assertEqual((loss.start, loss.points, loss.terrain.bundled_sample), ((A[0], A[1]), 1000, True))
        self.assertEqual(loss.mode, "single horizon, diffraction dominant")
        self.assertEqual(loss.model.polarization, "horizontal")
        self.assertAlmostEqual(loss.free_space_db, 116.20, places=2)  # 32.4 + 20 log f + 20 log d, README
        self.assertIn("PathLoss(distance_km=34.4", repr(loss))
        self.assertIn("free_space_db: 116.1", str(loss))
        with self.assertRaises(AttributeError):
            loss.modeled_db = 0


class LossOfManyPaths(unittest.TestCase):
    def test_is_the_loss_of_each(self):
        latitudes = [36.44, 36.43, 36.42]
        found = zel.get_path_loss(latitudes, *PATH[1:], FREQUENCY)
        self.assertEqual(listed(found), [zel.get_path_loss(latitude, *PATH[1:], FREQUENCY) for latitude in latitudes])
        found = zel.get_path_loss(latitudes, *PATH[1:], [100, 200, 300])
        self.assertEqual(listed(found), [zel.get_path_loss(latitude, *PATH[1:], frequency)
                                         for latitude, frequency in zip(latitudes, (100, 200, 300))])

    def test_has_nan_for_what_cannot_be_computed_or_raises_it(self):
        latitudes = [A[0], OUTSIDE[0], math.nan, A[0]]
        found = listed(zel.get_path_loss(latitudes, *PATH[1:], FREQUENCY))
        self.assertEqual([math.isnan(loss) for loss in found], [False, True, True, False])
        self.assertEqual(found[0], zel.get_path_loss(*PATH, FREQUENCY))
        with self.assertRaises(zel.TerrainError) as raised:
            zel.get_path_loss(latitudes, *PATH[1:], FREQUENCY, errors="raise")
        self.assertEqual((raised.exception.index, raised.exception.status), (1, 2))
        self.assertTrue(str(raised.exception).startswith("path 1: "))
        found = listed(zel.get_path_loss(*PATH, [10, 450, 30000]))
        self.assertEqual([math.isnan(loss) for loss in found], [True, False, True])
        with self.assertRaisesRegex(zel.PathError, "^path 0: at 10.0 MHz"):
            zel.get_path_loss(*PATH, [10, 450], errors="raise")

    def test_of_no_path_is_empty(self):
        self.assertEqual(len(zel.get_path_loss([], *PATH[1:])), 0)
        self.assertEqual(zel.profile([], *PATH[1:]), [])
        self.assertEqual(len(zel.sample([], *PATH[1:2], *PATH[3:5], 10)), 0)

    def test_of_one_in_an_array_is_an_array(self):
        found = zel.get_path_loss([A[0]], *PATH[1:], FREQUENCY)
        self.assertEqual(listed(found), [zel.get_path_loss(*PATH, FREQUENCY)])

    def test_refuses_arrays_that_do_not_fit_each_other(self):
        with self.assertRaisesRegex(ValueError, r"do not fit each other: lat1 \(2,\), frequency \(3,\)"):
            zel.get_path_loss([36.4, 36.41], *PATH[1:], [1, 2, 3])

    def test_refuses_entries_that_are_no_numbers(self):
        for wrong in (["36.4", "36.41"], [36.4, None], [36.4, True], [36.4, object()], [1j], [b"36"]):
            with self.assertRaisesRegex((TypeError, ValueError), "lat1", msg=str(wrong)):
                zel.get_path_loss(wrong, *PATH[1:])
        with self.assertRaises((TypeError, ValueError)):
            zel.get_path_loss([[36.4], [36.41, 36.42]], *PATH[1:])

    def test_reads_arrays_of_python(self):
        wanted = listed(zel.get_path_loss([36.44, 36.43], *PATH[1:], FREQUENCY))
        doubles = array.array("d", [36.44, 36.43])
        for many in (doubles, memoryview(doubles), (36.44, 36.43), memoryview(array.array("d", [36.44, 0, 36.43, 0]))[::2],
                     memoryview(array.array("d", [36.43, 36.44]))[::-1], [fractions.Fraction(3644, 100), decimal.Decimal("36.43")]):
            self.assertEqual(listed(zel.get_path_loss(many, *PATH[1:], FREQUENCY)), wanted)
        self.assertEqual(len(zel.get_path_loss(*PATH, range(100, 400, 100))), 3)
        self.assertEqual(len(zel.get_path_loss(*PATH, array.array("i", [100, 200]))), 2)

    @needs_no_numpy
    def test_is_an_array_of_python_where_there_is_no_numpy(self):
        found = zel.get_path_loss([36.44, 36.43], *PATH[1:], FREQUENCY)
        self.assertIsInstance(found, array.array)
        self.assertEqual(found.typecode, "d")
        with self.assertRaisesRegex(TypeError, "without numpy"):
            zel.get_path_loss(memoryview(bytes(32)).cast("d", (2, 2)), *PATH[1:])

    @needs_numpy
    def test_is_an_array_of_numpy_of_the_shape_to_which_all_broadcast(self):
        latitudes = numpy.array([36.44, 36.43, 36.42])
        frequencies = numpy.array([[100.0], [450.0]])
        found = zel.get_path_loss(latitudes, *PATH[1:], frequencies)
        self.assertEqual((found.shape, found.dtype), ((2, 3), numpy.float64))
        for row, frequency in enumerate((100, 450)):
            for column, latitude in enumerate(latitudes):
                self.assertEqual(found[row, column], zel.get_path_loss(latitude, *PATH[1:], frequency))
        found[0, 0] = 0  # it is the caller's own
        self.assertEqual(zel.get_path_loss(latitudes[:, None, None], *PATH[1:], FREQUENCY).shape, (3, 1, 1))

    @needs_numpy
    def test_reads_arrays_of_numpy_of_every_kind(self):
        exact = numpy.array([36.4375, 36.40625])  # as 32-bit floats, too
        wanted = zel.get_path_loss(exact, *PATH[1:], FREQUENCY)
        fields = numpy.zeros(2, dtype=[("tag", "u1"), ("latitude", "f8")])
        fields["latitude"] = exact
        readonly = exact.copy()
        readonly.flags.writeable = False
        for many in (exact.astype("f4"), exact.astype(">f8"), exact.astype("g"), numpy.repeat(exact, 3)[::3], exact[::-1][::-1],
                     fields["latitude"], readonly, exact.astype(object), numpy.ma.array(exact), numpy.asfortranarray(exact)):
            numpy.testing.assert_array_equal(zel.get_path_loss(many, *PATH[1:], FREQUENCY), wanted)
        numpy.testing.assert_array_equal(zel.get_path_loss(*PATH, numpy.array([100, 450], dtype="u2")),
                                         zel.get_path_loss(*PATH, [100.0, 450.0]))
        square = numpy.array([[36.44, 36.43], [36.42, 36.41]])
        numpy.testing.assert_array_equal(zel.get_path_loss(square.T, *PATH[1:], FREQUENCY),
                                         zel.get_path_loss(square, *PATH[1:], FREQUENCY).T)

    @needs_numpy
    def test_has_nan_for_masked_numbers(self):
        masked = numpy.ma.array([36.44, 36.43], mask=[False, True])
        found = zel.get_path_loss(masked, *PATH[1:], FREQUENCY)
        self.assertEqual([math.isnan(loss) for loss in found], [False, True])
        with self.assertRaises(zel.ZelError):
            zel.get_path_loss(numpy.ma.masked, *PATH[1:])

    @needs_numpy
    def test_refuses_arrays_of_numpy_that_have_no_numbers(self):
        for wrong in (numpy.array(["36.4"]), numpy.array([True]), numpy.array([1j]), numpy.array(["2020-01-01"], "M8[D]"),
                      numpy.array([None, 36.4]), numpy.array("36.4"), numpy.array(True), numpy.ma.array([None], dtype=object),
                      numpy.zeros(2, dtype=[("a", "f8")])):
            with self.assertRaisesRegex(TypeError, "lat1", msg=repr(wrong)):
                zel.get_path_loss(wrong, *PATH[1:])


class Heights(unittest.TestCase):
    ENDS = (36.40, -84.35, 36.22, -84.12)

    def test_are_those_between_both_ends(self):
        heights = zel.sample(*self.ENDS, 11)
        self.assertEqual(len(heights), 11)
        self.assertEqual((heights.latitudes[0], heights.longitudes[0]), self.ENDS[:2])
        self.assertAlmostEqual(heights.latitudes[10], self.ENDS[2], places=9)
        self.assertEqual(heights.distances_km[0], 0)
        self.assertAlmostEqual(heights.distances_km[10], heights.distance_km, places=9)
        self.assertTrue(all(250 < height < 1000 for height in heights))
        self.assertEqual(heights[0], heights.elevations_m[0])
        self.assertEqual((heights.status, heights.error), (0, ""))
        self.assertEqual((heights.terrain.source_code, heights.terrain.method), (3, "FCC 4-Point"))

    def test_are_the_profile_s_ground(self):
        profile = zel.profile(*PATH)
        heights = zel.sample(*PATH[:2], *PATH[3:5], profile.points)
        self.assertEqual(listed(heights), listed(profile.ground_m))

    def test_know_their_method_and_source(self):
        bilinear = zel.sample(*self.ENDS, 5, method="4point")
        self.assertEqual(listed(bilinear), listed(zel.sample(*self.ENDS, 5, 0)))
        self.assertEqual(listed(bilinear), listed(zel.sample(*self.ENDS, 5)))
        cubic = zel.sample(*self.ENDS, 5, method="bivariate", source=2)
        self.assertNotEqual(listed(bilinear), listed(cubic))
        self.assertEqual(listed(cubic), listed(zel.sample(*self.ENDS, 5, method=1)))
        self.assertEqual(cubic.terrain.source_code, 2)
        zel.settings.set_for_this_run("Settings/CalcMethod", 1)
        self.addCleanup(zel.settings.set_for_this_run, "Settings/CalcMethod", 0)
        self.assertEqual(listed(cubic), listed(zel.sample(*self.ENDS, 5)))

    def test_of_what_cannot_be_sampled_raise(self):
        for arguments, status in (((*self.ENDS, 1), 4), ((*self.ENDS, 0), 4), ((*self.ENDS, -3), 4), ((*self.ENDS, 32768), 3),
                                  ((36.4, -84.3, 36.4, -84.3, 5), 4), ((*OUTSIDE[:2], *self.ENDS[2:], 5), 2),
                                  ((math.nan, *self.ENDS[1:], 5), 4)):
            with self.assertRaises(zel.TerrainError, msg=str(arguments)) as raised:
                zel.sample(*arguments)
            self.assertEqual(raised.exception.status, status)
        with self.assertRaises(zel.TerrainError) as raised:
            zel.sample(*self.ENDS, 5, source=4)
        self.assertEqual(raised.exception.status, 1)

    def test_of_wrong_arguments_raise(self):
        for wrong, error in ((2.5, ValueError), (math.nan, ValueError), ("5", TypeError), (None, TypeError), (2**40, OverflowError),
                             (True, TypeError)):
            with self.assertRaisesRegex(error, "points", msg=repr(wrong)):
                zel.sample(*self.ENDS, wrong)
        for wrong, error in ((2, ValueError), ("cubic", ValueError), (1.5, ValueError), ([0], TypeError)):
            with self.assertRaisesRegex(error, "method", msg=repr(wrong)):
                zel.sample(*self.ENDS, 5, wrong)
        with self.assertRaisesRegex(TypeError, "source"):
            zel.sample(*self.ENDS, 5, source="3")

    def test_of_many_paths_are_a_row_each(self):
        rows = zel.sample([36.40, OUTSIDE[0], 36.39], -84.35, 36.22, -84.12, 7)
        self.assertEqual((len(rows), len(rows[0])), (3, 7))
        self.assertEqual(listed(rows[2]), listed(zel.sample(36.39, -84.35, 36.22, -84.12, 7)))
        self.assertTrue(all(math.isnan(height) for height in rows[1]))
        self.assertEqual(list(rows.status), [0, 2, 0])
        self.assertIn("outside", rows.error[1])
        self.assertTrue(math.isnan(rows.distance_km[1]))
        self.assertEqual(len(rows.terrain), 3)
        with self.assertRaisesRegex(zel.TerrainError, "^path 1: "):
            zel.sample([36.40, OUTSIDE[0]], -84.35, 36.22, -84.12, 7, errors="raise")
        rows = zel.sample([36.40, 36.39], -84.35, 36.22, -84.12, 0)
        self.assertEqual(list(rows.status), [4, 4])

    def test_over_voids_are_nan(self):
        with terrain_with_voids() as ends:
            heights = listed(zel.sample(*ends, 21))
            self.assertTrue(math.isnan(heights[10]))
            self.assertEqual((heights[0], heights[20]), (100, 100))
            self.assertGreater(zel.sample(*ends, 21).terrain.voids, 0)

    @needs_numpy
    def test_stand_for_an_array_of_numpy(self):
        heights = zel.sample(*self.ENDS, 11)
        self.assertIsInstance(heights.elevations_m, numpy.ndarray)
        self.assertEqual(heights.elevations_m.dtype, numpy.float64)
        self.assertTrue(numpy.shares_memory(numpy.asarray(heights), heights.elevations_m))
        self.assertEqual(numpy.asarray(heights, dtype="f4").dtype, numpy.float32)
        self.assertEqual(numpy.max(heights), max(heights))
        self.assertEqual(numpy.asarray(zel.sample([36.4, 36.39], -84.35, 36.22, -84.12, 7)).shape, (2, 7))
        heights.elevations_m[0] = 5
        self.assertEqual(heights[0], 5)

    @needs_no_numpy
    def test_are_memoryviews_where_there_is_no_numpy(self):
        self.assertIsInstance(zel.sample(*self.ENDS, 11).elevations_m, memoryview)
        rows = zel.sample([36.4, 36.39], -84.35, 36.22, -84.12, 7)
        self.assertIsInstance(rows[1], memoryview)


class terrain_with_voids:
    """Flat ground of 100 m, 0.02 degrees wide, with a void in the middle; gives the ends of a path across."""

    def __enter__(self):
        self.folder = tempfile.TemporaryDirectory()
        file = pathlib.Path(self.folder.name) / "flat.asc"
        row = " ".join(["100"] * 9 + ["-32768"] * 3 + ["100"] * 9)
        file.write_text("ncols 21\nnrows 21\nxllcorner 10.0\nyllcorner 45.0\ncellsize 0.001\nNODATA_value -32768\n"
                        + "\n".join([row] * 21))
        file.with_suffix(".prj").write_text('GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],'
                                            'PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]]')
        zel.set_terrain(file)
        return 45.0105, 10.0015, 45.0105, 10.0195

    def __exit__(self, *_):
        zel.set_terrain([])
        self.folder.cleanup()


class Voids(unittest.TestCase):
    def test_under_a_loss_are_warned_of(self):
        with terrain_with_voids() as (lat1, lon1, lat2, lon2):
            with self.assertWarnsRegex(zel.TerrainWarning, "the path lies over voids") as caught:
                loss = zel.get_path_loss(lat1, lon1, 30, lat2, lon2, 30, 450)
            self.assertEqual(caught.filename, __file__)
            self.assertGreater(loss, 50)
            with self.assertWarnsRegex(zel.TerrainWarning, "2 of 2 paths lie over voids"):
                zel.get_path_loss([lat1, lat1], lon1, 30, lat2, lon2, 30, 450)
            with warnings.catch_warnings():
                warnings.simplefilter("error")
                with self.assertRaises(zel.TerrainWarning):
                    zel.get_path_loss(lat1, lon1, 30, lat2, lon2, 30, 450)

    def test_in_a_profile_are_nan(self):
        with terrain_with_voids() as (lat1, lon1, lat2, lon2):
            profile = zel.profile(lat1, lon1, 30, lat2, lon2, 30)
            ground = listed(profile.ground_m)
            self.assertTrue(any(map(math.isnan, ground)))
            self.assertEqual([math.isnan(value) for value in ground], [math.isnan(value) for value in profile.clearance_m])
            self.assertEqual(profile.verdict, "unknown")
            self.assertGreater(profile.terrain.voids, 0)


class Profile(unittest.TestCase):
    def test_has_every_field(self):
        profile = zel.profile(*PATH, k=4 / 3, frequency=FREQUENCY)
        self.assertEqual((profile.status, profile.error, profile.points, profile.verdict), (0, "", 1001, "blocked"))
        self.assertAlmostEqual(profile.distance_km, 34.403, places=3)
        self.assertAlmostEqual(profile.bearing_deg, 145.79, places=2)
        self.assertAlmostEqual(profile.wavelength_m, 300 / FREQUENCY)
        self.assertEqual((profile.k, profile.frequency_mhz), (4 / 3, FREQUENCY))
        self.assertEqual((profile.start_height_m, profile.end_height_m), (30, 30))
        self.assertAlmostEqual(profile.worst.distance_km, 11.112, places=3)
        self.assertEqual(profile.worst.position._fields, ("latitude", "longitude"))
        rows = (profile.distances_km, profile.latitudes, profile.longitudes, profile.ground_m, profile.rise_m,
                profile.line_of_sight_m, profile.fresnel1_m, profile.clearance_m)
        self.assertEqual({len(row) for row in rows}, {1001})
        middle = 500
        d1 = profile.distances_km[middle]
        d2 = profile.distance_km - d1
        self.assertAlmostEqual(profile.rise_m[middle], 1000 * d1 * d2 / (2 * (4 / 3) * 6371), places=6)
        self.assertAlmostEqual(profile.fresnel1_m[middle],
                               math.sqrt(1000 * profile.wavelength_m * d1 * d2 / profile.distance_km), places=6)
        self.assertAlmostEqual(profile.clearance_m[middle],
                               profile.line_of_sight_m[middle] - profile.ground_m[middle] - profile.rise_m[middle])
        self.assertAlmostEqual(profile.latitudes[0], A[0])
        self.assertAlmostEqual(profile.longitudes[1000], B[1])
        self.assertIsInstance(profile.notes, tuple)

    def test_takes_from_the_settings_what_is_not_given(self):
        done = run_script("""
import zelprofiler01 as zel
profile = zel.profile(36.4408, -84.3433, None, 36.1842, -84.1283, None)
print(profile.k, profile.frequency_mhz, profile.start_height_m)
print(*profile.notes)
zel.settings.set("Profile/Prf_Crv", 1.5)
zel.settings.set("Profile/Prf_Freq", 450)
profile = zel.profile(36.4408, -84.3433, None, 36.1842, -84.1283, None)
print(profile.k, profile.frequency_mhz)
""")
        lines = done.stdout.splitlines()
        self.assertEqual((lines[0], lines[2]), ("1.333 950.0 30", "1.5 450.0"))
        self.assertIn("1.333, the default", lines[1])

    def test_of_what_cannot_be_profiled_raises(self):
        with self.assertRaises(zel.TerrainError):
            zel.profile(*OUTSIDE, *B)
        for k in (0, -1, math.nan):
            with self.assertRaises(zel.PathError):
                zel.profile(*PATH, k)
        with self.assertRaises(zel.PathError):
            zel.profile(*A, A[0], A[1] + 0.0001, 30)

    def test_of_many_paths_is_a_list(self):
        found = zel.profile([A[0], OUTSIDE[0]], *PATH[1:], k=[4 / 3, 1])
        self.assertIsInstance(found, list)
        self.assertEqual(listed(found[0].clearance_m), listed(zel.profile(*PATH, k=4 / 3).clearance_m))
        self.assertEqual((found[1].status, found[1].points, len(found[1].ground_m)), (2, 0, 0))
        self.assertIn("outside", found[1].error)
        self.assertTrue(math.isnan(found[1].distance_km))
        with self.assertRaisesRegex(zel.TerrainError, "^path 1: "):
            zel.profile([A[0], OUTSIDE[0]], *PATH[1:], errors="raise")

    @needs_numpy
    def test_lends_its_memory(self):
        profile = zel.profile(*PATH)
        ground = profile.ground_m
        self.assertFalse(ground.flags.owndata)
        self.assertEqual(ground.strides, (8,))
        self.assertEqual(profile.latitudes.strides, (16,))  # out of the positions
        address = ground.__array_interface__["data"][0]
        del profile
        self.assertEqual(ground.__array_interface__["data"][0], address)
        self.assertGreater(ground.min(), 200)


if __name__ == "__main__":
    unittest.main()
