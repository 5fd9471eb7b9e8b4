// The terrain profiler's one creatable class. A host needs nothing else:
//
//   zel::ProfileControl profiler;
//   profiler.SetClientApp(application);  // settings under its Title, the log in its Path
//   profiler.ShowMainForm({36.30, -84.20, 30}, {36.40, -84.10, 30});
//
// Every member may be called early-bound, as below, or by its name through Dispatch. The state behind the
// class is one for the process: all ProfileControl objects see and change the same values, and there is one
// profile window and one settings dialog. The class belongs to one thread, the one that made the first object
// that is alive; called from another it throws AutomationError kWrongThread. A failure inside a member is
// shown, logged to zelErrorLog.txt in the application's Path and not passed on: the member returns 0, False
// or nothing.
#ifndef ZEL_PROFILE_CONTROL_H_
#define ZEL_PROFILE_CONTROL_H_

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "zel/automation.h"
#include "zel/export.h"
#include "zel/station_profile.h"

namespace zel {

// The interface; the order of its members is binding for hosts that are bound early.
class ZEL_API _ProfileControl : public Dispatch {  // NOLINT(bugprone-reserved-identifier): the published name
 public:
  // Number of horizontal (elevation) reference lines.
  virtual std::int16_t get_ElevLines() = 0;
  virtual void let_ElevLines(std::int16_t vNewValue) = 0;
  // Write the height profile, or the end-of-path loss table, as CSV: of the profile window as it is, or
  // without one of the stations and heights given last; then no window and no graphical application is made.
  // A path that cannot be profiled is told in a box, and writes nothing. Nothing happens for a name under 5
  // characters.
  virtual void ExportDataToCSV(const std::string& outfile) = 0;
  virtual void ExportITMToCSV(const std::string& outfile) = 0;
  // Whether the settings dialog is loaded.
  virtual bool get_OFrmLoaded() = 0;
  // Whether the profile window offers its settings; SetClientApp sets it to true.
  virtual bool get_OptionButtonVisible() = 0;
  virtual void let_OptionButtonVisible(bool vNewValue) = 0;
  virtual void let_OwnerName(const std::string& vNewValue) = 0;
  // A new profile window of its own, apart from the one that ShowMainForm shows.
  virtual DispatchPtr get_PForm() = 0;
  // Whether the profile window is loaded.
  virtual bool get_PFrmLoaded() = 0;
  // The description on the printed page.
  virtual void let_PrintDescription(const std::string& vNewValue) = 0;
  virtual void let_PrintLandscape(bool vNewValue) = 0;
  // Does nothing and returns false; printing starts from the window's menu.
  virtual bool PrintProfile() = 0;
  virtual void let_ProgName(const std::string& vNewValue) = 0;
  // Number of vertical (range) reference lines.
  virtual std::int16_t get_RangeLines() = 0;
  virtual void let_RangeLines(std::int16_t vNewValue) = 0;
  // Binds the component to the host. Read by name when needed: Title, Path, ProductName, HelpFile, Major,
  // Minor, Revision. The component keeps the object at least until another is bound, and may keep it
  // for the rest of the process, whatever happens to the ProfileControl objects; at the end of the process it
  // is not released.
  virtual void SetClientApp(const DispatchPtr& ClientApp) = 0;
  // Modeled (Longley-Rice) path loss between the stations in dB; 0 when it cannot be computed.
  virtual float GetPathLoss(const StationProfile_Type& Sta1, const StationProfile_Type& Sta2) = 0;
  // Opens the profile window for the path and returns; a window that was open is closed first.
  virtual void ShowMainForm(const StationProfile_Type& Sta1, const StationProfile_Type& Sta2) = 0;
  // Shows the settings dialog and returns when it is closed.
  virtual void ShowOptionsForm() = 0;
  // Datum of the stations: 0 is NAD-27, any other code NAD-83.
  virtual std::int32_t get_StaDatum() = 0;
  virtual void let_StaDatum(std::int32_t vNewValue) = 0;
  // Unloads the profile window if it is loaded, then the settings dialog if it is loaded.
  virtual void UnloadMainForm() = 0;
  // Native handle of the loaded profile window (its low 32 bits), 0 when there is none.
  virtual std::int32_t get_hWnd() = 0;
};

class ZEL_API ProfileControl final : public _ProfileControl {
 public:
  ProfileControl();
  ~ProfileControl() override;

  std::int32_t dispatchId(std::string_view name) const override;
  AutomationValue invoke(std::int32_t id, Access access, std::span<const AutomationValue> arguments) override;

  std::int16_t get_ElevLines() override;
  void let_ElevLines(std::int16_t vNewValue) override;
  void ExportDataToCSV(const std::string& outfile) override;
  void ExportITMToCSV(const std::string& outfile) override;
  bool get_OFrmLoaded() override;
  bool get_OptionButtonVisible() override;
  void let_OptionButtonVisible(bool vNewValue) override;
  void let_OwnerName(const std::string& vNewValue) override;
  DispatchPtr get_PForm() override;
  bool get_PFrmLoaded() override;
  void let_PrintDescription(const std::string& vNewValue) override;
  void let_PrintLandscape(bool vNewValue) override;
  bool PrintProfile() override;
  void let_ProgName(const std::string& vNewValue) override;
  std::int16_t get_RangeLines() override;
  void let_RangeLines(std::int16_t vNewValue) override;
  void SetClientApp(const DispatchPtr& ClientApp) override;
  float GetPathLoss(const StationProfile_Type& Sta1, const StationProfile_Type& Sta2) override;
  void ShowMainForm(const StationProfile_Type& Sta1, const StationProfile_Type& Sta2) override;
  void ShowOptionsForm() override;
  std::int32_t get_StaDatum() override;
  void let_StaDatum(std::int32_t vNewValue) override;
  void UnloadMainForm() override;
  std::int32_t get_hWnd() override;

 private:
  struct Self;
  std::shared_ptr<Self> self_;  // kept by a call that is under way when the object is released
};

// A station for late-bound calls: an object with the properties Lat, Lon and AntHt.
ZEL_API DispatchPtr makeStation(const StationProfile_Type& station);

}  // namespace zel

#endif  // ZEL_PROFILE_CONTROL_H_
