// Failures inside the window's procedures: each is trapped under its own name and step, and what is left
// afterwards. Settings, geodesy, terrain, texts and tools fail where the test says.
#include <QPointer>

#include "window_fixture.h"

namespace zel {
namespace {

// Passes to the real store what is not told to fail, and notes what is read.
class FailingStore final : public SettingsStore {
 public:
  explicit FailingStore(std::shared_ptr<SettingsStore> store) : store_(std::move(store)) {}
  std::string ReadSetting(std::string_view application, std::string_view section, std::string_view key,
                          std::string_view defaultText) const override {
    reads.emplace_back(key);
    if (key == failing && passes-- <= 0) throw RuntimeError::permissionDenied();
    return store_->ReadSetting(application, section, key, defaultText);
  }
  void WriteSetting(std::string_view application, std::string_view section, std::string_view key,
                    std::string_view value) override {
    if (key == failing) throw RuntimeError::permissionDenied();
    store_->WriteSetting(application, section, key, value);
  }
  std::vector<StoredSetting> AllSettings(std::string_view application) const override {
    return store_->AllSettings(application);
  }

  std::string failing;     // key
  mutable int passes = 0;  // reads of it that pass first
  mutable std::vector<std::string> reads;

 private:
  std::shared_ptr<SettingsStore> store_;
};

struct Failures {
  std::string at;  // which service
  void check(std::string_view service) const {
    if (at == service) throw RuntimeError::permissionDenied();
  }
};

class FailingGeodesy final : public Geodesy {
 public:
  FailingGeodesy(std::shared_ptr<const Geodesy> geodesy, const Failures& failures)
      : geodesy_(std::move(geodesy)), failures_(failures) {}
  DistanceAzimuth DistanceAndBearing(GeoPoint from, GeoPoint to) const override {
    failures_.check("distance");
    return geodesy_->DistanceAndBearing(from, to);
  }
  GeoPoint PointAtDistance(GeoPoint from, double distance, double azimuth) const override {
    failures_.check("point");
    return geodesy_->PointAtDistance(from, distance, azimuth);
  }
  GeoPoint PointOnPath(GeoPoint start, GeoPoint end, double distance) const override {
    failures_.check("marker position");
    return geodesy_->PointOnPath(start, end, distance);
  }

 private:
  std::shared_ptr<const Geodesy> geodesy_;
  const Failures& failures_;
};

class FailingFormatter final : public CoordinateFormatter {
 public:
  explicit FailingFormatter(const Failures& failures) : failures_(failures) {}
  void SetFormat(std::string_view) override {}
  std::string LatitudeText(double degrees) const override {
    failures_.check(degrees > 36.3 ? "start text" : "end text");
    return "lat";
  }
  std::string LongitudeText(double) const override { return "lon"; }

 private:
  const Failures& failures_;
};

class FailingPlacement final : public WindowPlacement {
 public:
  explicit FailingPlacement(const Failures& failures) : failures_(failures) {}
  void SetClientApp(const DispatchPtr&) override {}
  void Restore(std::string_view, std::int32_t&, std::int32_t&) override { failures_.check("restore"); }
  void Store(std::string_view, std::int32_t&, std::int32_t&) override { failures_.check("store"); }

 private:
  const Failures& failures_;
};

class FailingLinkBudget final : public LinkBudgetTool {
 public:
  explicit FailingLinkBudget(const Failures& failures) : failures_(failures) {}
  void SetClientApp(const DispatchPtr&) override { failures_.check("link budget client"); }
  void Open(std::string_view) override { failures_.check("link budget"); }

 private:
  const Failures& failures_;
};

class FailingPointer final : public Pointer {
 public:
  explicit FailingPointer(const Failures& failures) : failures_(failures) {}
  void set(PointerShape shape) override {
    if (shape == PointerShape::kHourglass) failures_.check("pointer");
  }

 private:
  const Failures& failures_;
};

class TrapsTest : public test::WindowTest {
 protected:
  TrapsTest() { failingControl_.SetClientApp(component_.host().client()); }

  ComponentServices failingServices() {
    ComponentServices all = services();
    all.settings = failingStore_;
    all.pointer = std::make_shared<FailingPointer>(failures_);
    all.geodesy = std::make_shared<FailingGeodesy>(all.geodesy, failures_);
    all.makeCoordinateFormatter = [this] {
      failures_.check("formatter");
      return std::make_unique<FailingFormatter>(failures_);
    };
    const auto makeSampler = all.makeSampler;
    all.makeSampler = [this, makeSampler] {
      failures_.check("sampler");
      return makeSampler();
    };
    const auto tools = all.tools;
    all.tools = [this, tools](const std::shared_ptr<SettingsStore>& store) {
      ToolFactory factory = tools(store);
      factory.windowPlacement = [this] { return std::make_unique<FailingPlacement>(failures_); };
      factory.linkBudgetTool = [this] { return std::make_unique<FailingLinkBudget>(failures_); };
      return factory;
    };
    return all;
  }
  void show() {
    failingControl_.ShowMainForm(test::kRidgeStart, test::kRidgeEnd);
    settle();
  }
  // One entry of the log at most names a place more than is expected.
  std::string loggedPlaces() const {
    std::string places;
    const std::string log = logged();
    for (std::size_t at = log.find("\r\nfrmProfile:"); at != std::string::npos;
         at = log.find("\r\nfrmProfile:", at + 1)) {
      const std::size_t begin = at + 12;
      if (!places.empty()) places += ' ';
      places += log.substr(begin, log.find("\r\n", begin) - begin);
    }
    return places;
  }
  void forgetLog() const { test::writeBytes(folder_ / "zelErrorLog.txt", ""); }
  bool failed() { return failing_.state().bProfileFailed; }

  Failures failures_;
  std::shared_ptr<FailingStore> failingStore_ = std::make_shared<FailingStore>(store_);
  Component failing_{failingServices()};
  ComponentSubstitute failingSubstitute_{failing_};
  ProfileControl failingControl_;
};

TEST_F(TrapsTest, AFailedLoadIsToldUnderItsProcedureAndLeavesNoWindow) {
  struct Case {
    const char* service;
    const char* setting;
    int passes;
    const char* places;
  };
  const Case cases[] = {
      {"sampler", "", 0, ":Form_Load:1"},
      {"formatter", "", 0, ":Form_Load:1"},
      {"link budget client", "", 0, ":Form_Load:2"},
      {"", "Prf_Per", 0, ":Form_Load:4"},
      {"", "DispUnits", 0, ":InitFromRegistry:0"},
      {"", "Prf_Frez", 0, ":InitFromRegistry:0"},
      {"distance", "", 0, ":DoPreCalc:0"},
      {"", "Prf_Per", 1, ":DoPreCalc:2"},
      {"point", "", 0, ":DoPreCalc:3"},
      {"pointer", "", 0, ":drawLine:0"},
      {"", "Prf_Ele", 0, ":drawRangeAndHeight:0"},
      {"", "cElevation", 0, ":drawRangeAndHeight:1"},
      {"", "Prf_Rng", 0, ":drawRangeAndHeight:2"},
      {"", "cRange", 0, ":drawRangeAndHeight:3"},
      {"", "cLOS", 0, ":drawFresnel1:0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.service) + c.setting + " " + c.places);
    failures_.at = {};
    failingStore_->failing.clear();
    failingControl_.SetClientApp(component_.host().client());
    forgetLog();
    dialogs_->messages.clear();
    failures_.at = c.service;
    failingStore_->failing = c.setting;
    failingStore_->passes = c.passes;
    show();
    EXPECT_EQ(loggedPlaces(), c.places) << logged();
    EXPECT_EQ(dialogs_->messages.size(), 1U);
    EXPECT_TRUE(failed());
    EXPECT_EQ(window(), nullptr);
    EXPECT_FALSE(failingControl_.get_PFrmLoaded());
    EXPECT_EQ(failingControl_.get_hWnd(), 0);
  }
  failures_.at = {};
  failingStore_->failing.clear();
  show();
  ASSERT_NE(window(), nullptr);
  EXPECT_FALSE(failed()) << "and the next path shows";
}

TEST_F(TrapsTest, AFailureThatDoesNotConcernTheProfileIsToldAndTheWindowShows) {
  struct Case {
    const char* service;
    const char* setting;
    const char* places;
  };
  const Case cases[] = {
      {"start text", "", ":SetStartEndPointLabels:0"},
      {"end text", "", ":SetStartEndPointLabels:1"},
      {"restore", "", ":Form_Load:0"},
      {"", "dSurfRef", ":InitITM:0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.places);
    forgetLog();
    failures_.at = c.service;
    failingStore_->failing = c.setting;
    show();
    EXPECT_EQ(loggedPlaces(), c.places) << logged();
    ASSERT_NE(window(), nullptr);
    EXPECT_TRUE(window()->isVisible());
    EXPECT_FALSE(failed());
    failures_.at = {};
    failingStore_->failing.clear();
    failingControl_.UnloadMainForm();
    settle();
  }
}

TEST_F(TrapsTest, AFailureInAnOpenWindowIsToldUnderItsProcedureAndTheWindowStays) {
  show();
  ASSERT_NE(window(), nullptr);
  struct Case {
    const char* service;
    const char* setting;
    std::function<void()> act;
    const char* places;
  };
  const Case cases[] = {
      {"link budget", "", [this] { item("mnuProfileLinkBudget").trigger(); },
       ":mnuProfileLinkBudget_Click:1"},
      {"", "cLRMarker", [this] { clickPlot(5); }, ":Picture1_MouseDown:0"},
      {"", "cStrobe", [this] { pointAt(7); }, ":Picture1_MouseMove:0"},
      {"pointer", "", [this] { control<QSlider>("Slider1").setValue(200); }, ":drawLine:0"},
      {"pointer", "", [this] { window()->Form_GotFocus(); }, ":drawLine:0"},
      {"", "Prf_Rng", [this] { click("optFresnel(1)"); }, ":drawRangeAndHeight:2"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.places);
    forgetLog();
    failures_.at = c.service;
    failingStore_->failing = c.setting;
    c.act();
    EXPECT_EQ(loggedPlaces(), c.places) << logged();
    failures_.at = {};
    failingStore_->failing.clear();
    ASSERT_NE(window(), nullptr);
    EXPECT_TRUE(window()->isVisible());
  }
  EXPECT_EQ(dialogs_->messages.size(), std::size(cases));
}

TEST_F(TrapsTest, AFailedUnloadIsToldAndTheWindowIsGone) {
  show();
  failures_.at = "store";
  failingControl_.UnloadMainForm();
  settle();
  EXPECT_EQ(loggedPlaces(), ":Form_Unload:0");
  EXPECT_EQ(window(), nullptr);
  EXPECT_FALSE(failingControl_.get_PFrmLoaded());
}

// The outer unload took the flags of the window that its box had shown.
TEST_F(TrapsTest, AWindowThatIsShownInTheBoxOfAFailedUnloadStands) {
  show();
  const QPointer<FrmProfile> first(window());
  failures_.at = "store";
  dialogs_->onMessage = [this](const MessageBoxRequest&) {
    dialogs_->onMessage = nullptr;
    failures_.at = {};
    show();
  };
  first->unload();
  settle();
  EXPECT_EQ(dialogs_->messages.size(), 1U);
  EXPECT_TRUE(first.isNull());
  ASSERT_NE(window(), nullptr);
  EXPECT_TRUE(window()->isVisible());
  EXPECT_TRUE(failingControl_.get_PFrmLoaded());
  EXPECT_NE(failingControl_.get_hWnd(), 0);
}

TEST_F(TrapsTest, AFailedDrawingSetsTheFlagAndTheNextOneDrawsAgain) {
  show();
  const QImage before = picture();
  failures_.at = "pointer";
  click("optFresnel(3)");
  EXPECT_TRUE(failed());
  EXPECT_FALSE(window()->state().flags.profileError);
  EXPECT_EQ(picture(), before);
  failures_.at = {};
  click("optFresnel(1)");
  EXPECT_NE(picture(), before);
}

TEST_F(TrapsTest, TheSettingsAreReadInTheOrderOfTheLoad) {
  failingStore_->reads.clear();
  StationProfile_Type start = test::kRidgeStart;
  StationProfile_Type end = test::kRidgeEnd;
  start.AntHt = end.AntHt = -1;
  failingControl_.ShowMainForm(start, end);
  const std::vector<std::string>& reads = failingStore_->reads;
  const auto from = std::find(reads.begin(), reads.end(), "Prf_Per");
  const std::vector<std::string> expected{"Prf_Per", "Prf_Max",  "DispUnits", "CalcMethod", "Prf_HtL",
                                          "Prf_HtR", "Prf_TRes", "Prf_Crv",   "Prf_Freq",   "Prf_Frez"};
  ASSERT_GE(reads.end() - from, static_cast<std::ptrdiff_t>(expected.size()));
  EXPECT_EQ(std::vector<std::string>(from, from + static_cast<std::ptrdiff_t>(expected.size())), expected);
}

}  // namespace
}  // namespace zel
