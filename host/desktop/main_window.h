// The desktop program's window: the map, the tables of stations and links, menus, and the profile of the
// chosen link.
#pragma once

#include <QMainWindow>
#include <memory>
#include <string>

#include "map_view/map_view.h"
#include "planning/plan_document.h"

namespace zel {
class ProfileControl;
}

namespace zel::host {

// What a process gives its window; tests give their own.
struct MainWindowServices {
  std::string recoveryFolder;           // copies of unsaved work; empty: none are made
  std::string guide;                    // the guide's first page, a file; empty without one
  int recoverySeconds = 5;              // between a change and its copy, at most
  PlanDatum datum = PlanDatum::kNad83;  // of plans that are begun here
};

class MainWindow : public QMainWindow {
 public:
  MainWindow(ProfileControl& component, MainWindowServices services);
  ~MainWindow() override;  // keeps a copy of unsaved work, unless its user wants none

  // What a start shows: the file named, or what a crash left, or the last file, or the sample plan.
  void start(const std::string& file);
  // False when it cannot be opened, which is told in a box; what was open stays.
  bool openFile(const std::string& path);
  // Stations out of other programs' files, rasters, or a plan: whatever each is.
  void takeFiles(const std::vector<std::string>& paths);
  // Opens the profile window; refused in words where the ground cannot be used. False, too, while the terrain
  // is still being looked through: the profile is then shown when that is done.
  bool showProfile(LinkId link);
  // Whether the folders of the terrain have been looked through.
  bool terrainKnown() const;

  PlanDocument& document();
  MapView& map();
  LinkAnalysis& analysis();

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

// The plan of a first start: two stations over the bundled terrain, linked.
Plan samplePlan();

}  // namespace zel::host
