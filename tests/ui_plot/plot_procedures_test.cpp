#include "ui/plot/plot_procedures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "canvas/recording_canvas.h"
#include "plot_platform.h"
#include "support/plot_state.h"
#include "support/recording_settings_store.h"
#include "support/scripted_platform.h"
#include "support/scripted_terrain.h"
#include "support/temporary_folder.h"
#include "ui/plot/plot_readouts.h"
#include "ui/plot/plot_scale.h"

namespace zel {
namespace {

using Texts = std::vector<std::string>;
using Shapes = std::vector<PointerShape>;

// The path of plot_state.h, sampled from scripted terrain: 10 km, 10 intervals, 1 sample beyond each end.
struct PlotProceduresTest : testing::Test {
  test::TemporaryFolder folder;
  test::ScriptedDialogs dialogs;
  test::ScriptedPointer pointer;
  test::ScriptedEventLoop eventLoop;
  test::ScriptedProcess process;
  test::FixedClock clock;
  test::ScriptedHardStop hardStop;
  test::ScriptedGeodesy geodesy;
  test::ScriptedTerrainSampler sampler;
  test::ScriptedDatumShift datumShift;
  test::PlainFormatter formatter;
  test::RecordingSettingsStore store;
  KeptReadouts readouts;
  RecordingCanvas canvas;
  ModuleState module;
  NormalTable normalTable = InitNormalDist();
  ErrorLog log{[this] { return folder.path().string(); }, clock, dialogs};
  ErrorTrap trap{{[] { return std::string("Host Planner"); }, "zelProfiler01", &pointer, &dialogs, &eventLoop,
                  &process, &log}};
  TrappedModule window{"frmProfile", trap};
  SettingsReader reader{store, [] { return std::string("Host Planner"); }};
  ProfileProcedures profile{profileServices(), reader};
  PlotPanel panel{"30", "30", "950", 100};
  int printed = 0;
  std::function<void()> onPrepare;
  ProfileViewState state;
  PlotProcedures plot{plotServices(), reader, state};

  ProfileProcedures::Services profileServices() {
    ProfileProcedures::Services all;
    all.geodesy = &geodesy;
    all.sampler = &sampler;
    all.dialogs = &dialogs;
    all.hardStop = &hardStop;
    all.errorLog = &log;
    all.readouts = &readouts;
    all.module = &module;
    all.trapped = &window;
    all.normalTable = &normalTable;
    return all;
  }
  PlotProcedures::Services plotServices() {
    PlotProcedures::Services all;
    all.canvas = &canvas;
    all.profile = &profile;
    all.panel = [this] { return panel; };
    all.readouts = &readouts;
    all.pointer = &pointer;
    all.dialogs = &dialogs;
    all.geodesy = &geodesy;
    all.datumShift = &datumShift;
    all.formatter = &formatter;
    all.module = &module;
    all.trapped = &window;
    all.printProfile = [this] { ++printed; };
    all.prepareCanvas = [this] {
      if (onPrepare) onPrepare();
    };
    return all;
  }

  void SetUp() override {
    store.set("Profile", "Prf_Max", "10");
    module.antennaHeights = {30, 30};
    load();
  }
  void load() {
    state = loadedViewState(module, reader, Init_GUC(), false);
    profile.InitITM(state);
    profile.DoPreCalc(state);
    canvas.forgetOperations();
  }
  // Drawn once, with nothing recorded yet.
  void drawn() {
    plot.drawLine();
    ASSERT_FALSE(state.flags.resample);
    canvas.forgetOperations();
    pointer.shapes.clear();
    store.reads.clear();
  }
  void placeBoth(float left, float right) {
    plot.Picture1_MouseDown(left, 0);
    plot.Picture1_MouseDown(right, 0);
  }
  std::string text(std::string_view control) const { return readouts.text(control); }
  bool nothingDrawn() const { return canvas.operations().empty(); }
  void expectTrapped(const std::string& location, int number) {
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_NE(dialogs.messages[0].text.find(location), std::string::npos) << dialogs.messages[0].text;
    EXPECT_NE(dialogs.messages[0].text.find("Error Number: " + std::to_string(number)), std::string::npos)
        << dialogs.messages[0].text;
  }
  // What a drawing without markers shows: strokes and texts, not the pens between them.
  std::vector<RecordedLine> freshLines() {
    ProfileViewState fresh = state;
    fresh.leftMarker.shown = fresh.rightMarker.shown = false;
    RecordingCanvas other;
    PlotProcedures::Services services = plotServices();
    services.canvas = &other;
    PlotProcedures(services, reader, fresh).drawLine();
    return other.lines();
  }
};

// --- drawLine ---

TEST_F(PlotProceduresTest, ADrawingRunsThroughAllItsPartsInOrder) {
  plot.Picture1_MouseDown(5, 0);
  EXPECT_FALSE(state.leftMarker.shown) << "there is no terrain before the first drawing";
  store.reads.clear();
  test::showMarkersAt(state, 3, 7);
  plot.drawLine();
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(store.reads, (Texts{"Colors/cLRMarker=16776960", "Colors/cLRMarker=16776960", "Profile/Prf_Ele=3",
                                "Colors/cElevation=65280", "Colors/cElevation=65280",
                                "Colors/cElevation=65280", "Colors/cElevation=65280", "Profile/Prf_Rng=3",
                                "Colors/cRange=16711935", "Colors/cFresnel=255", "Colors/cLOS=16711680"}));
  std::vector<Colour> order;
  for (const RecordedLine& line : canvas.lines())
    if (order.empty() || order.back() != line.colour) order.push_back(line.colour);
  EXPECT_EQ(order, (std::vector<Colour>{0x0000FF, 0x00FF00, 0xFF00FF, 0x0000FF, 0xFF0000, kBlack}))
      << "markers, elevation, range, Fresnel and masts, line of sight, ground";
  EXPECT_EQ(module.elevLines, 3);
  EXPECT_EQ(module.rangeLines, 3);
  EXPECT_FALSE(state.flags.resample);
}

TEST_F(PlotProceduresTest, TheReferenceLineCountsOfTheModuleAreThoseRead) {
  store.set("Profile", "Prf_Ele", "0");
  store.set("Profile", "Prf_Rng", "20");
  plot.drawLine();
  EXPECT_EQ(module.elevLines, 0);
  EXPECT_EQ(module.rangeLines, 20) << "though 4 lines are all that 10 km carry";
  EXPECT_TRUE(canvas.linesIn(0x00FF00).empty());
  EXPECT_EQ(canvas.texts().size(), 5U);
}

TEST_F(PlotProceduresTest, AnEmptyPanelTextDrawsNothingAndSaysNothing) {
  for (std::string PlotPanel::*field :
       {&PlotPanel::startAntenna, &PlotPanel::endAntenna, &PlotPanel::frequency}) {
    panel = {"30", "30", "950", 100};
    panel.*field = "";
    plot.drawLine();
    EXPECT_TRUE(nothingDrawn());
    EXPECT_TRUE(pointer.shapes.empty());
    EXPECT_TRUE(dialogs.messages.empty());
    EXPECT_EQ(sampler.samplings, 0);
  }
}

TEST_F(PlotProceduresTest, NothingIsDrawnWhileLoadingOrAfterAProfileError) {
  state.flags.loading = true;
  plot.drawLine();
  state.flags.loading = false;
  state.flags.profileError = true;
  plot.drawLine();
  EXPECT_TRUE(nothingDrawn());
  EXPECT_TRUE(pointer.shapes.empty());
  EXPECT_FALSE(module.bProfileFailed);
}

TEST_F(PlotProceduresTest, ThePointerIsAnHourglassWhileADrawingIsInProgress) {
  bool flagged = false;
  sampler.height = [&](std::size_t) {
    flagged = state.flags.drawing;
    return 100.0F;
  };
  plot.drawLine();
  EXPECT_EQ(pointer.shapes, (Shapes{PointerShape::kHourglass, PointerShape::kDefault}));
  EXPECT_TRUE(flagged);
  EXPECT_FALSE(state.flags.drawing);
}

TEST_F(PlotProceduresTest, AFailedSamplingIsToldOnceAndThePictureKeepsWhatItShowed) {
  drawn();
  sampler.status = 2;
  state.flags.resample = true;
  plot.drawLine();
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(dialogs.messages[0].text, "Some or all of the terrain data is invalid!");
  EXPECT_EQ(dialogs.messages[0].title, "Profile Error");
  EXPECT_EQ(dialogs.messages[0].icon, MessageIcon::kInformation);
  EXPECT_TRUE(nothingDrawn());
  EXPECT_EQ(pointer.shapes, (Shapes{PointerShape::kHourglass, PointerShape::kDefault}));
  EXPECT_FALSE(state.flags.drawing);
  EXPECT_TRUE(state.flags.resample);
  plot.drawLine();
  EXPECT_EQ(dialogs.messages.size(), 1U);
  sampler.status = 0;
  state.flags.profileError = false;
  plot.drawLine();
  EXPECT_FALSE(nothingDrawn());
  EXPECT_FALSE(state.flags.resample);
}

TEST_F(PlotProceduresTest, AFailureIsTrappedAndTakesHourglassAndFlagBack) {
  drawn();
  state.inputs.frequency = 0;
  plot.drawLine();
  expectTrapped("frmProfile:drawLine:4", 11);
  EXPECT_TRUE(module.bProfileFailed);
  EXPECT_FALSE(state.flags.profileError) << "corrected input draws again";
  EXPECT_FALSE(state.flags.drawing);
  EXPECT_EQ(pointer.shapes.back(), PointerShape::kDefault);
  EXPECT_TRUE(nothingDrawn());
  state.inputs.frequency = 950;
  plot.drawLine();
  EXPECT_FALSE(nothingDrawn());
}

TEST_F(PlotProceduresTest, AFailureAfterASamplingSamplesAgainAtTheNextDrawing) {
  store.set("Colors", "cLRMarker", "9999999999");
  plot.drawLine();
  expectTrapped("frmProfile:drawLine:5", 6);
  EXPECT_TRUE(state.flags.resample);
  store.set("Colors", "cLRMarker", "0");
  plot.drawLine();
  EXPECT_EQ(sampler.samplings, 2);
  EXPECT_FALSE(state.flags.resample);
}

TEST_F(PlotProceduresTest, APointerThatFailsIsTrappedAndLosesNoDrawingOnItsWayBack) {
  pointer.failing = true;
  plot.drawLine();
  EXPECT_TRUE(module.bProfileFailed);
  EXPECT_FALSE(state.flags.drawing);
  EXPECT_TRUE(nothingDrawn());
}

TEST_F(PlotProceduresTest, AnImpossibleHeightStopsTheDrawing) {
  sampler.height = [](std::size_t) { return -300.0F; };
  plot.drawLine();
  EXPECT_TRUE(nothingDrawn());
  EXPECT_FALSE(state.flags.drawing);
  EXPECT_EQ(pointer.shapes.back(), PointerShape::kDefault);
}

TEST_F(PlotProceduresTest, AFailureInOnePartKeepsTheOthers) {
  store.set("Profile", "Prf_Ele", "40000");
  plot.drawLine();
  expectTrapped("frmProfile:drawRangeAndHeight:0", 6);
  EXPECT_TRUE(module.bProfileFailed);
  EXPECT_TRUE(canvas.linesIn(0xFF00FF).empty());
  EXPECT_EQ(canvas.linesIn(0xFF0000).size(), 1U) << "the line of sight";
  EXPECT_EQ(canvas.linesIn(kBlack).size(), 12U) << "the ground";
  EXPECT_FALSE(state.flags.resample);

  dialogs.messages.clear();
  store.set("Profile", "Prf_Ele", "3");
  store.set("Profile", "Prf_Rng", "40000");
  plot.drawLine();
  expectTrapped("frmProfile:drawRangeAndHeight:2", 6);
  EXPECT_EQ(canvas.linesIn(0x00FF00).size(), 48U);

  dialogs.messages.clear();
  store.set("Profile", "Prf_Rng", "3");
  store.set("Colors", "cLOS", "9999999999");
  plot.drawLine();
  expectTrapped("frmProfile:drawFresnel1:0", 6);
  EXPECT_EQ(canvas.linesIn(kBlack).size(), 12U);
}

TEST_F(PlotProceduresTest, TheSliderRaisesTheTop) {
  drawn();
  const double top = plot.view().scale.top;
  panel.exaggeration = 300;
  plot.drawLine();
  EXPECT_DOUBLE_EQ(plot.view().scale.top, 2 * top);  // 4 / 2
}

// --- the canvas ---

TEST_F(PlotProceduresTest, TheCanvasIsPreparedOnceTheProfileStandsAndBeforeTheScaleIsSet) {
  int prepared = 0;
  onPrepare = [&] {
    ++prepared;
    EXPECT_EQ(sampler.samplings, 1) << "the terrain is there";
    EXPECT_EQ(state.lineOfSight.startTop, 130) << "and the lines";
    EXPECT_TRUE(nothingDrawn());
    EXPECT_TRUE(state.flags.drawing);
  };
  plot.drawLine();
  EXPECT_EQ(prepared, 1);
  EXPECT_FALSE(nothingDrawn());
}

TEST_F(PlotProceduresTest, TheCanvasIsLeftAloneWhenNothingIsDrawn) {
  drawn();
  bool prepared = false;
  onPrepare = [&] { prepared = true; };
  panel.frequency = "";
  plot.drawLine();
  panel.frequency = "950";
  state.flags.loading = true;
  plot.drawLine();
  state.flags.loading = false;
  state.flags.resample = true;
  sampler.status = 3;
  plot.drawLine();
  EXPECT_FALSE(prepared) << "the picture keeps what it showed";
}

TEST_F(PlotProceduresTest, ACanvasThatCannotBePreparedIsAFailureOfTheDrawing) {
  onPrepare = [] { throw RuntimeError::outOfMemory(); };
  plot.drawLine();
  expectTrapped("frmProfile:drawLine:5", 7);
  EXPECT_TRUE(nothingDrawn());
  EXPECT_TRUE(state.flags.resample);
}

TEST_F(PlotProceduresTest, ADrawingNeedsNoPreparationOfItsCanvas) {
  PlotProcedures::Services services = plotServices();
  services.prepareCanvas = nullptr;
  PlotProcedures(services, reader, state).drawLine();
  EXPECT_FALSE(nothingDrawn());
}

// --- losses ---

TEST_F(PlotProceduresTest, TheFreeSpaceLossIsShownAtEachDrawing) {
  plot.drawLine();
  // 20 log 950 + 32.4 + 20 log 10 = 59.5545 + 32.4 + 20 dB
  EXPECT_EQ(text(readout::kFreeSpaceLoss), "111.95");
  EXPECT_EQ(plot.view().freeSpaceLoss, "111.95");
  state.inputs.frequency = 100;
  plot.drawLine();
  EXPECT_EQ(text(readout::kFreeSpaceLoss), "92.4");
}

TEST_F(PlotProceduresTest, TheModeledLossIsComputedWhenItIsPending) {
  plot.drawLine();
  EXPECT_FALSE(state.flags.modeledLossPending);
  const std::string loss = text(readout::kModeledLoss);
  EXPECT_FALSE(loss.empty());
  state.inputs.frequency = 2000;
  plot.drawLine();
  EXPECT_EQ(text(readout::kModeledLoss), loss) << "not pending";
  state.flags.modeledLossPending = true;
  plot.drawLine();
  EXPECT_NE(text(readout::kModeledLoss), loss);
  EXPECT_FALSE(state.flags.modeledLossPending);
}

TEST_F(PlotProceduresTest, ALossOfZeroIsShownAsNothing) {
  state.inputs.frequency = 19;
  plot.drawLine();
  EXPECT_EQ(text(readout::kModeledLoss), "");
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(PlotProceduresTest, AModelThatFailsIsToldOnceAndLeavesTheProfileAlone) {
  plot.drawLine();
  state.inputs.antennaHeights = {-1, 30};
  state.flags.modeledLossPending = true;
  plot.drawLine();
  expectTrapped("frmProfile:UpdateModeledLoss:1", 5);
  EXPECT_EQ(text(readout::kModeledLoss), "");
  EXPECT_FALSE(module.bProfileFailed);
  EXPECT_EQ(canvas.linesIn(kBlack).size(), 12U) << "the ground is drawn";
  plot.drawLine();
  EXPECT_EQ(dialogs.messages.size(), 1U);
}

TEST_F(PlotProceduresTest, WithoutModelParametersTheModeledLossIsEmpty) {
  state.model.reset();
  readouts.show(readout::kModeledLoss, "120");
  plot.UpdateModeledLoss();
  EXPECT_EQ(text(readout::kModeledLoss), "");
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(PlotProceduresTest, LossesUseTheUsersDecimalSeparator) {
  PlotProcedures::Services services = plotServices();
  services.style.numbers = {",", "."};
  PlotProcedures(services, reader, state).drawLine();
  EXPECT_EQ(text(readout::kFreeSpaceLoss), "111,95");
}

// --- expand ---

TEST_F(PlotProceduresTest, ExpandTogglesBetweenTheMarkersAndTheWholePath) {
  drawn();
  placeBoth(3, 7);
  plot.mnuProfileExpand_Click();
  EXPECT_TRUE(state.expanded);
  EXPECT_EQ(text(readout::kExpandCaption), "Normal");
  EXPECT_EQ(plot.view().scale.left, 3);
  EXPECT_EQ(plot.view().scale.right, 7);
  plot.mnuProfileExpand_Click();
  EXPECT_FALSE(state.expanded);
  EXPECT_EQ(text(readout::kExpandCaption), "Expand");
  EXPECT_EQ(plot.view().scale.right, state.path.extendedLength);
}

TEST_F(PlotProceduresTest, ExpandNeedsBothMarkersAndMoreThanATenthOfAKilometre) {
  drawn();
  plot.mnuProfileExpand_Click();
  EXPECT_FALSE(state.expanded) << "no marker";
  plot.Picture1_MouseDown(5, 0);
  plot.mnuProfileExpand_Click();
  EXPECT_FALSE(state.expanded) << "one marker";
  plot.Picture1_MouseDown(5.05F, 0);
  canvas.forgetOperations();
  plot.mnuProfileExpand_Click();
  EXPECT_FALSE(state.expanded) << "too near";
  EXPECT_TRUE(nothingDrawn());
  EXPECT_EQ(text(readout::kExpandCaption), "");
}

TEST_F(PlotProceduresTest, AnExpandedViewWhoseMarkersCameTooNearGoesBackToTheWholePath) {
  drawn();
  placeBoth(3, 7);
  plot.mnuProfileExpand_Click();
  plot.cmdClear1_Click();
  EXPECT_TRUE(state.expanded) << "clearing keeps the view";
  plot.Picture1_MouseDown(6.95F, 0);
  canvas.forgetOperations();
  plot.drawLine();
  EXPECT_FALSE(state.expanded);
  EXPECT_EQ(text(readout::kExpandCaption), "Expand");
  EXPECT_EQ(std::count_if(canvas.operations().begin(), canvas.operations().end(),
                          [](const RecordedOperation& operation) {
                            return std::holds_alternative<RecordedClear>(operation);
                          }),
            1)
      << "it is drawn once";
  EXPECT_EQ(plot.view().scale.right, state.path.extendedLength);
  EXPECT_FALSE(state.flags.drawing);
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(PlotProceduresTest, GoingBackToTheWholePathSamplesTheTerrainOnce) {
  test::expandBetween(state, 5, 5.05F);
  plot.drawLine();
  EXPECT_FALSE(state.expanded);
  EXPECT_EQ(sampler.samplings, 1);
  EXPECT_FALSE(state.flags.resample);
  EXPECT_EQ(plot.view().scale.right, state.path.extendedLength);
}

TEST_F(PlotProceduresTest, GoingBackToTheWholePathSamplesAgainAfterItsDrawingFailed) {
  test::expandBetween(state, 5, 5.05F);
  store.set("Colors", "cLRMarker", "9999999999");
  plot.drawLine();
  expectTrapped("frmProfile:drawLine:5", 6);
  EXPECT_FALSE(state.expanded);
  EXPECT_TRUE(state.flags.resample) << "cleared only after a successful sampling and drawing";
  EXPECT_FALSE(state.flags.drawing);
  store.set("Colors", "cLRMarker", "0");
  plot.drawLine();
  EXPECT_EQ(sampler.samplings, 2);
  EXPECT_FALSE(state.flags.resample);
}

TEST_F(PlotProceduresTest, HighGroundInFeetIsDrawnWithoutATrap) {
  sampler.height = [](std::size_t i) { return 11000.0F + 1000.0F * static_cast<float>(i % 2); };
  store.set("Settings", "DispUnits", "1");
  load();
  for (const double exaggeration : {0.0, 100.0, 500.0}) {
    panel.exaggeration = exaggeration;
    plot.drawLine();
  }
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_FALSE(module.bProfileFailed);
  EXPECT_EQ(canvas.linesIn(0x00FF00).size(), 4U * 12) << "of the last one";
}

TEST_F(PlotProceduresTest, TheStrobeIsForgottenByADrawing) {
  drawn();
  plot.Picture1_MouseMove(5, 100);
  EXPECT_TRUE(plot.view().strobe.shown);
  plot.drawLine();
  EXPECT_FALSE(plot.view().strobe.shown);
}

// --- markers ---

TEST_F(PlotProceduresTest, ClearingAMarkerLeavesThePictureOfAFreshDrawing) {
  drawn();
  placeBoth(3, 7);
  plot.drawLine();
  const std::vector<RecordedLine> fresh = freshLines();
  plot.cmdClear1_Click();
  plot.cmdClear2_Click();
  EXPECT_EQ(canvas.lines(), fresh);
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(PlotProceduresTest, AMarkerThatNothingCrossedIsErasedByItsLineAlone) {
  drawn();
  plot.Picture1_MouseDown(5, 0);
  canvas.forgetOperations();
  plot.cmdClear1_Click();
  EXPECT_EQ(canvas.lines().size(), 1U);
  EXPECT_FALSE(canvas.wasCleared());
}

TEST_F(PlotProceduresTest, FailuresOfTheHandlersAreTrappedUnderTheirNamesAndLeaveTheProfileAlone) {
  drawn();
  struct {
    std::function<void()> call;
    const char* location;
  } const rows[] = {
      {[&] { plot.Picture1_MouseDown(5, 0); }, "frmProfile:Picture1_MouseDown:0"},
      {[&] { plot.Picture1_MouseMove(5, 0); }, "frmProfile:Picture1_MouseMove:0"},
      {[&] { plot.cmdClear1_Click(); }, "frmProfile:cmdClear1_Click:0"},
      {[&] { plot.cmdClear2_Click(); }, "frmProfile:cmdClear2_Click:0"},
  };
  for (const auto& row : rows) {
    state.leftMarker.shown = state.rightMarker.shown = false;
    if (std::string(row.location).find("Clear") != std::string::npos) test::showMarkersAt(state, 3, 7);
    dialogs.messages.clear();
    store.memory.failing = true;
    row.call();
    store.memory.failing = false;
    expectTrapped(row.location, 70);
    EXPECT_FALSE(module.bProfileFailed) << row.location;
  }
}

TEST_F(PlotProceduresTest, APrintIsAskedForByADoubleClick) {
  plot.Form_DblClick();
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(dialogs.messages[0].text, "Print Profile?");
  EXPECT_EQ(dialogs.messages[0].title, "");
  EXPECT_EQ(dialogs.messages[0].buttons, MessageButtons::kYesNo);
  EXPECT_EQ(printed, 1);
  dialogs.answer = MessageAnswer::kNo;
  plot.Form_DblClick();
  EXPECT_EQ(printed, 1);
}

TEST_F(PlotProceduresTest, AFailedPrintIsTrappedUnderTheDoubleClicksName) {
  PlotProcedures::Services services = plotServices();
  services.printProfile = [] { throw RuntimeError::actionNotSupported(); };
  PlotProcedures failing(services, reader, state);
  failing.Form_DblClick();
  ASSERT_EQ(dialogs.messages.size(), 2U);
  EXPECT_NE(dialogs.messages[1].text.find("frmProfile:Form_DblClick:0"), std::string::npos);
}

TEST_F(PlotProceduresTest, WithoutPrintingADoubleClickAsksNothing) {
  PlotProcedures::Services services = plotServices();
  services.printProfile = nullptr;
  PlotProcedures(services, reader, state).Form_DblClick();
  EXPECT_TRUE(dialogs.messages.empty());
}

}  // namespace
}  // namespace zel
