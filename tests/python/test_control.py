"""ProfileControl by late binding."""
import collections
import copy
import decimal
import fractions
import functools
import inspect
import math
import os
import pathlib
import pickle
import pydoc
import tempfile
import threading
import types
import unittest

import zelprofiler01 as zel
from zelprofiler01 import _zelprofiler01 as extension

from support import A, B, PATH, needs_numpy, numpy

ROWS = extension.member_rows()


class Place:
    """A station of a host's own."""

    def __init__(self, lat, lon, height):
        self.Lat, self.Lon, self.AntHt = lat, lon, height


class WithControl(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.control = zel.ProfileControl()
        self.addCleanup(setattr, self, "control", None)

    def application(self, **more):
        return types.SimpleNamespace(**{"Title": "Python Test", "Path": str(self.folder), **more})

    def log(self):
        entries = self.folder / "zelErrorLog.txt"
        return entries.read_text() if entries.exists() else ""


class TheMembers(WithControl):
    def test_are_those_of_the_table(self):
        self.assertEqual(len(ROWS), 24)
        names = {name for name, *_ in ROWS}
        self.assertLessEqual(names, set(dir(self.control)))
        own = {name for name in vars(zel.ProfileControl) if not name.startswith("_")}
        self.assertEqual(own, names)

    def test_have_a_page_of_help_made_from_the_table(self):
        page = pydoc.plain(pydoc.render_doc(zel.ProfileControl))
        for name, _, _, arguments, result, description in ROWS:
            member = inspect.getattr_static(zel.ProfileControl, name)
            self.assertIn(description, member.__doc__)
            self.assertIn(name, page)
            for argument, kind in arguments if callable(member) else ():
                self.assertRegex(member.__doc__, rf"{argument}: .*{kind}")
            if result:
                self.assertIn(result, member.__doc__)

    def test_show_their_arguments_to_inspect(self):
        self.assertEqual(str(inspect.signature(zel.ProfileControl.GetPathLoss)),
                         "(self, Sta1: 'Station', Sta2: 'Station') -> 'float'")
        self.assertEqual(str(inspect.signature(self.control.ExportDataToCSV)), "(outfile: 'str') -> None")

    def test_are_found_in_any_case(self):
        self.control.elevLINES = 7
        self.assertEqual((self.control.ElevLines, self.control.ELEVLINES), (7, 7))
        self.assertEqual(self.control.getpathloss(A, B), self.control.GetPathLoss(A, B))

    def test_that_are_not_there_are_missing_attributes(self):
        for use in (lambda: self.control.NoSuchMember, lambda: setattr(self.control, "NoSuchMember", 1)):
            with self.assertRaises(AttributeError) as raised:
                use()
            self.assertIsInstance(raised.exception, zel.MemberNotFoundError)
            self.assertEqual(str(raised.exception), "ProfileControl has no member NoSuchMember")
        self.assertFalse(hasattr(self.control, "NoSuchMember"))
        self.assertFalse(hasattr(self.control, "__array__"))

    def test_that_cannot_be_read_or_set_say_so(self):
        for use, text in ((lambda: self.control.OwnerName, "OwnerName cannot be read"),
                          (lambda: setattr(self.control, "hWnd", 1), "hWnd cannot be set"),
                          (lambda: setattr(self.control, "GetPathLoss", 1), "GetPathLoss cannot be set"),
                          (lambda: delattr(self.control, "ElevLines"), "ElevLines cannot be deleted")):
            with self.assertRaises(zel.WrongAccessError) as raised:
                use()
            self.assertIn(text, str(raised.exception))

    def test_share_one_state(self):
        other = zel.ProfileControl()
        other.RangeLines = 11
        self.assertEqual(self.control.RangeLines, 11)

    def test_have_native_types(self):
        self.control.ElevLines = 3
        self.assertIs(type(self.control.ElevLines), int)
        self.assertIs(type(self.control.OptionButtonVisible), bool)
        self.assertIs(type(self.control.GetPathLoss(A, B)), float)
        self.assertIs(type(self.control.PrintProfile()), bool)
        self.assertIsNone(self.control.UnloadMainForm())
        self.control.OwnerName = "Ä name"

    def test_take_numbers_of_every_kind_and_refuse_what_is_none(self):
        for value in (5, 5.0, 4.6, fractions.Fraction(5), decimal.Decimal("5.2")):
            self.control.ElevLines = value
            self.assertEqual(self.control.ElevLines, 5)
        refused = ((40000, zel.ValueOverflowError), (10**400, zel.ValueOverflowError), (10**12, zel.ValueOverflowError),
                   (math.nan, zel.ValueOverflowError), (math.inf, zel.ValueOverflowError), ("5", zel.TypeMismatchError),
                   (True, zel.TypeMismatchError), (None, zel.TypeMismatchError), (b"5", zel.TypeMismatchError),
                   ([5], zel.TypeMismatchError), (5j, zel.TypeMismatchError), (object(), zel.TypeMismatchError))
        for value, error in refused:
            with self.assertRaisesRegex(error, "ElevLines, argument 1", msg=repr(value)):
                self.control.ElevLines = value
        self.assertEqual(self.control.ElevLines, 5)
        self.assertTrue(issubclass(zel.ValueOverflowError, OverflowError))
        self.assertTrue(issubclass(zel.TypeMismatchError, TypeError))

    @needs_numpy
    def test_take_numbers_of_numpy(self):
        for value in (numpy.int16(6), numpy.uint8(6), numpy.float32(6), numpy.float64(6), numpy.array(6)):
            self.control.ElevLines = value
            self.assertEqual(self.control.ElevLines, 6)
        self.control.OptionButtonVisible = numpy.bool_(False)
        self.assertIs(self.control.OptionButtonVisible, False)
        for value in (numpy.bool_(True), numpy.array([6, 7]), numpy.str_("6")):
            with self.assertRaises(zel.TypeMismatchError):
                self.control.ElevLines = value

    def test_refuse_texts_that_are_no_characters(self):
        with self.assertRaises(zel.TypeMismatchError):
            self.control.OwnerName = "\ud800"
        with self.assertRaises(zel.TypeMismatchError):
            self.control.OwnerName = 5


class Calls(WithControl):
    def test_take_their_arguments_by_place_and_by_name(self):
        loss = self.control.GetPathLoss(A, B)
        self.assertEqual(self.control.GetPathLoss(Sta1=A, Sta2=B), loss)
        self.assertEqual(self.control.GetPathLoss(A, sta2=B), loss)

    def test_refuse_arguments_that_the_member_does_not_have(self):
        refused = ((lambda: self.control.GetPathLoss(A), "GetPathLoss takes 2 arguments, not 1"),
                   (lambda: self.control.GetPathLoss(A, B, A), "GetPathLoss takes 2 arguments, not 3"),
                   (lambda: self.control.GetPathLoss(A, B, Sta1=A), "GetPathLoss is given its argument Sta1 twice"),
                   (lambda: self.control.GetPathLoss(A, Sta3=B), "GetPathLoss has no argument Sta3; it has Sta1, Sta2"),
                   (lambda: self.control.PrintProfile(1), "PrintProfile takes 0 arguments, not 1"))
        for call, text in refused:
            with self.assertRaises(TypeError) as raised:
                call()
            self.assertIsInstance(raised.exception, zel.WrongArgumentCountError)
            self.assertEqual(str(raised.exception), text)

    def test_take_stations_of_every_kind(self):
        loss = self.control.GetPathLoss(A, B)
        self.assertGreater(loss, 100)
        named = collections.namedtuple("Named", "Lon Lat AntHt")(B[1], B[0], B[2])
        for station in (zel.Station(*B), list(B), Place(*B), types.SimpleNamespace(lat=B[0], LON=B[1], antht=B[2]),
                        zel.StationProfile_Type(Lat=B[0], Lon=B[1], AntHt=30)):
            self.assertEqual(self.control.GetPathLoss(A, station), loss, station)
        # By its place, as any tuple: a station by names is no tuple.
        self.assertEqual(self.control.GetPathLoss(A, named), 0)

    def test_refuse_what_is_no_station(self):
        for station, error in ((None, zel.TypeMismatchError), (5, zel.TypeMismatchError), ("36,-84,30", zel.TypeMismatchError),
                               ((36, -84), zel.TypeMismatchError), ((36, -84, "30"), zel.TypeMismatchError),
                               ((36, -84, None), zel.TypeMismatchError), (object(), zel.MemberNotFoundError),
                               (zel.Station("north"), zel.TypeMismatchError), ((36, -84, 1e300), zel.ValueOverflowError)):
            with self.assertRaises(error, msg=repr(station)):
                self.control.GetPathLoss(A, station)

    def test_give_zero_for_a_path_without_a_loss_and_log_why(self):
        self.control.SetClientApp(self.application())
        self.assertEqual(self.control.GetPathLoss((10, 20, 30), (10.2, 20.2, 30)), 0)
        self.assertIn("Error Number", self.log())

    def test_belong_to_one_thread(self):
        raised = []

        def elsewhere():
            try:
                self.control.GetPathLoss(A, B)
            except zel.AutomationError as error:
                raised.append(error)

        thread = threading.Thread(target=elsewhere)
        thread.start()
        thread.join()
        self.assertIsInstance(raised[0], zel.WrongThreadError)
        self.assertIsInstance(raised[0], RuntimeError)

    def test_write_files(self):
        self.control.SetClientApp(self.application())
        self.control.GetPathLoss((36.40, -84.35, 30), (36.22, -84.12, 30))
        self.control.ExportDataToCSV(self.folder / "heights.csv")
        self.control.ExportITMToCSV(str(self.folder / "losses.csv"))
        self.assertGreater(len((self.folder / "heights.csv").read_text().splitlines()), 100)
        self.assertTrue((self.folder / "losses.csv").exists())


class TheApplication(WithControl):
    def test_is_any_object_whose_attributes_are_read_when_they_are_needed(self):
        asked = []

        class Application:
            Path = str(self.folder)

            @property
            def title(self):  # in another case than the component asks for
                asked.append(threading.current_thread())
                return "Python Test " + str(len(asked) > 0)

        self.control.SetClientApp(Application())
        self.assertTrue(asked)
        self.assertTrue(zel.settings.file.endswith("Python Test True.ini"), zel.settings.file)
        before = len(asked)
        zel.settings.get("Profile/Prf_Freq")
        self.assertGreater(len(asked), before)

    def test_may_change_its_title(self):
        application = self.application(Title="Title Test")
        self.control.SetClientApp(application)
        zel.settings.set("Profile/Prf_Max", 2450)
        application.Title = "Another Title"
        self.assertIsNone(zel.settings.get("Profile/Prf_Max"))
        application.Title = "Title Test"
        self.assertEqual(zel.settings.get("Profile/Prf_Max"), "2450")

    def test_that_fails_is_told_in_the_error(self):
        class Application:
            Path = "."

            @property
            def Title(self):
                raise LookupError("no title today")

        self.control.SetClientApp(Application())  # shown and logged, not raised
        with self.assertRaisesRegex(zel.SettingsError, "LookupError: no title today"):
            zel.settings.get("Profile/Prf_Freq")
        with self.assertRaisesRegex(zel.ZelError, "LookupError: no title today"):
            zel.get_path_loss(*PATH)
        self.control.SetClientApp(self.application())
        self.assertGreater(zel.get_path_loss(*PATH), 100)

    def test_that_fails_with_an_exception_without_name_or_text_is_told_too(self):
        class Nameless(type):
            @property
            def __name__(cls):
                raise ValueError("no name")

        class Wordless(Exception, metaclass=Nameless):
            def __str__(self):
                raise ValueError("no text")

        class Application:
            Path = "."

            @property
            def Title(self):
                raise Wordless

        self.control.SetClientApp(Application())
        with self.assertRaisesRegex(zel.SettingsError, r"Title: Wordless \(whose text cannot be had\)"):
            zel.settings.get("Profile/Prf_Freq")
        self.control.SetClientApp(self.application())

    def test_with_a_value_of_the_wrong_kind_is_told_in_the_error(self):
        self.control.SetClientApp(self.application(Title=object()))
        with self.assertRaises(zel.ZelError):
            zel.settings.get("Profile/Prf_Freq")
        self.control.SetClientApp(self.application())

    def test_may_be_nothing_again(self):
        self.control.SetClientApp(None)

    def test_may_ask_for_a_path_while_its_title_is_read(self):
        losses = []

        class Application:
            Path = str(self.folder)

            @property
            def Title(self):
                if not losses:
                    losses.append(None)
                    try:
                        losses.append(zel.get_path_loss(*PATH))
                    except zel.ZelError as error:
                        losses.append(error)
                return "Python Test"

        self.control.SetClientApp(Application())
        self.assertGreater(zel.get_path_loss(*PATH), 100)
        self.assertEqual(len(losses), 2)

    def test_without_a_title_gives_no_settings(self):
        self.control.SetClientApp(object())
        with self.assertRaisesRegex(zel.SettingsError, "support this property or method"):
            zel.settings.get("Profile/Prf_Freq")
        self.control.SetClientApp(self.application())


class Windows(WithControl):
    def test_are_shown_and_reached_by_the_names_of_their_controls(self):
        self.control.SetClientApp(self.application())
        self.assertIsNone(zel.windows_problem())
        self.control.ShowMainForm((36.40, -84.35, 30), (36.22, -84.12, 30))
        zel.process_events(20)
        self.assertTrue(self.control.PFrmLoaded)
        self.control.UnloadMainForm()
        self.assertFalse(self.control.PFrmLoaded)

    def test_of_the_host_s_own_are_objects_with_members(self):
        self.control.SetClientApp(self.application())
        form = self.control.PForm
        self.assertIsInstance(form, zel.AutomationObject)
        self.assertEqual(form.caption, form.Caption)
        form.Caption = "Mine"
        self.assertEqual(form.Caption, "Mine")
        with self.assertRaises(AttributeError):
            form.NoSuchControl
        self.assertNotEqual(form, self.control.PForm)
        self.assertEqual(len({form, form}), 1)

    def test_have_groups_of_controls_that_are_reached_by_an_index(self):
        self.control.SetClientApp(self.application())
        form = self.control.PForm
        self.assertTrue(form.optCurve(0).Value)
        self.assertFalse(form.optCurve(1).Value)
        with self.assertRaises(zel.MemberFailedError):
            form.optCurve(9)
        with self.assertRaises(zel.AutomationError):
            form.optCurve()

    def test_events_need_a_time_that_is_none_below_zero(self):
        zel.windows_problem()
        with self.assertRaises(ValueError):
            zel.process_events(-1)
        with self.assertRaises(TypeError):
            zel.process_events("1")


class Objects(unittest.TestCase):
    def test_of_python_come_back_as_themselves(self):
        for value in (object(), [1], {}, Place(1, 2, 3), len):
            bag = zel.AutomationObject(extension.make_station(value, 1, 2))
            self.assertIs(bag.Lat, value)
            self.assertIs(bag.lat, value)

    def test_of_the_component_stay_the_same_through_it(self):
        inner = zel.AutomationObject(extension.make_station(1, 2, 3))
        outer = zel.AutomationObject(extension.make_station(inner, 2, 3))
        self.assertEqual(outer.Lat, inner)
        self.assertEqual(hash(outer.Lat), hash(inner))
        self.assertEqual(outer.Lat.AntHt, 3)

    def test_cannot_be_pickled_or_copied(self):
        # With its oldest protocols pickle takes objects of an extension apart, which once ended the process.
        control = zel.ProfileControl()
        for thing in (control, control._handle, extension.Access.GET):
            for refused in (*(functools.partial(pickle.dumps, thing, protocol) for protocol in range(6)),
                            functools.partial(copy.copy, thing), functools.partial(copy.deepcopy, thing)):
                with self.assertRaisesRegex(TypeError, "cannot be pickled or copied"):
                    refused()

    def test_that_only_look_like_booleans_of_numpy_are_objects(self):
        def refuse(self):
            raise ValueError("neither")

        truth = type("numpy.bool", (), {"__bool__": lambda self: True})()
        neither = type("numpy.bool_", (), {"__bool__": refuse})()
        bag = zel.AutomationObject(extension.make_station(truth, neither, 2))
        self.assertIs(bag.Lat, True)
        self.assertIs(bag.Lon, neither)

    def test_keep_values_of_every_kind(self):
        for value in (None, True, False, 0, -5, 2**31 - 1, 1.5, math.inf, "", "Ünï\n", "a\0b"):
            bag = zel.AutomationObject(extension.make_station(value, 1, 2))
            self.assertEqual(bag.Lat, value)
            self.assertIs(type(bag.Lat), type(value))

    def test_station_unpacks_and_compares(self):
        station = zel.Station(1, 2, 3)
        self.assertEqual((*station,), (1, 2, 3))
        self.assertEqual(station, zel.Station(1, 2, 3))
        self.assertNotEqual(station, zel.Station(1, 2, 4))
        self.assertEqual(repr(station), "Station(Lat=1, Lon=2, AntHt=3)")
        with self.assertRaises(AttributeError):
            station.Height = 3


if __name__ == "__main__":
    unittest.main()
