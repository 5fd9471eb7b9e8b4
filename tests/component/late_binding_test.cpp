#include <gtest/gtest.h>

#include <array>
#include <string>

#include "component_fixture.h"
#include "zel/automation.h"

namespace zel {
namespace {

using test::kStation1;
using test::kStation2;

class LateBindingTest : public test::ComponentFixture {
 protected:
  template <typename Body>
  void expectError(AutomationErrorCode code, const std::string& text, Body&& body) {
    try {
      body();
      ADD_FAILURE() << "nothing was thrown: " << text;
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.code(), code);
      EXPECT_EQ(std::string(error.what()), text);
    }
  }

  ProfileControl control_;
};

TEST_F(LateBindingTest, ReachesEveryMemberByName) {
  control_.let("ElevLines", 4);
  EXPECT_EQ(control_.get("ElevLines"), AutomationValue(std::int16_t{4}));
  control_.call("ExportDataToCSV", {"a.csv"});
  control_.call("ExportITMToCSV", {"b.csv"});
  EXPECT_EQ(control_.get("OFrmLoaded"), AutomationValue(false));
  control_.let("OptionButtonVisible", true);
  EXPECT_EQ(control_.get("OptionButtonVisible"), AutomationValue(true));
  control_.let("OwnerName", "owner");
  EXPECT_NE(control_.get("PForm").toObject(), nullptr);
  EXPECT_EQ(control_.get("PFrmLoaded"), AutomationValue(false));
  control_.let("PrintDescription", "text");
  control_.let("PrintLandscape", true);
  EXPECT_EQ(control_.call("PrintProfile"), AutomationValue(false));
  control_.let("ProgName", "program");
  control_.let("RangeLines", 5);
  EXPECT_EQ(control_.get("RangeLines"), AutomationValue(std::int16_t{5}));
  control_.call("SetClientApp", {host_});
  EXPECT_EQ(component_.host().client(), host_);
  EXPECT_EQ(control_.call("GetPathLoss", {makeStation(kStation1), makeStation(kStation2)}),
            AutomationValue(123.5F));
  control_.call("ShowMainForm", {makeStation(kStation1), makeStation(kStation2)});
  EXPECT_EQ(control_.get("hWnd"), AutomationValue(77));
  control_.call("ShowOptionsForm");
  control_.let("StaDatum", 2);
  EXPECT_EQ(control_.get("StaDatum"), AutomationValue(2));
  control_.call("UnloadMainForm");
  EXPECT_EQ(windows_->calls, (test::Journal{"export data a.csv", "export loss b.csv", "new form",
                                            "show profile", "show settings", "unload profile"}));
  EXPECT_EQ(component_.state().ownerName, "owner");
  EXPECT_EQ(component_.state().progName, "program");
  EXPECT_EQ(component_.state().printDescription, "text");
  EXPECT_TRUE(component_.state().printLandscape);
}

TEST_F(LateBindingTest, FindsNamesWithoutRegardToCase) {
  control_.let("ELEVLINES", 3);
  EXPECT_EQ(control_.get("elevlines").toInt16(), 3);
  EXPECT_EQ(control_.dispatchId("hwnd"), control_.dispatchId("hWnd"));
}

TEST_F(LateBindingTest, BindsNothingForANullOrEmptyClient) {
  control_.call("SetClientApp", {AutomationValue()});
  control_.call("SetClientApp", {DispatchPtr()});
  EXPECT_EQ(component_.host().client(), ownApplication_);
}

TEST_F(LateBindingTest, TakesAStationFromAnyObjectWithItsProperties) {
  const DispatchPtr start = makePropertyBag({{"anTHt", std::int16_t{12}}, {"LON", -84}, {"lat", 36.5F}});
  control_.call("GetPathLoss", {start, makeStation(kStation2)});
  EXPECT_EQ(component_.state().station1, (GeoPoint{36.5, -84}));
  EXPECT_EQ(component_.state().antennaHeights[0], 12);
}

TEST_F(LateBindingTest, RefusesAMissingMember) {
  expectError(AutomationErrorCode::kMemberNotFound, "ProfileControl has no member Elev",
              [&] { control_.get("Elev"); });
  expectError(AutomationErrorCode::kMemberNotFound, "ProfileControl has no member ",
              [&] { control_.get(""); });
  expectError(AutomationErrorCode::kMemberNotFound, "ProfileControl has no member 0",
              [&] { control_.invoke(0, Access::kGet, {}); });
  expectError(AutomationErrorCode::kMemberNotFound, "ProfileControl has no member 2",
              [&] { control_.invoke(2, Access::kLet, {}); });
}

TEST_F(LateBindingTest, RefusesAMemberUsedInAnotherWayThanItHas) {
  expectError(AutomationErrorCode::kWrongAccess, "hWnd cannot be set", [&] { control_.let("hWnd", 1); });
  expectError(AutomationErrorCode::kWrongAccess, "OwnerName cannot be read",
              [&] { control_.get("OwnerName"); });
  expectError(AutomationErrorCode::kWrongAccess, "ElevLines is no method",
              [&] { control_.call("ElevLines"); });
  expectError(AutomationErrorCode::kWrongAccess, "PrintProfile cannot be read",
              [&] { control_.get("PrintProfile"); });
}

TEST_F(LateBindingTest, RefusesAWrongNumberOfArguments) {
  expectError(AutomationErrorCode::kWrongArgumentCount, "GetPathLoss takes 2 arguments, not 1",
              [&] { control_.call("GetPathLoss", {makeStation(kStation1)}); });
  expectError(AutomationErrorCode::kWrongArgumentCount, "UnloadMainForm takes 0 arguments, not 1",
              [&] { control_.call("UnloadMainForm", {1}); });
  expectError(AutomationErrorCode::kWrongArgumentCount, "ElevLines takes 1 arguments, not 0",
              [&] { control_.invoke(1, Access::kLet, {}); });
}

TEST_F(LateBindingTest, RefusesAValueOfAWrongKindAndNamesTheArgument) {
  expectError(AutomationErrorCode::kTypeMismatch,
              "ElevLines, argument 1 (vNewValue): a text cannot stand for a 16-bit integer",
              [&] { control_.let("ElevLines", "3"); });
  expectError(AutomationErrorCode::kTypeMismatch,
              "OwnerName, argument 1 (vNewValue): a 32-bit integer cannot stand for a text",
              [&] { control_.let("OwnerName", 3); });
  expectError(AutomationErrorCode::kTypeMismatch,
              "SetClientApp, argument 1 (ClientApp): a text cannot stand for an object",
              [&] { control_.call("SetClientApp", {"host"}); });
  expectError(AutomationErrorCode::kTypeMismatch,
              "GetPathLoss, argument 2 (Sta2): nothing cannot stand for a station (an object with Lat, Lon "
              "and AntHt)",
              [&] {
                control_.call("GetPathLoss", {makeStation(kStation1), AutomationValue()});
              });
}

TEST_F(LateBindingTest, NeverWrapsAValueThatDoesNotFit) {
  control_.let("ElevLines", 5);
  expectError(AutomationErrorCode::kOverflow,
              "ElevLines, argument 1 (vNewValue): 70000 does not fit into a 16-bit integer",
              [&] { control_.let("ElevLines", 70000); });
  expectError(AutomationErrorCode::kOverflow,
              "StaDatum, argument 1 (vNewValue): 3e+09 does not fit into a 32-bit integer",
              [&] { control_.let("StaDatum", 3e9); });
  EXPECT_EQ(control_.get_ElevLines(), 5);
  control_.let("ElevLines", 6.5);
  EXPECT_EQ(control_.get_ElevLines(), 6) << "halves round to the even number";
}

TEST_F(LateBindingTest, RefusesAnIncompleteStationAndNamesItsProperty) {
  const DispatchPtr incomplete = makePropertyBag({{"Lat", 1.0}, {"Lon", 2.0}});
  expectError(AutomationErrorCode::kMemberNotFound,
              "ShowMainForm, argument 1 (Sta1): AntHt: there is no property AntHt", [&] {
                control_.call("ShowMainForm", {incomplete, makeStation(kStation2)});
              });
  const DispatchPtr wrong = makePropertyBag({{"Lat", "36"}, {"Lon", 2.0}, {"AntHt", 1}});
  expectError(AutomationErrorCode::kTypeMismatch,
              "ShowMainForm, argument 2 (Sta2): Lat: a text cannot stand for a 64-bit float", [&] {
                control_.call("ShowMainForm", {makeStation(kStation1), wrong});
              });
  EXPECT_TRUE(windows_->calls.empty());
  EXPECT_EQ(component_.state().station1, GeoPoint());
}

TEST_F(LateBindingTest, TrapsAnAntennaHeightBeyond16BitsAsEarlyBindingDoes) {
  EXPECT_EQ(control_.call("GetPathLoss", {makeStation({0, 0, 40000}), makeStation(kStation2)}),
            AutomationValue(0.0F));
  EXPECT_EQ(dialogs_->messages.size(), 1U);
}

}  // namespace
}  // namespace zel
