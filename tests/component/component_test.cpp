#include "component/component.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <thread>
#include <vector>

#include "component_fixture.h"
#include "profile/settings/settings_table.h"

namespace zel {
namespace {

class CountedShift final : public DatumShift {
 public:
  GeoPoint toNad83(GeoPoint nad27) const override {
    ++shifts;
    return nad27;
  }
  DatumOperation operationAt(GeoPoint) const override { return {"counted", 1, false}; }
  mutable int shifts = 0;
};

class NamedFormatter final : public CoordinateFormatter {
 public:
  void SetFormat(std::string_view format) override { format_ = std::string(format); }
  std::string LatitudeText(double) const override { return format_; }
  std::string LongitudeText(double) const override { return format_; }

 private:
  std::string format_;
};

class ComponentTest : public test::ComponentFixture {};

TEST_F(ComponentTest, IsTheOneThatATestHasPutInThePlaceOfTheProcesssOwn) {
  EXPECT_EQ(&Component::instance(), &component_);
  {
    Component other(services());
    ComponentSubstitute substitute(other);
    EXPECT_EQ(&Component::instance(), &other);
  }
  EXPECT_EQ(&Component::instance(), &component_);
}

TEST_F(ComponentTest, RefusesToolObjectsThatItWasMadeWithout) {
  component_.bindOwnApplication();
  const auto numberOf = [](auto body) {
    try {
      body();
    } catch (const RuntimeError& error) {
      return error.number();
    }
    return 0;
  };
  EXPECT_EQ(numberOf([&] { component_.geodesy(); }), 91);
  EXPECT_EQ(numberOf([&] { component_.terrain(); }), 91);
  EXPECT_EQ(numberOf([&] { component_.makeSampler(); }), 91);
  EXPECT_EQ(numberOf([&] { component_.makeCoordinateFormatter(); }), 91);
  EXPECT_EQ(numberOf([&] { component_.datumShift(); }), 91);
  EXPECT_EQ(numberOf([&] { component_.windowlessLoss(); }), 91);
}

TEST_F(ComponentTest, HandsTheCoordinateFormatterTheToolApplicationsFormat) {
  ComponentServices services = this->services();
  services.makeCoordinateFormatter = [] { return std::make_unique<NamedFormatter>(); };
  Component component(services);
  tools_->secondText = "DD";
  component.bindClient(host_);
  component.host().Refresh();
  EXPECT_EQ(component.makeCoordinateFormatter()->LatitudeText(0), "DD");
}

TEST_F(ComponentTest, ReadsSettingsOfThisRunBeforeStoredOnesUnderTheCurrentTitle) {
  component_.bindClient(host_);
  store_->values[{"Host Planner", "Profile", "Prf_Ele"}] = "7";
  const SettingsReader reader = component_.settingsReader();
  EXPECT_EQ(reader.int16(settings::kPrfEle, SettingsUser::kDrawing), 7);
  component_.settings().overlay("Profile", "Prf_Ele", "9");
  EXPECT_EQ(reader.int16(settings::kPrfEle, SettingsUser::kDrawing), 9);
  EXPECT_EQ(component_.host().ReadSetting("Profile", "Prf_Ele", ""), "9");
  host_->let("Title", "Other");
  store_->values[{"Other", "Profile", "Prf_Rng"}] = "4";
  EXPECT_EQ(component_.host().ReadSetting("Profile", "Prf_Rng", ""), "4");
}

TEST_F(ComponentTest, MakesTheTerrainOnceWithTheCacheAndSourcesOfTheSettings) {
  store_->values[{"Host Planner", "Terrain", "Source2"}] = "/srtm;/more";
  store_->values[{"Host Planner", "Terrain", "CacheMB"}] = "16";
  int made = 0;
  std::size_t bytes = 0;
  TerrainLibrary::Definitions definitions;
  ComponentServices services = this->services();
  services.makeTerrain = [&](TerrainLibrary::Definitions given, std::size_t cacheBytes) {
    ++made;
    bytes = cacheBytes;
    definitions = given;
    return std::make_shared<TerrainLibrary>(std::move(given), cacheBytes);
  };
  Component component(services);
  component.bindClient(host_);
  const auto terrain = component.terrain();
  EXPECT_EQ(component.terrain(), terrain);
  EXPECT_EQ(made, 1);
  EXPECT_EQ(bytes, 16U * 1024 * 1024);
  EXPECT_EQ(definitions(2).paths, (std::vector<std::string>{"/srtm", "/more"}));
  EXPECT_EQ(definitions(3).paths, std::vector<std::string>{"/bundled"});
  EXPECT_TRUE(definitions(3).bundledSample);
}

// A block takes about 1 MiB: with less than a few of them nothing would be kept.
TEST_F(ComponentTest, GivesTheTerrainACacheOf8MiBAtLeast) {
  for (const auto& [setting, expected] : {std::pair{"1", 8U}, {"7", 8U}, {"8", 8U}, {"9", 9U}}) {
    store_->values[{"Host Planner", "Terrain", "CacheMB"}] = setting;
    std::size_t bytes = 0;
    ComponentServices services = this->services();
    services.makeTerrain = [&](TerrainLibrary::Definitions given, std::size_t cacheBytes) {
      bytes = cacheBytes;
      return std::make_shared<TerrainLibrary>(std::move(given), cacheBytes);
    };
    Component component(services);
    component.bindClient(host_);
    component.terrain();
    EXPECT_EQ(bytes, std::size_t{expected} * 1024 * 1024) << setting;
  }
}

TEST_F(ComponentTest, MakesTheTerrainOnceForThreadsThatAskTogether) {
  std::atomic<int> made = 0;
  ComponentServices services = this->services();
  services.makeTerrain = [&](TerrainLibrary::Definitions given, std::size_t cacheBytes) {
    ++made;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return std::make_shared<TerrainLibrary>(std::move(given), cacheBytes);
  };
  Component component(services);
  component.bindClient(host_);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back([&] { component.terrain(); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(made, 1);
}

TEST(OwnerThread, LetsAnyThreadInUntilItHasAUserAndThenOnlyTheirs) {
  OwnerThread owner;
  const auto codeElsewhere = [&] {
    std::optional<AutomationErrorCode> code;
    std::thread([&] {
      try {
        owner.checkIfOwned();
      } catch (const AutomationError& error) {
        code = error.code();
      }
    }).join();
    return code;
  };
  EXPECT_NO_THROW(owner.checkIfOwned());
  EXPECT_EQ(codeElsewhere(), std::nullopt);
  owner.enter();
  EXPECT_NO_THROW(owner.checkIfOwned());
  EXPECT_EQ(codeElsewhere(), AutomationErrorCode::kWrongThread);
  owner.leave();
  EXPECT_EQ(codeElsewhere(), std::nullopt);
}

TEST_F(ComponentTest, ReadsTerrainAtTheShiftedPositionOnlyWhileTheHostsDatumIsNad27) {
  auto shift = std::make_shared<CountedShift>();
  ComponentServices services = this->services();
  services.bundledTerrain = std::string(ZEL_SOURCE_DIR) + "/data/terrain";
  services.makeDatumShift = [shift] { return shift; };
  services.makeTerrain = [](TerrainLibrary::Definitions definitions, std::size_t cacheBytes) {
    return std::make_shared<TerrainLibrary>(std::move(definitions), cacheBytes);
  };
  Component component(services);
  component.bindClient(host_);
  const auto shiftsOfASampling = [&] {
    shift->shifts = 0;
    SampleRequest request;
    request.from = {36.30, -84.30};
    request.to = {36.35, -84.25};
    request.count = 3;
    component.terrain()->sample(request);
    return shift->shifts;
  };
  EXPECT_EQ(shiftsOfASampling(), 0) << "before it is set";
  component.setStationDatum(0);
  EXPECT_GT(shiftsOfASampling(), 0);
  component.setStationDatum(2);
  EXPECT_EQ(shiftsOfASampling(), 0);
}

TEST_F(ComponentTest, ShiftsTerrainThatIsMadeAfterTheDatumWasSet) {
  auto shift = std::make_shared<CountedShift>();
  ComponentServices services = this->services();
  services.makeDatumShift = [shift] { return shift; };
  services.makeTerrain = [](TerrainLibrary::Definitions definitions, std::size_t cacheBytes) {
    return std::make_shared<TerrainLibrary>(std::move(definitions), cacheBytes);
  };
  services.bundledTerrain = std::string(ZEL_SOURCE_DIR) + "/data/terrain";
  Component component(services);
  component.bindClient(host_);
  component.setStationDatum(0);
  SampleRequest request;
  request.from = {36.30, -84.30};
  request.to = {36.35, -84.25};
  request.count = 3;
  component.terrain()->sample(request);
  EXPECT_GT(shift->shifts, 0);
}

}  // namespace
}  // namespace zel
