// The rasters and folders of each terrain source, one list shown at a time: files and folders are added, put
// in order of preference, typed, removed. An empty list is the bundled sample.
#pragma once

#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "preferences/field_row.h"
#include "preferences/setting_editor.h"

class QComboBox;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace zel::host {

class TerrainLists : public QWidget {
 public:
  explicit TerrainLists(QWidget* parent);
  ~TerrainLists() override;

  void load(int code, const StoredText& stored);
  // Terrain that was given for this run, in words; empty without.
  void setRunTerrain(const std::string& words);
  std::vector<SettingEditor*> editors();
  int shownSource() const;  // its code
  void showSource(int code);
  bool changed(int code) const;

  std::function<void()> onEdited;
  std::function<void(int code)> onSourceShown;

 private:
  class List;

  QWidget* makeButtons();
  QPushButton* makeButton(const char* name, const QString& caption, const QString& tip,
                          std::function<void()> action);
  List& current() const;
  void showCurrent();
  void takeEdits();
  void refresh();
  void addPaths(const QStringList& paths);
  void addFiles();
  void addFolder();
  void remove();
  void moveBy(int places);
  void editPath();

  std::map<int, std::unique_ptr<List>> lists_;
  bool showing_ = false;  // the boxes are being written by the code
  QComboBox* source_ = nullptr;
  QListWidget* paths_ = nullptr;
  QLabel* note_ = nullptr;
  QLabel* runNote_ = nullptr;
  QPushButton *remove_ = nullptr, *up_ = nullptr, *down_ = nullptr, *edit_ = nullptr, *sample_ = nullptr,
              *addFiles_ = nullptr, *addFolder_ = nullptr;
};

}  // namespace zel::host
