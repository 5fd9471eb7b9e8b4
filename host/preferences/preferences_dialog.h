// Preferences: what only the host sets. Terrain sources with their coverage, the radio model's parameters,
// the point-to-point model's, colours, helper programs, coordinate format; each with its default a click
// away.
//
// What is not set is shown as its default and stored only when it is changed; what is given for this run is
// shown and left alone.
#pragma once

#include <QDialog>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zel::host {

enum class PreferencesPage { kTerrain, kModel, kPointToPoint, kColours, kPrograms };

class PreferencesDialog : public QDialog {
 public:
  explicit PreferencesDialog(QWidget* parent = nullptr, PreferencesPage page = PreferencesPage::kTerrain);
  ~PreferencesDialog() override;

  // After Apply or OK stored something: "Terrain/Source3", ... as "Section/Key".
  std::function<void(const std::vector<std::string>& changed)> onStored;
  // Help or F1. Without it a box explains the page.
  std::function<void(PreferencesPage)> onHelp;

  void showPage(PreferencesPage page);
  PreferencesPage page() const;
  void accept() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel::host
