"""Settings, terrain, geodesics, pictures, versions."""
import math
import os
import pathlib
import tempfile
import unittest

import zelprofiler01 as zel

from support import A, B, PATH, run_script

SETTINGS = """
import zelprofiler01 as zel
settings = zel.settings
assert settings.get("Profile/Prf_Freq") is None
assert settings.get("Profile/Prf_Freq", "none") == "none"
settings.set("profile/PRF_freq", 450)
assert settings.get("Profile/Prf_Freq") == "450"
settings.set_for_this_run("Profile/Prf_Freq", 900.5)
assert settings.get("Profile/Prf_Freq") == "900.5"
assert ("Profile", "Prf_Freq", "900.5", True) in settings.stored(), settings.stored()
assert settings.file.endswith(".ini")
settings.set("My Section/My Key", "\\u00fc; x = 1")
assert settings.get("My Section/My Key") == "\\u00fc; x = 1"
print(open(settings.file).read())
"""


class Settings(unittest.TestCase):
    def test_are_stored_and_read(self):
        self.assertIn("Prf_Freq=450", run_script(SETTINGS).stdout)

    def test_are_known_with_their_meaning(self):
        known = {f"{setting.section}/{setting.key}": setting for setting in zel.settings.known()}
        frequency = known["Profile/Prf_Freq"]
        self.assertEqual((frequency.unit, frequency.default, frequency.other_default), ("MHz", "950", "100"))
        self.assertTrue(frequency.meaning)

    def test_refuse_values_that_they_cannot_have(self):
        self.assertIsNotNone(zel.settings.problem("Profile/Prf_Freq", "north"))
        self.assertIsNone(zel.settings.problem("Profile/Prf_Freq", 450))
        for store in (zel.settings.set, zel.settings.set_for_this_run):
            with self.assertRaisesRegex(ValueError, "Prf_Freq"):
                store("Profile/Prf_Freq", "north")
            with self.assertRaises(TypeError):
                store("Profile/Prf_Freq", None)

    def test_refuse_names_that_are_none(self):
        for name in ("Prf_Freq", "/Prf_Freq", "Profile/", ""):
            with self.assertRaisesRegex(ValueError, "SECTION/KEY"):
                zel.settings.get(name)
        with self.assertRaises(TypeError):
            zel.settings.get(5)
        with self.assertRaises(TypeError):
            zel.Settings()

    def test_that_cannot_be_written_raise_settings_error(self):
        done = run_script("""
import os, zelprofiler01 as zel
os.environ.clear
open("no-folder", "w").close()
try: zel.settings.set("Profile/Prf_Freq", 450)
except zel.SettingsError as error: print("refused:", error)
""", environment={"XDG_CONFIG_HOME": "/dev/null/nowhere"})
        self.assertIn("refused: ", done.stdout)


class Terrain(unittest.TestCase):
    def test_has_sources(self):
        sources = zel.terrain_sources()
        self.assertEqual([source.code for source in sources], [1, 2, 3, 7, 9])
        self.assertTrue(sources[2].bundled_sample)
        self.assertEqual(sources[2].name, "1 second")

    def test_may_be_set_for_a_run_or_for_good(self):
        done = run_script("""
import pathlib, sys
import zelprofiler01 as zel
bundled = zel.sample(36.40, -84.35, 36.22, -84.12, 5).terrain
file = pathlib.Path(bundled.files[0])
zel.set_terrain_source(3, [file])
assert not zel.terrain_sources()[2].bundled_sample
assert zel.terrain_sources()[2].paths == (str(file),)
assert not zel.sample(36.40, -84.35, 36.22, -84.12, 5).terrain.bundled_sample
zel.set_terrain_source(3, [])
assert zel.terrain_sources()[2].bundled_sample
zel.set_terrain("nowhere.tif")
try: zel.sample(36.40, -84.35, 36.22, -84.12, 5)
except zel.TerrainError as error: print(error.status, error)
zel.set_terrain([str(file).encode()])
print(len(zel.sample(36.40, -84.35, 36.22, -84.12, 5)))
raster, = zel.terrain_info(file)
print(raster.problem == "", raster.columns > 100, raster.lowest < raster.highest)
print(zel.terrain_info(pathlib.Path("nothing.tif"))[0].problem != "")
""")
        lines = done.stdout.splitlines()
        self.assertRegex(lines[0], "^[12] ")
        self.assertEqual(lines[1:], ["5", "True True True", "True"])

    def test_refuses_what_is_no_path(self):
        for wrong in (5, None, [None], [5]):
            with self.assertRaises(TypeError, msg=repr(wrong)):
                zel.set_terrain(wrong)
        with self.assertRaises(ValueError):
            zel.set_terrain(["a\0b"])
        with self.assertRaises(zel.SettingsError):
            zel.set_terrain_source(4, [])
        with self.assertRaises(zel.SettingsError):
            zel.set_terrain_source(3, ["a;b"])


class Geodesics(unittest.TestCase):
    def test_have_positions(self):
        # The WGS 84 meridian from the equator to the pole: 10001.966 km.
        line = zel.geodesic(0, 20, 90, 20, points=3)
        self.assertAlmostEqual(line.distance_km, 10001.966, places=3)
        self.assertEqual((line.bearing_deg, len(line.latitudes)), (0, 3))
        self.assertAlmostEqual(line.latitudes[1], 45.1443, places=3)

    def test_end_where_they_lead(self):
        line = zel.geodesic(*A[:2], *B[:2])
        end = zel.destination(*A[:2], line.bearing_deg, line.distance_km)
        self.assertAlmostEqual(end.latitude, B[0], places=9)
        self.assertAlmostEqual(end.longitude, B[1], places=9)

    def test_of_no_place_are_not_a_number(self):
        line = zel.geodesic(math.nan, 0, 1, 1)
        self.assertTrue(math.isnan(line.distance_km))
        self.assertEqual(len(line.latitudes), 0)
        for points, error in ((1, ValueError), (0, ValueError), (10**9, ValueError), ("2", TypeError)):
            with self.assertRaises(error):
                zel.geodesic(0, 0, 1, 1, points)

    def test_stations_are_read_from_text(self):
        self.assertEqual(zel.parse_station("36.4408,-84.3433,30"), zel.Station(*A))
        self.assertIsNone(zel.parse_station("36-24-00 N,84-21-00 W").AntHt)
        with self.assertRaises(zel.PathError):
            zel.parse_station("north pole")
        for wrong in (36.4, b"36.4,-84.3", None):
            with self.assertRaisesRegex(TypeError, "a station's text is a str, not"):
                zel.parse_station(wrong)


class Pictures(unittest.TestCase):
    ENDS = (36.40, -84.35, 30, 36.22, -84.12, 30)

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def test_are_files(self):
        notes = zel.plot(self.folder / "p.png", *self.ENDS, size=(400, 200), scale=2, markers_km=[8, 20])
        data = (self.folder / "p.png").read_bytes()
        self.assertEqual((data[:8], data[16:24]), (b"\x89PNG\r\n\x1a\n", bytes([0, 0, 3, 32, 0, 0, 1, 144])))
        self.assertIsInstance(notes, tuple)
        zel.plot(str(self.folder / "p.SVG"), *self.ENDS, expand_km=(8, 20), units="imperial", k=1.5, frequency=450)
        self.assertIn("<svg", (self.folder / "p.SVG").read_text())
        self.assertEqual(sorted(os.listdir(self.folder)), ["p.SVG", "p.png"])

    def test_that_cannot_be_made_leave_nothing(self):
        for path, error in ((("p.jpg", *self.ENDS), ValueError), ((5, *self.ENDS), TypeError)):
            with self.assertRaises(error):
                zel.plot(*path)
        with self.assertRaises(zel.TerrainError):
            zel.plot(self.folder / "p.png", 36.9, *self.ENDS[1:])
        with self.assertRaises(zel.PathError):
            zel.plot(self.folder / "p.png", *self.ENDS, size=(10, 10))
        with self.assertRaises(ValueError):
            zel.plot(self.folder / "p.png", *self.ENDS, size=(0, 10))
        with self.assertRaises(ValueError):
            zel.plot(self.folder / "p.png", *self.ENDS, units="feet")
        with self.assertRaises(OSError):
            zel.plot(self.folder / "missing" / "p.png", *self.ENDS)
        self.assertEqual(os.listdir(self.folder), [])


class Version(unittest.TestCase):
    def test_is_the_library_s(self):
        self.assertRegex(zel.__version__, r"^\d+\.\d+\.\d+$")
        self.assertEqual(zel.__version__, zel.version())


if __name__ == "__main__":
    unittest.main()
