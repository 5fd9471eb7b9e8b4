// The plot in the window: what its picture shows, pixel by pixel, and what stays of it when nothing can be
// drawn.
#include <cmath>

#include "plot_probe.h"

namespace zel {
namespace {

using test::countInColumn;
using test::kRidgeEnd;
using test::kRidgeStart;
using test::rgb;

constexpr StationProfile_Type kHighStart{36.40, -84.35, 300.0F};
constexpr StationProfile_Type kHighEnd{36.22, -84.12, 300.0F};
constexpr StationProfile_Type kOutsideTheTiles{40.40, -84.35, 30.0F};
constexpr StationProfile_Type kFarAway{10.00, -84.35, 30.0F};  // 2,900 km

class ProfilePlotTest : public test::PlotWindowTest {
 protected:
  void reload() {
    component_.refreshTerrainSources();
    window()->reload();
  }
};

// ---- Colours ----

struct ColourCase {
  const char* key;
  Colour byDefault;
};

class ProfilePlotColourTest : public ProfilePlotTest, public testing::WithParamInterface<ColourCase> {};

TEST_P(ProfilePlotColourTest, IsTheOneOfTheSettings) {
  constexpr Colour kOwn = 0x2211CC;
  open();
  clickPlot(11);
  pointAt(9);
  EXPECT_GT(count(GetParam().byDefault), 5);
  EXPECT_EQ(count(kOwn), 0);
  set("Colors", GetParam().key, std::to_string(kOwn));
  window()->drawLine();
  pointAt(9);
  EXPECT_GT(count(kOwn), 5);
}

INSTANTIATE_TEST_SUITE_P(Each, ProfilePlotColourTest,
                         testing::Values(ColourCase{"cLRMarker", 0xFFFF00},
                                         ColourCase{"cElevation", 0x00FF00}, ColourCase{"cRange", 0xFF00FF},
                                         ColourCase{"cFresnel", 0x0000FF}, ColourCase{"cLOS", 0xFF0000},
                                         ColourCase{"cStrobe", 0xFFFF00}),
                         [](const auto& each) { return each.param.key; });

TEST_F(ProfilePlotTest, TheGroundIsBlackWhateverTheSettingsSay) {
  for (const char* key : {"cLRMarker", "cElevation", "cRange", "cFresnel", "cLOS", "cStrobe"})
    set("Colors", key, "65535");
  open();
  // A pixel at least in almost every column; labels may add some.
  int columns = 0;
  for (int x = 0; x < image().width(); ++x) columns += countInColumn(image(), x, kBlack) > 0 ? 1 : 0;
  EXPECT_GT(columns, image().width() * 95 / 100);
}

TEST_F(ProfilePlotTest, ThePictureIsWhiteUnderADarkPalette) {
  const QPalette before = QApplication::palette();
  QApplication::setPalette(QPalette(Qt::black));
  open();
  EXPECT_GT(count(kWhite), image().width() * image().height() / 2);
  QApplication::setPalette(before);
}

// ---- Masts ----

TEST_F(ProfilePlotTest, MastsStandThreePixelsWideUnderAWhiteCircleAtBothAntennas) {
  set("Colors", "cLOS", "65280");
  open(kHighStart, kHighEnd);
  const PlotIndex index = state().plotIndex();
  const double tops[] = {double{state().lineOfSight.startTop}, double{state().lineOfSight.endTop}};
  const double places[] = {index.startX(), index.endX()};
  for (int station = 0; station < 2; ++station) {
    SCOPED_TRACE(station);
    const QPoint middle = pixel(places[station], tops[station] - 150);
    for (int dx = -1; dx <= 1; ++dx) EXPECT_EQ(image().pixel(middle + QPoint(dx, 0)), rgb(kRed)) << dx;
    EXPECT_NE(image().pixel(middle + QPoint(-2, 0)), rgb(kRed));
    EXPECT_NE(image().pixel(middle + QPoint(2, 0)), rgb(kRed));
    // As long as the antenna stands above the ground.
    const QPoint foot = pixel(places[station], tops[station] - 300);
    EXPECT_EQ(image().pixel(foot + QPoint(1, -2)), rgb(kRed));
    EXPECT_NE(image().pixel(foot + QPoint(1, 3)), rgb(kRed));
    const QPoint top = pixel(places[station], tops[station]);
    EXPECT_EQ(image().pixel(top + QPoint(0, -1)), rgb(kWhite));
  }
}

TEST_F(ProfilePlotTest, TheMastFollowsTheTypedHeight) {
  open(kHighStart, kHighEnd);
  const auto mast = [this] {
    return countInColumn(image(), pixel(state().plotIndex().startX(), 0).x(), kRed);
  };
  const int before = mast();
  type("tbxAnt1AGL", "100");
  window()->Timer1_Timer();
  EXPECT_LT(mast(), before);
}

// ---- Voids ----

TEST_F(ProfilePlotTest, VoidsAreDrawnInRedAtSeaLevelAndTheirNeighboursInBlack) {
  useTile([](int, int column) { return column > 700 && column < 800 ? -32768 : 400; });
  set("Colors", "cFresnel", "65535");
  open({36.50, -84.60, 30.0F}, {36.50, -84.10, 30.0F});
  EXPECT_TRUE(dialogs_->messages.empty());
  EXPECT_GT(count(kRed), 30);
  const auto& raw = state().rawElevation;
  std::int32_t hole = 0;
  for (std::int32_t i = 1; i <= state().path.samples && hole == 0; ++i)
    if (raw[i] < -499) hole = i;
  ASSERT_GT(hole, 1);
  EXPECT_EQ(raw[hole], -9999.0F);
  EXPECT_EQ(state().elevation[hole], 0.0F);
  const PlotIndex index = state().plotIndex();
  const auto colourNear = [this, &index](std::int32_t sample, double height, Colour colour) {
    const QPoint at = pixel(index.sampleX(sample), height + double{state().curve[sample]});
    for (int dy = -1; dy <= 1; ++dy)
      if (image().pixel(at + QPoint(0, dy)) == rgb(colour)) return true;
    return false;
  };
  EXPECT_TRUE(colourNear(hole + 8, 0, kRed));
  EXPECT_FALSE(colourNear(hole + 8, 0, kBlack));
  EXPECT_TRUE(colourNear(hole - 8, 400, kBlack));
  EXPECT_FALSE(colourNear(hole - 8, 400, kRed));
}

// ---- Samplings that fail ----

struct StatusCase {
  const char* name;
  const char* text;
  MessageIcon icon;
  bool terrainError;
};

class ProfilePlotStatusTest : public ProfilePlotTest, public testing::WithParamInterface<StatusCase> {
 protected:
  // Makes the next load of the window meet the status; its stations.
  std::pair<StationProfile_Type, StationProfile_Type> provoke() {
    const std::string name = GetParam().name;
    if (name == "Configuration") set("Terrain", "Source3", (folder_ / "nothing-here").string());
    if (name == "InvalidData") return {kRidgeStart, kOutsideTheTiles};
    if (name == "OverRange") return {kRidgeStart, kFarAway};
    if (name == "UnderRange") return {kRidgeStart, kRidgeStart};
    return {kRidgeStart, kRidgeEnd};
  }
};

TEST_P(ProfilePlotStatusTest, IsToldInOneBoxAndLeavesNoWindow) {
  const auto [start, end] = provoke();
  bool hourglass = false;
  dialogs_->onMessage = [&](const MessageBoxRequest&) {
    hourglass = QApplication::overrideCursor() != nullptr;
  };
  control_.ShowMainForm(start, end);
  ASSERT_EQ(dialogs_->messages.size(), 1U);
  const MessageBoxRequest& box = dialogs_->messages.front();
  EXPECT_EQ(box.title, "Profile Error");
  EXPECT_EQ(box.text, GetParam().text);
  EXPECT_EQ(box.icon, GetParam().icon);
  EXPECT_EQ(box.buttons, MessageButtons::kOk);
  EXPECT_FALSE(control_.get_PFrmLoaded());
  EXPECT_EQ(control_.get_hWnd(), 0);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the hourglass stayed";
  settle();
  EXPECT_EQ(window(), nullptr);
  for (const QWidget* widget : QApplication::topLevelWidgets()) EXPECT_FALSE(widget->isVisible());
  EXPECT_EQ(logged(), "");
  // The next path is shown as if nothing had been.
  set("Terrain", "Source3", "");
  component_.refreshTerrainSources();
  open();
  EXPECT_TRUE(window()->isVisible());
}

INSTANTIATE_TEST_SUITE_P(
    Each, ProfilePlotStatusTest,
    testing::Values(StatusCase{"Configuration", "Configuration Error.", MessageIcon::kCritical, false},
                    StatusCase{"InvalidData", "Some or all of the terrain data is invalid!",
                               MessageIcon::kInformation, true},
                    StatusCase{"OverRange", "Over Range Error.", MessageIcon::kCritical, false},
                    StatusCase{"UnderRange", "Under Range Error.", MessageIcon::kCritical, false}),
    [](const auto& each) { return each.param.name; });

TEST_F(ProfilePlotTest, AFailedSamplingKeepsThePictureAndStaysSilentUntilTheNextLoad) {
  open();
  const QImage before = picture();
  set("Terrain", "Source3", (folder_ / "nothing-here").string());
  reload();
  EXPECT_EQ(dialogs_->messages.size(), 1U);
  EXPECT_EQ(picture(), before);
  EXPECT_TRUE(state().flags.profileError);
  EXPECT_FALSE(state().flags.terrainError);
  EXPECT_TRUE(state().flags.resample) << "it is to be sampled again";
  EXPECT_FALSE(state().flags.drawing);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  window()->drawLine();
  control<QSlider>("Slider1").setValue(150);
  EXPECT_EQ(dialogs_->messages.size(), 1U) << "told again";
  EXPECT_EQ(picture(), before);
  // Neither click nor pointer read terrain that is not there.
  clickPlot(5);
  pointAt(7);
  EXPECT_FALSE(state().leftMarker.shown);
  EXPECT_EQ(picture(), before);
  set("Terrain", "Source3", "");
  reload();
  EXPECT_FALSE(state().flags.profileError);
  EXPECT_EQ(picture(), before);
}

// ---- What keeps a drawing back ----

TEST_F(ProfilePlotTest, AnEmptyBoxDrawsNothingAndSaysNothing) {
  open();
  for (const char* name : {"tbxAnt1AGL", "tbxAnt2AGL", "tbxFreq"}) {
    SCOPED_TRACE(name);
    const QImage before = picture();
    const std::string text = boxText(name);
    box(name).setFocus();
    box(name).selectAll();
    QTest::keyClick(&box(name), Qt::Key_Delete);
    window()->Timer1_Timer();
    control<QSlider>("Slider1").setValue(200);
    EXPECT_EQ(picture(), before);
    EXPECT_EQ(boxText(name), "");
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    type(name, text.c_str());
    window()->Timer1_Timer();
    EXPECT_NE(picture(), before);
    control<QSlider>("Slider1").setValue(100);
  }
  EXPECT_TRUE(dialogs_->messages.empty());
}

TEST_F(ProfilePlotTest, ThePointerIsAnHourglassDuringADrawingOnly) {
  const auto host = callingHost();
  open();
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  bool asked = false;
  duringDrawing(*host, [&] {
    asked = true;
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  });
  window()->drawLine();
  EXPECT_TRUE(asked);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ProfilePlotTest, ADrawingDuringADrawingIsLeftOut) {
  const auto host = callingHost();
  open();
  const QImage before = picture();
  duringDrawing(*host, [this] { window()->drawLine(); });
  window()->drawLine();
  EXPECT_EQ(picture(), before);
  EXPECT_FALSE(state().flags.drawing);
  EXPECT_EQ(logged(), "");
}

// ---- Losses ----

TEST_F(ProfilePlotTest, LossesFollowTheFrequency) {
  open();
  // Free space by its definition, 20 log10(4 pi d / lambda), with d in metres and lambda = c / f; the loss
  // that is shown takes 32.4 dB for what is 32.45, and has two decimals.
  const auto freeSpace = [this](double megahertz) {
    const double metres = state().path.distance * 1000;
    return 20 * std::log10(4 * M_PI * metres * megahertz * 1e6 / 299792458.0);
  };
  EXPECT_NEAR(std::stod(text("lblFSLoss")), freeSpace(950), 0.06);
  const double modeled = std::stod(text("lblMLoss"));
  EXPECT_GT(modeled, freeSpace(950));
  EXPECT_FALSE(state().flags.modeledLossPending);
  type("tbxFreq", "2400");
  EXPECT_TRUE(state().flags.modeledLossPending);
  EXPECT_EQ(std::stod(text("lblMLoss")), modeled) << "not before the drawing";
  window()->Timer1_Timer();
  EXPECT_FALSE(state().flags.modeledLossPending);
  EXPECT_NEAR(std::stod(text("lblFSLoss")), freeSpace(2400), 0.06);
  EXPECT_GT(std::stod(text("lblMLoss")), modeled);
}

TEST_F(ProfilePlotTest, ADrawingWithoutAChangeOfItsInputsKeepsTheModeledLoss) {
  open();
  const std::string before = text("lblMLoss");
  control<QLabel>("lblMLoss").setText(QStringLiteral("kept"));
  window()->drawLine();
  EXPECT_EQ(text("lblMLoss"), "kept");
  window()->UpdateModeledLoss();
  EXPECT_EQ(text("lblMLoss"), before);
}

// ---- Expanded view ----

TEST_F(ProfilePlotTest, TheExpandedViewReachesFromMarkerToMarkerWithoutMasts) {
  open(kHighStart, kHighEnd);
  const PlotScale whole = window()->plotView()->scale;
  clickPlot(0.5);
  clickPlot(12);
  window()->mnuProfileExpand_Click();
  const PlotScale& scale = window()->plotView()->scale;
  EXPECT_DOUBLE_EQ(scale.left, double{state().leftMarker.x});
  EXPECT_DOUBLE_EQ(scale.right, double{state().rightMarker.x});
  EXPECT_DOUBLE_EQ(scale.top, whole.top);
  EXPECT_DOUBLE_EQ(scale.bottom, whole.bottom);
  EXPECT_NEAR(window()->plotView()->circleRadius, (scale.right - scale.left) / 200, 1e-12);
  // Both markers stand on the borders, in their colour except where something crosses them.
  const int height = image().height();
  EXPECT_GT(countInColumn(image(), 0, 0xFFFF00), height / 2);
  EXPECT_GT(countInColumn(image(), image().width() - 1, 0xFFFF00), height / 2);
}

TEST_F(ProfilePlotTest, ThePathOverManyMarkersIsTheSameAfterTheExpandedViewIsLeft) {
  open();
  clickPlot(6);
  clickPlot(12);
  window()->drawLine();
  const QImage before = picture();
  window()->mnuProfileExpand_Click();
  EXPECT_NE(picture(), before);
  window()->mnuProfileExpand_Click();
  EXPECT_EQ(picture(), before);
}

// ---- Reference lines ----

class ReferenceLineTest : public ProfilePlotTest, public testing::WithParamInterface<int> {
 protected:
  int labels(PlotLabelKind kind) const {
    const auto& all = window()->plotView()->labels;
    return static_cast<int>(
        std::count_if(all.begin(), all.end(), [kind](const PlotLabel& label) { return label.kind == kind; }));
  }
};

TEST_P(ReferenceLineTest, AreAsManyAsTheSettingsSay) {
  const int wanted = GetParam();
  set("Profile", "Prf_Ele", std::to_string(wanted));
  set("Profile", "Prf_Rng", std::to_string(wanted));
  open();
  EXPECT_EQ(control_.get_ElevLines(), wanted);
  EXPECT_EQ(control_.get_RangeLines(), wanted);
  if (wanted == 0) {
    EXPECT_EQ(count(0x00FF00), 0);
    EXPECT_EQ(count(0xFF00FF), 0);
    EXPECT_TRUE(window()->plotView()->labels.empty());
    EXPECT_TRUE(window()->picture().canvas().textRectangles().empty());
    return;
  }
  EXPECT_EQ(labels(PlotLabelKind::kElevation), wanted + 1);
  // 28.7 km have room for 14 lines: more than two kilometres for each.
  EXPECT_EQ(labels(PlotLabelKind::kRange), std::min(wanted, 14) + 1);
  // The one at the start and the others are upright lines over the whole height, where nothing crosses them.
  int upright = 0;
  for (int x = 0; x < image().width(); ++x)
    if (countInColumn(image(), x, 0xFF00FF) > image().height() / 2) ++upright;
  EXPECT_GE(upright, std::min(wanted, 14));
  for (const PlotLabel& label : window()->plotView()->labels) {
    if (label.kind == PlotLabelKind::kElevation) {
      EXPECT_EQ(std::stoi(label.text) % 10, 0) << label.text;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Lines, ReferenceLineTest, testing::Values(0, 1, 2, 3, 7, 15, 20));

TEST_F(ProfilePlotTest, ReferenceLinesOfTheHostAreThoseOfTheLastDrawing) {
  control_.let_ElevLines(9);
  control_.let_RangeLines(8);
  open();
  EXPECT_EQ(control_.get_ElevLines(), 3);
  EXPECT_EQ(control_.get_RangeLines(), 3);
}

// ---- The picture as a whole ----

TEST_F(ProfilePlotTest, TwoDrawingsGiveTheSamePicture) {
  open();
  const QImage before = picture();
  window()->drawLine();
  EXPECT_EQ(picture(), before);
}

TEST_F(ProfilePlotTest, AResizedWindowKeepsItsPictureUntilTheDeferredDrawing) {
  open();
  const QImage before = picture();
  window()->resize(window()->width() + 120, window()->height() + 60);
  settle();
  EXPECT_FALSE(window()->picture().canvasFits());
  EXPECT_EQ(picture(), before);
  // What is seen meanwhile is the old picture, stretched: the ground reaches the new right border.
  const QImage seen = window()->picture().grab().toImage();
  EXPECT_EQ(seen.size(), window()->picture().size());
  bool dark = false;
  for (int y = 0; y < seen.height(); ++y) dark = dark || qGray(seen.pixel(seen.width() - 3, y)) < 128;
  EXPECT_TRUE(dark);
  waitForTyping();
  EXPECT_TRUE(window()->picture().canvasFits());
  EXPECT_EQ(image().size(), window()->picture().size());
}

TEST_F(ProfilePlotTest, AClickIntoTheStretchedPictureMeansTheKilometreThatIsSeenThere) {
  open();
  window()->resize(window()->width() + 150, window()->height());
  settle();
  ASSERT_FALSE(window()->picture().canvasFits());
  const PlotScale scale = window()->plotView()->scale;
  PictureBox& box = window()->picture();
  QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(box.width() / 2, box.height() / 2));
  EXPECT_NEAR(double{state().leftMarker.x}, (scale.left + scale.right) / 2, (scale.right - scale.left) / 300);
}

TEST_F(ProfilePlotTest, AMaximisedWindowIsDrawnAtOnce) {
  open();
  window()->showMaximized();
  settle();
  EXPECT_TRUE(window()->picture().canvasFits());
}

TEST_F(ProfilePlotTest, TheZoomLeavesMoreRoomAboveTheHighestPoint) {
  open();
  const double top = window()->plotView()->scale.top;
  control<QSlider>("Slider1").setValue(300);
  EXPECT_NEAR(window()->plotView()->scale.top, top * 2, 1e-6) << "(1 + 3) / (1 + 1)";
  control<QSlider>("Slider1").setValue(0);
  EXPECT_NEAR(window()->plotView()->scale.top, top / 2, 1e-6);
}

}  // namespace
}  // namespace zel
