// The control panel of the profile window, fraControl: station read-outs, the inputs that change the
// calculation, losses, heights, markers and cursor. It has the controls and their layout; what they do is
// the window's.
//
// Every control's object name is its control name; the members of a control array have their index in
// brackets, "optCurve(2)". Boxes and options that a person changes emit what QLineEdit::textEdited and
// QAbstractButton::clicked emit; a change from the code runs nothing.
#pragma once

#include <QFont>
#include <QFrame>
#include <QSize>
#include <QString>
#include <QStringList>
#include <array>
#include <vector>

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace zel {

class ControlPanel final : public QFrame {
 public:
  explicit ControlPanel(QWidget* parent = nullptr);

  // The font of the panel: the application's, made smaller down to 8 points where a control would be clipped
  // in the size that the panel has.
  void fitFont();

  // Texts that follow the display units: unit names and abbreviations.
  struct UnitTexts {
    QString heightName;            // "meters", "feet"
    QString heightAbbreviation;    // "m", "ft"
    QString distanceAbbreviation;  // "km", "mi"
  };
  void showUnits(const UnitTexts& units);
  // "NAD-27" or "NAD-83" beside the station coordinates; empty shows none.
  void showDatum(const QString& datum);

  // --- Start Point, End Point ---
  QGroupBox* fraStart;
  QLabel* lblSLat;
  QLabel* lblSLon;
  QLabel* lblSAMSL;
  QLabel* lblAMSLStart;  // "AMSL (m)", caption of lblSAMSL
  QLabel* lblAGLStart;   // "Ant AGL (m)", caption of tbxAnt1AGL
  QLineEdit* tbxAnt1AGL;
  QGroupBox* fraEnd;
  QLabel* lblELat;
  QLabel* lblELon;
  QLabel* lblEAMSL;
  QLabel* lblAMSLEnd;
  QLabel* lblAGLEnd;
  QLineEdit* tbxAnt2AGL;

  // --- E-Curve, % Fresnel, Freq ---
  std::array<QRadioButton*, 3> optCurve;  // "1.333", "1.000", custom with tbxCurve
  QLineEdit* tbxCurve;
  std::array<QRadioButton*, 4> optFresnel;  // (0) "100", (1) "60", (2) custom with tbxpctFresnel, (3) "None"
  QLineEdit* tbxpctFresnel;
  QLineEdit* tbxFreq;  // MHz
  QLabel* lblLambda;   // wavelength, metres

  // --- Path Loss, Height, Range, Bearing ---
  QLabel* lblFSLoss;  // dB
  QLabel* lblMLoss;   // dB
  QLabel* lblHeight;  // "Height(m)", caption of the three below
  QLabel* lblMaxHt;
  QLabel* lblMinHt;
  QLabel* lblAvHt;
  QLabel* lblRange;  // "Range km", caption of lblDist
  QLabel* lblDist;
  QLabel* lblAzd;  // degrees

  // --- Markers and cursor ---
  std::array<QLabel*, 2> lblMkLat;  // lblMk1Lat, lblMk2Lat
  std::array<QLabel*, 2> lblMkLon;
  std::array<QLabel*, 2> lblMkHt;
  std::array<QLabel*, 2> lblMkPosn;      // distance from the marker to the cursor
  QLabel* lblToCursor;                   // "km to Cursor"
  std::array<QPushButton*, 2> cmdClear;  // cmdClear1, cmdClear2
  QLabel* lblCurPosn;
  QLabel* lblFromStart;  // "km from start"
  QLabel* lblCurHt;
  QLabel* lblCursorAMSL;  // "meters AMSL"
  QLabel* lblmbelowmouse;
  QLabel* lblBelowMouse;  // "meters below mouse"

  QPushButton* cmdExit;  // "Close"

 protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  // A read-out or a box, and the texts that must fit into it.
  template <typename Control>
  struct Room {
    Control* control;
    QStringList widest;
  };
  // What the panel needs at a size of the font.
  struct Need {
    double points;
    QSize size;
  };

  QGroupBox* frame(const char* name, const QString& title, const QString& meaning);
  QGroupBox* station(const char* name, std::array<QLabel*, 3> values, std::array<QLabel*, 2> heightCaptions,
                     QLineEdit* antenna);
  QGroupBox* curve();
  QGroupBox* fresnel();
  QGroupBox* frequency();
  QGroupBox* losses();
  QGroupBox* pathFacts();
  QGroupBox* markers();
  QGroupBox* cursor();
  void makeStationControls();
  void makeInputs();
  void makePathReadouts();
  void makeMarkerControls();
  void orderTabs();

  QLabel* readout(const QString& name, const QString& tip, const QStringList& widest);
  QLineEdit* box(const char* name, const QString& meaning, const QString& tip, const QString& widest);

  void forgetSizes();
  QSize neededSize(double points);
  void showPoints(double points);
  void giveRoom();

  std::vector<Room<QLabel>> readouts_;
  std::vector<Room<QLineEdit>> boxes_;
  std::vector<QGroupBox*> frames_;
  QFont wantedFont_;
  std::vector<Need> needs_;  // of wantedFont_ at the sizes tried so far
  double shownPoints_ = 0;   // 0: to be laid out anew
  QLabel* lblMkHeight_;      // "Height(m)", heading of lblMkHt
};

}  // namespace zel
