// The controls of the settings dialog in their frames, with captions, tool tips, mnemonics and tab order.
// What they do is the dialog's.
//
// Every control's object name is its control name; the members of a control array have their index in
// brackets, "optFresnel(2)". The frames have names of their own, "fraFreq".
#pragma once

#include <QWidget>
#include <array>

#include "ui/settings_dialog/options_fields.h"

class QComboBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace zel {

class OptionsControls final : public QWidget {
 public:
  explicit OptionsControls(QWidget* parent);

  QLineEdit* box(OptionsBox which) const { return boxes_.at(static_cast<std::size_t>(which)); }
  // A box that is locked or disabled takes no text and stands in the colour of its surroundings.
  void lock(OptionsBox which, bool locked);
  void enable(OptionsBox which, bool enabled);

  std::array<QRadioButton*, 2> optEarthModel{};  // "Flat Earth (73.206)", "Spherical Earth"
  QComboBox* cboMethod = nullptr;
  QComboBox* cboUnits = nullptr;
  QComboBox* cboTRes = nullptr;
  QLabel* lblLambda = nullptr;                // wavelength, metres
  std::array<QRadioButton*, 4> optFresnel{};  // "100", "60", custom with tbxpctFresnel, "None"
  std::array<QRadioButton*, 3> optCurve{};    // "1.333", "1.000", custom with tbxCurve
  QPushButton* cmdOK = nullptr;
  QPushButton* cmdCancel = nullptr;

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QGroupBox* makeProjection();
  QGroupBox* makeTowerHeight();
  QGroupBox* makeDataPoints();
  QGroupBox* makeReferenceLines();
  QGroupBox* makeTerrainSource();
  QGroupBox* makeMethod();
  QGroupBox* makeUnits();
  QGroupBox* makeFrequency();
  QGroupBox* makeCurve();
  QGroupBox* makeFresnel();
  QWidget* makeButtons();

  QLineEdit* makeBox(OptionsBox which, const QString& accessibleName, const QString& tip);
  QGroupBox* makePair(const char* name, const QString& title, OptionsBox first, const QString& firstCaption,
                      OptionsBox second, const QString& secondCaption, const QString& unit);
  void setTabOrderByReading();
  void paintLocks();

  std::array<QLineEdit*, kOptionsBoxes> boxes_{};
};

}  // namespace zel
