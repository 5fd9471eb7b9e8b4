// Drives the profiler early-bound and late-bound, with no toolkit of its own.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "zel/automation.h"
#include "zel/path_loss.h"
#include "zel/profile_control.h"
#include "zel/terrain.h"

namespace {

void require(bool condition, const char* what) {
  if (condition) return;
  std::cerr << "failed: " << what << "\n";
  std::exit(1);
}

// A host's own application object.
class Application final : public zel::Dispatch {
 public:
  explicit Application(std::string folder) : folder_(std::move(folder)) {}

  std::int32_t dispatchId(std::string_view name) const override {
    for (std::int32_t id = 0; id < 7; ++id)
      if (kNames[id] == name) return id + 1;
    throw zel::AutomationError(zel::AutomationErrorCode::kMemberNotFound, std::string(name));
  }
  zel::AutomationValue invoke(std::int32_t id, zel::Access, std::span<const zel::AutomationValue>) override {
    ++reads;
    switch (id) {
      case 1:
        return "Consumer";
      case 2:
        return folder_;
      case 3:
        return "Consumer";
      case 4:
        return "";
      default:
        return std::int32_t{id};
    }
  }

  int reads = 0;

 private:
  static constexpr std::string_view kNames[] = {"Title", "Path",  "ProductName", "HelpFile",
                                                "Major", "Minor", "Revision"};
  std::string folder_;
};

// Outlives main and, made later, the library's own static objects.
std::unique_ptr<zel::ProfileControl> globalProfiler;

}  // namespace

int main(int, char** argv) {
  const auto application = std::make_shared<Application>(argv[1] == nullptr ? "." : argv[1]);
  const StationProfile_Type sta1{36.30, -84.30, 30.4F};
  const StationProfile_Type sta2{36.35, -84.25, 20.0F};

  zel::ProfileControl profiler;
  profiler.SetClientApp(application);
  require(application->reads > 0, "the application's properties are read");
  require(profiler.get_OptionButtonVisible(), "the option button is shown after the binding");
  profiler.let_StaDatum(2);
  require(profiler.get_StaDatum() == 2, "the datum code is kept");
  require(!profiler.PrintProfile(), "PrintProfile returns false");
  require(!profiler.get_PFrmLoaded() && profiler.get_hWnd() == 0, "no window is loaded");

  zel::_ProfileControl& interface = profiler;
  interface.let("ElevLines", 4);
  require(interface.get("elevlines").toInt16() == 4, "late binding finds members in any case");
  try {
    interface.let("ElevLines", 70000);
    require(false, "70000 fits into no 16-bit integer");
  } catch (const zel::AutomationError& error) {
    require(error.code() == zel::AutomationErrorCode::kOverflow, "the error crosses the library's boundary");
  }
  const unsigned long lines = 5;
  interface.let("RangeLines", lines);
  require(profiler.get_RangeLines() == 5, "an integer of any type is taken");
  interface.call("SetClientApp", {application});
  interface.call("SetClientApp", {nullptr});
  require(zel::makePropertyBag({{"Host", application}})->get("Host").toObject() == application,
          "an object is taken by the pointer that the host has");
  zel::ProfileControl second;
  require(second.get_ElevLines() == 4, "both objects share one state");

  const float loss = profiler.GetPathLoss(sta1, sta2);
  const float late =
      profiler.call("GetPathLoss", {zel::makeStation(sta1), zel::makeStation(sta2)}).toFloat32();
  require(loss == late, "both ways of calling give the same loss");
  // 7.2 km at 100 MHz, the frequency when none is stored: free space alone is 89.5 dB.
  require(loss > 85 && loss < 200, "the loss is that of a path of some kilometres");
  const zel::PathLoss both =
      zel::computePathLoss({{sta1.Lat, sta1.Lon}, {sta2.Lat, sta2.Lon}, 30.0, 20.0, 100.0});
  require(both.status == 0 && both.modeledDb && *both.modeledDb == static_cast<double>(loss),
          "the function gives the loss of the class");
  profiler.UnloadMainForm();

  const zel::SampledTerrain terrain =
      zel::sampleTerrain({sta1.Lat, sta1.Lon}, {sta2.Lat, sta2.Lon}, 11, 0, 3);
  require(terrain.status == 0 && terrain.elevations.size() == 11, "the installed sample terrain is found");
  require(terrain.provenance.bundledSample, "the sample terrain says that it stands in");

  globalProfiler = std::make_unique<zel::ProfileControl>();
  std::cout << "consumer: loss " << loss << " dB\n";
  return 0;
}
