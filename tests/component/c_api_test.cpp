#include "zel/c_api.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <regex>
#include <string>
#include <thread>

#include "component_fixture.h"

namespace zel {
namespace {

using test::kStation1;
using test::kStation2;

class CApiTest : public test::ComponentFixture {
 protected:
  void SetUp() override { ASSERT_EQ(zelProfilerCreate(&profiler_), ZEL_OK) << zelProfilerLastError(); }
  void TearDown() override { EXPECT_EQ(zelProfilerRelease(profiler_), ZEL_OK); }

  zelObject* application() {
    const std::string path = folder_.path().string();
    const zelApplication properties{"Host Planner", path.c_str(), "Planner", nullptr, 4, 5, 6};
    zelObject* object = nullptr;
    EXPECT_EQ(zelApplicationCreate(&properties, &object), ZEL_OK);
    return object;
  }
  zelObject* self() {
    zelObject* object = nullptr;
    EXPECT_EQ(zelProfilerObject(profiler_, &object), ZEL_OK);
    return object;
  }

  zelProfiler* profiler_ = nullptr;
};

TEST_F(CApiTest, HasAFunctionForEachMember) {
  int16_t lines = 0;
  EXPECT_EQ(zelProfilerLetElevLines(profiler_, 4), ZEL_OK);
  EXPECT_EQ(zelProfilerGetElevLines(profiler_, &lines), ZEL_OK);
  EXPECT_EQ(lines, 4);
  EXPECT_EQ(zelProfilerLetRangeLines(profiler_, -5), ZEL_OK);
  EXPECT_EQ(zelProfilerGetRangeLines(profiler_, &lines), ZEL_OK);
  EXPECT_EQ(lines, -5);
  EXPECT_EQ(zelProfilerExportDataToCSV(profiler_, "a.csv"), ZEL_OK);
  EXPECT_EQ(zelProfilerExportITMToCSV(profiler_, "b.csv"), ZEL_OK);
  int flag = 7;
  EXPECT_EQ(zelProfilerGetOFrmLoaded(profiler_, &flag), ZEL_OK);
  EXPECT_EQ(flag, 0);
  EXPECT_EQ(zelProfilerLetOptionButtonVisible(profiler_, 2), ZEL_OK);
  EXPECT_EQ(zelProfilerGetOptionButtonVisible(profiler_, &flag), ZEL_OK);
  EXPECT_EQ(flag, 1);
  EXPECT_EQ(zelProfilerLetOwnerName(profiler_, "owner"), ZEL_OK);
  EXPECT_EQ(zelProfilerLetProgName(profiler_, "program"), ZEL_OK);
  EXPECT_EQ(zelProfilerLetPrintDescription(profiler_, "text"), ZEL_OK);
  EXPECT_EQ(zelProfilerLetPrintLandscape(profiler_, 1), ZEL_OK);
  EXPECT_EQ(zelProfilerPrintProfile(profiler_, &flag), ZEL_OK);
  EXPECT_EQ(flag, 0);
  float loss = 0;
  EXPECT_EQ(zelProfilerGetPathLoss(profiler_, &kStation1, &kStation2, &loss), ZEL_OK);
  EXPECT_EQ(loss, 123.5F);
  EXPECT_EQ(zelProfilerShowMainForm(profiler_, &kStation1, &kStation2), ZEL_OK);
  EXPECT_EQ(zelProfilerGetPFrmLoaded(profiler_, &flag), ZEL_OK);
  EXPECT_EQ(flag, 1);
  int32_t number = 0;
  EXPECT_EQ(zelProfilerGethWnd(profiler_, &number), ZEL_OK);
  EXPECT_EQ(number, 77);
  EXPECT_EQ(zelProfilerShowOptionsForm(profiler_), ZEL_OK);
  EXPECT_EQ(zelProfilerLetStaDatum(profiler_, 2), ZEL_OK);
  EXPECT_EQ(zelProfilerGetStaDatum(profiler_, &number), ZEL_OK);
  EXPECT_EQ(number, 2);
  EXPECT_EQ(zelProfilerUnloadMainForm(profiler_), ZEL_OK);
  zelObject* window = nullptr;
  EXPECT_EQ(zelProfilerGetPForm(profiler_, &window), ZEL_OK);
  EXPECT_NE(window, nullptr);
  EXPECT_EQ(zelObjectRelease(window), ZEL_OK);
  EXPECT_EQ(windows_->calls, (test::Journal{"export data a.csv", "export loss b.csv", "show profile",
                                            "show settings", "unload profile", "new form"}));
  EXPECT_EQ(component_.state().ownerName, "owner");
  EXPECT_EQ(component_.state().progName, "program");
  EXPECT_EQ(component_.state().printDescription, "text");
  EXPECT_TRUE(component_.state().printLandscape);
}

TEST_F(CApiTest, RefusesNullPointersEverywhere) {
  const int expected = ZEL_NULL_POINTER;
  int16_t lines = 0;
  int flag = 0;
  int32_t number = 0;
  float loss = 0;
  zelObject* object = nullptr;
  zelApplication properties{};
  zelApplicationCallbacks callbacks{};
  EXPECT_EQ(zelProfilerCreate(nullptr), expected);
  EXPECT_STRNE(zelProfilerLastError(), "");
  EXPECT_EQ(zelProfilerGetElevLines(nullptr, &lines), expected);
  EXPECT_EQ(zelProfilerGetElevLines(profiler_, nullptr), expected);
  EXPECT_EQ(zelProfilerLetElevLines(nullptr, 1), expected);
  EXPECT_EQ(zelProfilerExportDataToCSV(nullptr, "a.csv"), expected);
  EXPECT_EQ(zelProfilerExportDataToCSV(profiler_, nullptr), expected);
  EXPECT_EQ(zelProfilerExportITMToCSV(nullptr, "a.csv"), expected);
  EXPECT_EQ(zelProfilerExportITMToCSV(profiler_, nullptr), expected);
  EXPECT_EQ(zelProfilerGetOFrmLoaded(nullptr, &flag), expected);
  EXPECT_EQ(zelProfilerGetOFrmLoaded(profiler_, nullptr), expected);
  EXPECT_EQ(zelProfilerGetOptionButtonVisible(nullptr, &flag), expected);
  EXPECT_EQ(zelProfilerGetOptionButtonVisible(profiler_, nullptr), expected);
  EXPECT_EQ(zelProfilerLetOptionButtonVisible(nullptr, 1), expected);
  EXPECT_EQ(zelProfilerLetOwnerName(nullptr, "a"), expected);
  EXPECT_EQ(zelProfilerLetOwnerName(profiler_, nullptr), expected);
  EXPECT_EQ(zelProfilerGetPForm(nullptr, &object), expected);
  EXPECT_EQ(zelProfilerGetPForm(profiler_, nullptr), expected);
  EXPECT_EQ(zelProfilerGetPFrmLoaded(nullptr, &flag), expected);
  EXPECT_EQ(zelProfilerGetPFrmLoaded(profiler_, nullptr), expected);
  EXPECT_EQ(zelProfilerLetPrintDescription(nullptr, "a"), expected);
  EXPECT_EQ(zelProfilerLetPrintDescription(profiler_, nullptr), expected);
  EXPECT_EQ(zelProfilerLetPrintLandscape(nullptr, 1), expected);
  EXPECT_EQ(zelProfilerPrintProfile(nullptr, &flag), expected);
  EXPECT_EQ(zelProfilerPrintProfile(profiler_, nullptr), expected);
  EXPECT_EQ(zelProfilerLetProgName(nullptr, "a"), expected);
  EXPECT_EQ(zelProfilerLetProgName(profiler_, nullptr), expected);
  EXPECT_EQ(zelProfilerGetRangeLines(nullptr, &lines), expected);
  EXPECT_EQ(zelProfilerGetRangeLines(profiler_, nullptr), expected);
  EXPECT_EQ(zelProfilerLetRangeLines(nullptr, 1), expected);
  EXPECT_EQ(zelProfilerSetClientApp(nullptr, nullptr), expected);
  EXPECT_EQ(zelProfilerGetPathLoss(nullptr, &kStation1, &kStation2, &loss), expected);
  EXPECT_EQ(zelProfilerGetPathLoss(profiler_, nullptr, &kStation2, &loss), expected);
  EXPECT_EQ(zelProfilerGetPathLoss(profiler_, &kStation1, nullptr, &loss), expected);
  EXPECT_EQ(zelProfilerGetPathLoss(profiler_, &kStation1, &kStation2, nullptr), expected);
  EXPECT_EQ(zelProfilerShowMainForm(nullptr, &kStation1, &kStation2), expected);
  EXPECT_EQ(zelProfilerShowMainForm(profiler_, nullptr, &kStation2), expected);
  EXPECT_EQ(zelProfilerShowMainForm(profiler_, &kStation1, nullptr), expected);
  EXPECT_EQ(zelProfilerShowOptionsForm(nullptr), expected);
  EXPECT_EQ(zelProfilerGetStaDatum(nullptr, &number), expected);
  EXPECT_EQ(zelProfilerGetStaDatum(profiler_, nullptr), expected);
  EXPECT_EQ(zelProfilerLetStaDatum(nullptr, 1), expected);
  EXPECT_EQ(zelProfilerUnloadMainForm(nullptr), expected);
  EXPECT_EQ(zelProfilerGethWnd(nullptr, &number), expected);
  EXPECT_EQ(zelProfilerGethWnd(profiler_, nullptr), expected);
  EXPECT_EQ(zelApplicationCreate(nullptr, &object), expected);
  EXPECT_EQ(zelApplicationCreate(&properties, nullptr), expected);
  EXPECT_EQ(zelApplicationCreateFromCallbacks(nullptr, &object), expected);
  EXPECT_EQ(zelApplicationCreateFromCallbacks(&callbacks, nullptr), expected);
  EXPECT_EQ(zelApplicationCreateFromCallbacks(&callbacks, &object), expected) << "without a function to read";
  EXPECT_EQ(zelProfilerObject(nullptr, &object), expected);
  EXPECT_EQ(zelProfilerObject(profiler_, nullptr), expected);
  EXPECT_EQ(zelStationCreate(nullptr, &object), expected);
  EXPECT_EQ(zelStationCreate(&kStation1, nullptr), expected);
  EXPECT_EQ(zelObjectInvoke(nullptr, "Title", ZEL_GET, nullptr, 0, nullptr), expected);
  EXPECT_TRUE(windows_->calls.empty());
}

TEST_F(CApiTest, AllowsReleasingNothing) {
  EXPECT_EQ(zelProfilerRelease(nullptr), ZEL_OK);
  EXPECT_EQ(zelObjectRelease(nullptr), ZEL_OK);
}

TEST_F(CApiTest, ReturnsAtOnceWithoutAGraphicalApplication) {
  int exitCode = 3;
  EXPECT_EQ(zelProfilerRun(&exitCode), ZEL_NO_EVENT_LOOP);
  EXPECT_EQ(zelProfilerRun(nullptr), ZEL_NO_EVENT_LOOP);
  EXPECT_EQ(exitCode, 3);
  EXPECT_EQ(zelProfilerProcessEvents(1000), ZEL_NO_EVENT_LOOP);
  EXPECT_EQ(zelProfilerProcessEvents(-1), ZEL_OUT_OF_RANGE);
}

TEST_F(CApiTest, NamesItsVersion) {
  EXPECT_TRUE(std::regex_match(zelProfilerVersion(), std::regex("[0-9]+\\.[0-9]+\\.[0-9]+")));
}

TEST_F(CApiTest, BindsAnApplicationOfFixedProperties) {
  zelObject* object = application();
  EXPECT_EQ(zelProfilerSetClientApp(profiler_, object), ZEL_OK);
  EXPECT_EQ(zelObjectRelease(object), ZEL_OK);
  EXPECT_EQ(component_.host().clientTitle(), "Host Planner");
  EXPECT_EQ(component_.host().clientText("HelpFile"), "");
  EXPECT_EQ(component_.host().clientText("Revision"), "6");
  EXPECT_EQ(zelProfilerSetClientApp(profiler_, nullptr), ZEL_OK);
  EXPECT_EQ(component_.host().clientTitle(), "Host Planner");
}

struct HostProgram {
  std::map<std::string, std::string> values;
  int released = 0;
};

const char* readProperty(void* context, const char* property) {
  const auto& values = static_cast<HostProgram*>(context)->values;
  const auto found = values.find(property);
  return found == values.end() ? nullptr : found->second.c_str();
}

void releaseProgram(void* context) { ++static_cast<HostProgram*>(context)->released; }

TEST_F(CApiTest, AsksAnApplicationOfCallbacksEachTime) {
  HostProgram program{{{"Title", "One"},
                       {"Path", folder_.path().string()},
                       {"Major", "12"},
                       {"Minor", "x"},
                       {"Revision", "99999999999"}}};
  const zelApplicationCallbacks callbacks{&program, readProperty, releaseProgram};
  zelObject* object = nullptr;
  ASSERT_EQ(zelApplicationCreateFromCallbacks(&callbacks, &object), ZEL_OK);
  EXPECT_EQ(zelProfilerSetClientApp(profiler_, object), ZEL_OK);
  EXPECT_EQ(component_.host().clientTitle(), "One");
  program.values["Title"] = "Two";
  EXPECT_EQ(component_.host().clientTitle(), "Two");
  EXPECT_EQ(component_.host().client()->get("major"), AutomationValue(12));

  zelValue value{};
  EXPECT_EQ(zelObjectInvoke(object, "HelpFile", ZEL_GET, nullptr, 0, &value), ZEL_MEMBER_NOT_FOUND);
  EXPECT_EQ(zelObjectInvoke(object, "Other", ZEL_GET, nullptr, 0, &value), ZEL_MEMBER_NOT_FOUND);
  EXPECT_EQ(zelObjectInvoke(object, "Minor", ZEL_GET, nullptr, 0, &value), ZEL_TYPE_MISMATCH);
  EXPECT_EQ(zelObjectInvoke(object, "Revision", ZEL_GET, nullptr, 0, &value), ZEL_OVERFLOW);
  value.kind = ZEL_TEXT;
  value.as.text = "new";
  EXPECT_EQ(zelObjectInvoke(object, "Title", ZEL_LET, &value, 1, nullptr), ZEL_WRONG_ACCESS);
  EXPECT_EQ(zelObjectInvoke(object, "Title", ZEL_GET, &value, 1, nullptr), ZEL_WRONG_ARGUMENT_COUNT);

  EXPECT_EQ(zelObjectRelease(object), ZEL_OK);
  EXPECT_EQ(program.released, 0) << "it is still bound";
  EXPECT_EQ(zelProfilerSetClientApp(profiler_, nullptr), ZEL_OK);
  component_.host().bind(nullptr);
  tools_->lastClient = nullptr;
  EXPECT_EQ(program.released, 1);
}

TEST_F(CApiTest, PassesNoFailureOfAMemberOn) {
  windows_->failAt = "show settings";
  EXPECT_EQ(zelProfilerShowOptionsForm(profiler_), ZEL_OK);
  EXPECT_EQ(dialogs_->messages.size(), 1U);
  windows_->failAt = "new form";
  auto* window = reinterpret_cast<zelObject*>(this);
  EXPECT_EQ(zelProfilerGetPForm(profiler_, &window), ZEL_OK);
  EXPECT_EQ(window, nullptr);
}

TEST_F(CApiTest, RefusesAnotherThreadWithAReason) {
  std::string reason;
  int create = ZEL_OK, read = ZEL_OK, release = ZEL_OK;
  std::thread([&] {
    zelProfiler* second = nullptr;
    create = zelProfilerCreate(&second);
    reason = zelProfilerLastError();
    EXPECT_EQ(second, nullptr);
    int16_t lines = 0;
    read = zelProfilerGetElevLines(profiler_, &lines);
    release = zelProfilerRelease(profiler_);
  }).join();
  EXPECT_EQ(create, ZEL_WRONG_THREAD);
  EXPECT_EQ(read, ZEL_WRONG_THREAD);
  EXPECT_EQ(release, ZEL_WRONG_THREAD);
  EXPECT_NE(reason, "");
}

TEST_F(CApiTest, UnloadsBothWindowsAtRelease) {
  zelProfiler* second = nullptr;
  ASSERT_EQ(zelProfilerCreate(&second), ZEL_OK);
  EXPECT_EQ(zelProfilerRelease(second), ZEL_OK);
  EXPECT_EQ(windows_->calls, (test::Journal{"unload settings", "unload profile"}));
}

TEST_F(CApiTest, UnloadsBothWindowsAtReleaseEvenWhileAnObjectOfTheProfilerIsAlive) {
  zelProfiler* second = nullptr;
  zelObject* control = nullptr;
  ASSERT_EQ(zelProfilerCreate(&second), ZEL_OK);
  ASSERT_EQ(zelProfilerObject(second, &control), ZEL_OK);
  ASSERT_EQ(zelProfilerShowMainForm(second, &kStation1, &kStation2), ZEL_OK);
  component_.state().settingsDialogLoaded = true;
  EXPECT_EQ(zelProfilerRelease(second), ZEL_OK);
  EXPECT_FALSE(component_.state().profileWindowLoaded);
  EXPECT_FALSE(component_.state().settingsDialogLoaded);
  zelValue lines{};
  EXPECT_EQ(zelObjectInvoke(control, "ElevLines", ZEL_GET, nullptr, 0, &lines), ZEL_OK) << "it lives on";
  EXPECT_EQ(zelObjectRelease(control), ZEL_OK);
}

TEST_F(CApiTest, ReleasesTheObjectOfAProfilerOnItsOwnThreadAlone) {
  zelObject* control = self();
  int release = ZEL_OK;
  std::thread([&] { release = zelObjectRelease(control); }).join();
  EXPECT_EQ(release, ZEL_WRONG_THREAD);
  zelValue lines{};
  EXPECT_EQ(zelObjectInvoke(control, "ElevLines", ZEL_GET, nullptr, 0, &lines), ZEL_OK)
      << "it is still there";
  EXPECT_EQ(zelObjectRelease(control), ZEL_OK);
}

TEST_F(CApiTest, MakesUsesAndReleasesApplicationsAndStationsOnAnyThread) {
  std::thread([&] {
    zelObject* station = nullptr;
    EXPECT_EQ(zelStationCreate(&kStation1, &station), ZEL_OK);
    zelValue latitude{};
    EXPECT_EQ(zelObjectInvoke(station, "Lat", ZEL_GET, nullptr, 0, &latitude), ZEL_OK);
    EXPECT_EQ(zelObjectRelease(station), ZEL_OK);
    EXPECT_EQ(zelObjectRelease(application()), ZEL_OK);
  }).join();
}

// ---- Late binding ----

zelValue int32Value(int32_t number) {
  zelValue value{};
  value.kind = ZEL_INT32;
  value.as.int32 = number;
  return value;
}

TEST_F(CApiTest, CarriesEveryKindOfValue) {
  zelObject* object = application();
  const auto roundTrip = [&](const zelValue& value) {
    zelValue result{};
    EXPECT_EQ(zelObjectInvoke(object, "Title", ZEL_LET, &value, 1, nullptr), ZEL_OK);
    EXPECT_EQ(zelObjectInvoke(object, "title", ZEL_GET, nullptr, 0, &result), ZEL_OK);
    EXPECT_EQ(result.kind, value.kind);
    return result;
  };
  zelValue value{};
  value.kind = ZEL_EMPTY;
  roundTrip(value);
  value.kind = ZEL_BOOLEAN;
  value.as.boolean = 5;
  EXPECT_EQ(roundTrip(value).as.boolean, 1);
  value.kind = ZEL_INT16;
  value.as.int16 = -7;
  EXPECT_EQ(roundTrip(value).as.int16, -7);
  EXPECT_EQ(roundTrip(int32Value(70000)).as.int32, 70000);
  value.kind = ZEL_FLOAT32;
  value.as.float32 = 1.5F;
  EXPECT_EQ(roundTrip(value).as.float32, 1.5F);
  value.kind = ZEL_FLOAT64;
  value.as.float64 = 2.25;
  EXPECT_EQ(roundTrip(value).as.float64, 2.25);
  value.kind = ZEL_TEXT;
  value.as.text = "H\u00f6he";
  EXPECT_STREQ(roundTrip(value).as.text, "H\u00f6he");
  value.kind = ZEL_OBJECT;
  value.as.object = nullptr;
  EXPECT_EQ(roundTrip(value).as.object, nullptr);
  zelObject* station = nullptr;
  ASSERT_EQ(zelStationCreate(&kStation1, &station), ZEL_OK);
  value.as.object = station;
  const zelValue held = roundTrip(value);
  zelValue latitude{};
  EXPECT_EQ(zelObjectInvoke(held.as.object, "Lat", ZEL_GET, nullptr, 0, &latitude), ZEL_OK);
  EXPECT_EQ(latitude.as.float64, 36.30);
  zelObjectRelease(held.as.object);
  zelObjectRelease(station);
  zelObjectRelease(object);
}

TEST_F(CApiTest, DrivesTheProfilerByName) {
  zelObject* control = self();
  const zelValue four = int32Value(4);
  EXPECT_EQ(zelObjectInvoke(control, "ElevLines", ZEL_LET, &four, 1, nullptr), ZEL_OK);
  EXPECT_EQ(component_.state().elevLines, 4);
  zelValue stations[2]{};
  for (zelValue& value : stations) {
    value.kind = ZEL_OBJECT;
    ASSERT_EQ(zelStationCreate(&kStation1, &value.as.object), ZEL_OK);
  }
  zelValue loss{};
  EXPECT_EQ(zelObjectInvoke(control, "GetPathLoss", ZEL_METHOD, stations, 2, &loss), ZEL_OK);
  EXPECT_EQ(loss.kind, ZEL_FLOAT32);
  EXPECT_EQ(loss.as.float32, 123.5F);
  for (const zelValue& value : stations) zelObjectRelease(value.as.object);
  zelObjectRelease(control);
}

TEST_F(CApiTest, GivesEachFailureOfLateBindingItsCodeAndReason) {
  zelObject* control = self();
  zelValue value = int32Value(70000);
  EXPECT_EQ(zelObjectInvoke(control, "ElevLines", ZEL_LET, &value, 1, nullptr), ZEL_OVERFLOW);
  EXPECT_STREQ(zelProfilerLastError(),
               "ElevLines, argument 1 (vNewValue): 70000 does not fit into a 16-bit integer");
  EXPECT_EQ(zelObjectInvoke(control, "Nothing", ZEL_GET, nullptr, 0, nullptr), ZEL_MEMBER_NOT_FOUND);
  EXPECT_EQ(zelObjectInvoke(control, "hWnd", ZEL_LET, &value, 1, nullptr), ZEL_WRONG_ACCESS);
  EXPECT_EQ(zelObjectInvoke(control, "hWnd", ZEL_GET, &value, 1, nullptr), ZEL_WRONG_ARGUMENT_COUNT);
  EXPECT_EQ(zelObjectInvoke(control, "OwnerName", ZEL_LET, &value, 1, nullptr), ZEL_TYPE_MISMATCH);
  EXPECT_EQ(zelObjectInvoke(control, "hWnd", 3, nullptr, 0, nullptr), ZEL_OUT_OF_RANGE);
  EXPECT_EQ(zelObjectInvoke(control, "hWnd", ZEL_GET, nullptr, 1, nullptr), ZEL_NULL_POINTER);
  value.kind = 99;
  EXPECT_EQ(zelObjectInvoke(control, "ElevLines", ZEL_LET, &value, 1, nullptr), ZEL_OUT_OF_RANGE);
  value.kind = ZEL_TEXT;
  value.as.text = nullptr;
  EXPECT_EQ(zelObjectInvoke(control, "OwnerName", ZEL_LET, &value, 1, nullptr), ZEL_NULL_POINTER);
  zelObjectRelease(control);
}

}  // namespace
}  // namespace zel
