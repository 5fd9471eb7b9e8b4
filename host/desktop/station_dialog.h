// Asks for a station: name, position as it is typed, antenna.
#pragma once

#include <QDialog>

#include "desktop/shown_values.h"
#include "planning/plan.h"

class QLabel;
class QLineEdit;

namespace zel::host {

class StationDialog final : public QDialog {
 public:
  // `hasPosition` false leaves the position box empty.
  StationDialog(const QString& title, const Station& station, bool hasPosition, const ShownUnits& units,
                QWidget* parent = nullptr);

  const Station& station() const { return station_; }  // once it is accepted

  void accept() override;  // stays open, with the reason shown, where something typed cannot be

 private:
  void refuse(QLineEdit* box, const QString& problem);

  ShownUnits units_;
  Station station_;
  QString shownPosition_, shownAntenna_;  // as they were filled in
  QLineEdit* name_;
  QLineEdit* position_;
  QLineEdit* antenna_;
  QLabel* problem_;
};

}  // namespace zel::host
