#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "export/gnuplot_script.h"
#include "export_fixture.h"
#include "support/environment_variable.h"
#include "zel/automation.h"

namespace zel {
namespace {

namespace fs = std::filesystem;
using test::fileBytes;
using test::writeBytes;
using Answers = std::vector<std::string>;

constexpr const char* kResults =
    "sample,distance_km,diffraction_loss_db,clutter_loss_db,level_dbuvm\r\n1,0,-999,-999,-999\r\n"
    "2,1,0,0,106.25\r\n3,2,0,0,100.25\r\n";

// The first bytes and the last of every PNG.
constexpr std::string_view kPicture = "\x89PNG\r\n\x1A\n...IEND\xAE\x42\x60\x82";

struct SignalGraphTest : test::ExportFixture {
  test::TemporaryFolder temporary;
  test::EnvironmentVariable tmp{"tmp", temporary.path().string()};
  std::string scratchText, companionText;
  std::string results = kResults;

  void SetUp() override {
    ExportFixture::SetUp();
    host.bind(makePropertyBag({{"ProductName", std::string("Sky Planner")}}));
    module.helperProgramFolder = "/opt/helpers";
    dialogs.answers = {"2.5", "3", "4.5", "0", "10000", "Ridge"};
    programs.onRun = [this](const ProgramCall& call) {
      journal.push_back("run");
      scratchText = fileBytes(call.arguments[0]);
      companionText = fileBytes(call.arguments[0] + ".par");
      writeBytes(call.arguments[1], results);
      return ProgramOutcome{true, false, 0, {}};
    };
  }
  ExportOutcome graph(const std::string& path) { return procedures().lMakeGNUSignalPlot(path); }
  ExportOutcome graph() { return graph(file("graph.png")); }
  ExportOutcome given(SignalGraphRequest request) {
    ExportProcedures all = procedures();
    const ExportOutcome outcome = all.lMakeGNUSignalPlot(file("graph.png"), request);
    failure = all.failure();
    return outcome;
  }
  static SignalGraphRequest request() { return {{2.5, 3, 4.5}, 0, std::nullopt, "Ridge", false}; }
  std::string data() const { return fileBytes(file("graph.dat")); }
  std::string script() const { return fileBytes(file("graph.plt")); }
  std::string resultFile() const { return fileBytes(file("graph_PTP.txt")); }
  std::string logged() const { return fileBytes(logFolder / "zelErrorLog.txt"); }
  bool scratchIsGone() const {
    return !fs::exists(temporary / "Sky Planner") || fs::is_empty(temporary / "Sky Planner");
  }
  void writeOldFiles() {
    for (const char* name : {"graph.dat", "graph.plt", "graph_PTP.txt"}) writeBytes(file(name), "old");
  }
  void expectOldFiles() {
    for (const char* name : {"graph.dat", "graph.plt", "graph_PTP.txt"})
      EXPECT_EQ(fileBytes(file(name)), "old") << name;
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 3);
    EXPECT_TRUE(scratchIsGone());
  }
  void expectLogged(const std::string& begin, int step) {
    const std::string text = logged();
    EXPECT_TRUE(text.starts_with("11/15/26 19:05:03 Error " + begin)) << text;
    EXPECT_TRUE(text.ends_with(") on line " + std::to_string(step) +
                               " in procedure lMakeGNUSignalPlot of Form frmProfile\r\n"))
        << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
    EXPECT_TRUE(dialogs.messages.empty()) << "no box";
    EXPECT_TRUE(scratchIsGone());
  }
  std::vector<std::string> dataLines() const {
    std::vector<std::string> lines;
    std::istringstream text(data());
    for (std::string line; std::getline(text, line);) lines.push_back(line.substr(0, line.size() - 1));
    return lines;
  }

  std::optional<RuntimeError> failure;
};

// --- checks ---

TEST_F(SignalGraphTest, ANameOfLessThanFiveCharactersEndsItSilently) {
  for (const std::string name : {"", "a", "abcd"}) EXPECT_EQ(graph(name), ExportOutcome::kNothing);
  EXPECT_TRUE(journal.empty());
}

TEST_F(SignalGraphTest, NeedsThreeSamplesFromStationToStation) {
  state.path.intervals = 2;
  state.path.lastIndex = 3;
  EXPECT_EQ(graph(), ExportOutcome::kWritten);
  EXPECT_EQ(dataLines().size(), 13U);
  state.path.intervals = 1;
  state.path.lastIndex = 2;
  journal.clear();
  EXPECT_EQ(graph(), ExportOutcome::kNothing);
  EXPECT_TRUE(journal.empty());
}

TEST_F(SignalGraphTest, NeedsASpacingAndAFrequencyFrom20To20000MHz) {
  for (const auto& [frequency, outcome] : {std::pair{19.9F, ExportOutcome::kNothing},
                                           {20.0F, ExportOutcome::kWritten},
                                           {20000.0F, ExportOutcome::kWritten},
                                           {20001.0F, ExportOutcome::kNothing}}) {
    state.inputs.frequency = frequency;
    EXPECT_EQ(given(request()), outcome) << frequency;
  }
  state.inputs.frequency = 950;
  state.path.spacing = 0;
  EXPECT_EQ(given(request()), ExportOutcome::kNothing);
  EXPECT_FALSE(failure);
  EXPECT_EQ(logged(), "");
}

TEST_F(SignalGraphTest, AProfileThatIsNoneEndsItSilently) {
  state.flags.profileError = true;
  EXPECT_EQ(graph(), ExportOutcome::kNothing);
  EXPECT_TRUE(journal.empty());
}

// --- prompts ---

TEST_F(SignalGraphTest, AsksSixTimesInOrderAndSaysDone) {
  EXPECT_EQ(graph(), ExportOutcome::kWritten);
  EXPECT_EQ(journal, (test::Journal{"input: Enter transmit power along this path (in kW)",
                                    "input: Enter Longley-Rice Clutter Value (in dB)",
                                    "input: Enter Point-to-Point Clutter Value (in dB)",
                                    "input: Distance from Transmitter to Start of Plot? (in meters)",
                                    "input: Distance from Transmitter to End of Plot? (in meters)",
                                    "input: Enter Title for the Plot", "hourglass", "run", "pointer default",
                                    "message: Done"}));
  std::vector<std::string> titles, defaults;
  for (const InputBoxRequest& input : dialogs.inputs) {
    titles.push_back(input.title);
    defaults.push_back(input.defaultText);
  }
  EXPECT_EQ(titles, (Answers{"Power in kW", "", "", "", "", ""}));
  EXPECT_EQ(defaults, (Answers{"0", "0", "0", "0", "10000", ""}));
  EXPECT_EQ(dialogs.messages[0].title, "");
}

TEST_F(SignalGraphTest, OffersWhatWasLastEnteredForPowerAndClutters) {
  numbers = test::commaStyle();
  dialogs.answers = {" 2.5 kW", "-3", "no", "0", "10000", ""};
  graph();
  EXPECT_EQ(module.graphErp, 2.5);
  EXPECT_EQ(module.graphLongleyRiceClutter, -3);
  EXPECT_EQ(module.graphPointToPointClutter, 0);
  dialogs.inputs.clear();
  graph();
  EXPECT_EQ(dialogs.inputs[0].defaultText, "2.5") << "reads back as it is";
  EXPECT_EQ(dialogs.inputs[1].defaultText, "-3");
  EXPECT_EQ(dialogs.inputs[2].defaultText, "0");
  EXPECT_EQ(dialogs.inputs[3].defaultText, "0");
}

TEST_F(SignalGraphTest, APowerOfZeroOrLessEndsItAtOnceAndIsRemembered) {
  module.graphErp = 7;
  for (const std::string power : {"0", "", "-1", "kW 5"}) {
    dialogs.inputs.clear();
    dialogs.answers = {power};
    EXPECT_EQ(graph(), ExportOutcome::kNothing) << power;
    EXPECT_EQ(dialogs.inputs.size(), 1U);
  }
  EXPECT_EQ(module.graphErp, 0);
  EXPECT_TRUE(nothingWritten());
  EXPECT_EQ(logged(), "");
}

TEST_F(SignalGraphTest, TheEndOffersThePathsLengthInMetres) {
  state.path.distance = 10.0625;
  numbers = test::commaStyle();
  graph();
  EXPECT_EQ(dialogs.inputs[4].defaultText, "10062,5");
}

TEST_F(SignalGraphTest, StartAndEndAreTakenWithTheUsersSeparatorOrAPoint) {
  numbers = test::commaStyle();
  dialogs.answers = {"2.5", "3", "4.5", " 2500,5 ", "6500.5", "Ridge"};
  EXPECT_EQ(graph(), ExportOutcome::kWritten);
  const auto lines = dataLines();
  EXPECT_TRUE(lines[10 + 2].starts_with('#'));
  EXPECT_FALSE(lines[10 + 3].starts_with('#'));
  EXPECT_FALSE(lines[10 + 7].starts_with('#'));
  EXPECT_TRUE(lines[10 + 8].starts_with('#'));
}

TEST_F(SignalGraphTest, AStartOrEndThatIsNoNumberEndsItThroughTheErrorLog) {
  for (const std::string answer : {"", "x", "12 m", "1,5", "1.5.5", "--1"}) {
    for (const std::size_t prompt : {3U, 4U}) {
      dialogs.inputs.clear();
      dialogs.answers = {"2.5", "3", "4.5", "0", "10000", "Ridge"};
      dialogs.answers[prompt] = answer;
      fs::remove(logFolder / "zelErrorLog.txt");
      EXPECT_EQ(graph(), ExportOutcome::kFailed) << answer;
      expectLogged("13 (Type mismatch", 1);
      EXPECT_EQ(dialogs.inputs.size(), prompt + 1);
    }
  }
  EXPECT_TRUE(nothingWritten());
}

TEST_F(SignalGraphTest, AnEndNotBeyondTheStartIsToldAndBothAreAskedAgain) {
  dialogs.answers = {"2.5", "3", "4.5", "4000", "4000", "9000", "100", "1000", "1501", "Ridge"};
  EXPECT_EQ(graph(), ExportOutcome::kWritten);
  ASSERT_EQ(dialogs.messages.size(), 3U);
  EXPECT_EQ(dialogs.messages[0].text, "!End of Path must be beyond Start of Path!\r\n  Try Again.");
  EXPECT_EQ(dialogs.messages[0].title, "Path Error.");
  EXPECT_EQ(dialogs.messages[0].icon, MessageIcon::kNone);
  EXPECT_EQ(dialogs.messages[1].text, dialogs.messages[0].text);
  EXPECT_EQ(dialogs.inputs[5].prompt, "Distance from Transmitter to Start of Plot? (in meters)");
  EXPECT_EQ(dialogs.inputs[6].prompt, "Distance from Transmitter to End of Plot? (in meters)");
  EXPECT_EQ(dialogs.inputs[6].defaultText, "10000");
}

TEST_F(SignalGraphTest, AStretchThatReachesBeyondThePathEndsWithIt) {
  dialogs.answers = {"2.5", "3", "4.5", "-5000", "30000", "Ridge"};
  EXPECT_EQ(graph(), ExportOutcome::kWritten);
  EXPECT_EQ(dialogs.messages.size(), 1U) << "Done";
  EXPECT_FALSE(dataLines().back().starts_with('#'));
}

TEST_F(SignalGraphTest, AStretchBeyondThePathLeavesEveryLineAComment) {
  dialogs.answers = {"2.5", "3", "4.5", "20000", "30000", "Ridge"};
  EXPECT_EQ(graph(), ExportOutcome::kWritten);
  EXPECT_EQ(dialogs.messages.size(), 1U) << "Done";
  EXPECT_TRUE(dataLines().back().starts_with('#'));
}

TEST_F(SignalGraphTest, WhatChangesWhileItAsksOrRunsReachesNoLine) {
  graph();
  const std::string expected = data();
  dialogs.inputs.clear();
  dialogs.onInput = eventLoop.onEvents = [this] { state = ProfileViewState{}; };
  EXPECT_EQ(graph(), ExportOutcome::kWritten);
  EXPECT_EQ(data(), expected);
}

// --- the point-to-point program ---

TEST_F(SignalGraphTest, StartsTheProgramWithItsItemsInOrderForAMinuteAtMost) {
  state.inputs.frequency = 98.7F;
  state.inputs.antennaHeights = {30, 12};
  numbers = test::commaStyle();
  graph();
  ASSERT_EQ(programs.runs.size(), 1U);
  const ProgramCall& call = programs.runs[0];
  EXPECT_EQ(call.program, "/opt/helpers/vexptp.exe");
  ASSERT_EQ(call.arguments.size(), 7U);
  const fs::path scratch = call.arguments[0];
  EXPECT_EQ(scratch.parent_path(), temporary / "Sky Planner");
  EXPECT_EQ(call.arguments[1], file("graph_PTP.txt"));
  EXPECT_EQ(call.arguments[2], "98.7");
  EXPECT_EQ(call.arguments[3], "2.5");
  EXPECT_EQ(call.arguments[4], "12");
  EXPECT_EQ(call.arguments[5], "4.5");
  EXPECT_EQ(call.arguments[6], scratch.filename());
  EXPECT_EQ(programs.limits[0], 60000);
}

TEST_F(SignalGraphTest, GivesItTheHeightsAndTheirCompanionAndTakesThemAway) {
  store.set("PTP", "Permittivity", "80");
  store.set("PTP", "Polarization", "1");
  graph();
  EXPECT_EQ(
      scratchText,
      "START\r\n101.00\r\n102.00\r\n103.00\r\n104.00\r\n105.00\r\n106.00\r\n107.00\r\n108.00\r\n109.00\r\n"
      "110.00\r\n111.00\r\n");
  EXPECT_EQ(companionText,
            "spacing_km=1\r\ntx_amsl_m=131\r\nsamples=11\r\npolarization=1\r\npermittivity=80\r\n"
            "conductivity=0.005\r\nclutter_category=0\r\nclutter_height_m=0\r\n");
  EXPECT_TRUE(scratchIsGone());
}

TEST_F(SignalGraphTest, ReadsItsLevelsBack) {
  graph();
  const auto lines = dataLines();
  EXPECT_EQ(test::fieldsOf(lines[11])[3], "106.25");
  EXPECT_EQ(test::fieldsOf(lines[12])[3], "100.25");
  EXPECT_EQ(test::fieldsOf(lines[13])[3], "NaN") << "fewer rows than samples";
  EXPECT_EQ(resultFile(), kResults) << "the result file stays";
}

TEST_F(SignalGraphTest, HandlesPendingEventsBeforeAndDuringTheProgramAndAtEachSample) {
  int before = 0;
  const auto run = programs.onRun;
  programs.onRun = [&](const ProgramCall& call) {
    before = eventLoop.runs;
    return run(call);
  };
  graph();
  EXPECT_EQ(before, 1);
  EXPECT_EQ(eventLoop.runs, 13);
}

TEST_F(SignalGraphTest, AProgramThatDoesNotEndIsGoneOnWithoutWithWhatItHasWritten) {
  programs.onRun = [](const ProgramCall& call) {
    writeBytes(call.arguments[1], std::string(kResults) + "4,3,0,0,9");
    return ProgramOutcome{false, false, 0, {}};
  };
  EXPECT_EQ(graph(), ExportOutcome::kWritten);
  EXPECT_EQ(test::fieldsOf(dataLines()[12])[3], "100.25");
  EXPECT_EQ(test::fieldsOf(dataLines()[13])[3], "NaN");
  EXPECT_EQ(dialogs.messages.back().text, "Done");
}

TEST_F(SignalGraphTest, AProgramThatFellShortIsAWarning) {
  ProgramOutcome outcome{false, false, 0, {}};
  std::string text = std::string(kResults) + "4,3,0,0,9";
  programs.onRun = [&](const ProgramCall& call) {
    writeBytes(call.arguments[1], text);
    return outcome;
  };
  const auto warnings = [this] {
    ExportProcedures all = procedures();
    EXPECT_EQ(all.lMakeGNUSignalPlot(file("graph.png"), request()), ExportOutcome::kWritten);
    return all.warnings();
  };
  EXPECT_EQ(warnings(),
            Answers{"vexptp.exe did not end within a minute: the point-to-point curve has 2 of 10 "
                    "samples beyond the first"});
  outcome = {true, true, 0, {}};
  EXPECT_EQ(warnings(),
            Answers{"vexptp.exe was killed: the point-to-point curve has 2 of 10 samples beyond the first"});
  outcome = {true, false, 1, "no room\n"};
  EXPECT_EQ(warnings(), Answers{"vexptp.exe failed (no room): the point-to-point curve has 2 of 10 samples "
                                "beyond the first"});
  outcome = {true, false, 0, {}};
  EXPECT_EQ(warnings(), Answers{});
  text = "hello\n";
  EXPECT_EQ(
      warnings(),
      Answers{"vexptp.exe gives no level: the point-to-point curve has 0 of 10 samples beyond the first"});
}

TEST_F(SignalGraphTest, AProgramThatWritesNothingEndsItThroughTheErrorLog) {
  writeOldFiles();
  programs.onRun = [](const ProgramCall&) {
    return ProgramOutcome{true, false, 1, "vexptp.exe: no\nheights\n"};
  };
  EXPECT_EQ(graph(), ExportOutcome::kFailed);
  expectLogged(
      "53 (File not found: no results of /opt/helpers/vexptp.exe (vexptp.exe: no heights)) on line 4 in", 4);
  expectOldFiles();
  EXPECT_EQ(pointer.shapes.back(), PointerShape::kDefault);
}

TEST_F(SignalGraphTest, AKilledProgramWithoutResultsIsTheSame) {
  programs.onRun = [](const ProgramCall&) { return ProgramOutcome{true, true, 0, {}}; };
  EXPECT_EQ(graph(), ExportOutcome::kFailed);
  expectLogged("53 (File not found: no results of /opt/helpers/vexptp.exe) on line", 4);
  EXPECT_TRUE(nothingWritten());
}

TEST_F(SignalGraphTest, AnAbsentProgramEndsItThroughTheErrorLog) {
  writeOldFiles();
  programs.onRun = [](const ProgramCall&) -> ProgramOutcome { throw RuntimeError::fileNotFound(); };
  EXPECT_EQ(graph(), ExportOutcome::kFailed);
  expectLogged("53 (File not found)", 4);
  expectOldFiles();
}

TEST_F(SignalGraphTest, WithoutARunnerItSaysSo) {
  ExportProcedures::Services services;
  services.geodesy = &geodesy;
  services.dialogs = &dialogs;
  services.pointer = &pointer;
  services.eventLoop = &eventLoop;
  services.module = &module;
  services.trapped = &window;
  services.normalTable = &normalTable;
  services.host = &host;
  services.errorLog = &log;
  ExportProcedures all(services, reader, state);
  EXPECT_EQ(all.lMakeGNUSignalPlot(file("graph.png"), request()), ExportOutcome::kFailed);
  ASSERT_TRUE(all.failure());
  EXPECT_EQ(all.failure()->number(), 445);
}

TEST_F(SignalGraphTest, TheResultsOfAnEarlierRunAreNotTakenForNewOnes) {
  writeBytes(file("graph_PTP.txt"), kResults);
  programs.onRun = [](const ProgramCall&) { return ProgramOutcome{false, false, 0, {}}; };
  EXPECT_EQ(graph(), ExportOutcome::kFailed);
  EXPECT_EQ(resultFile(), kResults) << "and they stay";
  EXPECT_FALSE(fs::exists(file("graph.dat")));
}

TEST_F(SignalGraphTest, WithoutAFolderItIsNotLookedForAlongThePath) {
  module.helperProgramFolder.clear();
  EXPECT_EQ(graph(), ExportOutcome::kFailed);
  expectLogged("76 (Path not found: the folder of vexptp.exe is not known)", 4);
  EXPECT_TRUE(programs.runs.empty());
  EXPECT_TRUE(nothingWritten());
}

// --- files ---

TEST_F(SignalGraphTest, ABaseNameThatLeavesJustEnoughRoomIsWrittenTwice) {
  store.set("Settings", "gnuPlotEXE", "/opt/gnuplot");
  const std::string base(245, 'n');
  const auto run = programs.onRun;
  programs.onRun = [&](const ProgramCall& call) {
    if (call.program != "/opt/gnuplot") return run(call);
    writeBytes(file(base + ".png"), std::string(kPicture));
    return ProgramOutcome{true, false, 0, {}};
  };
  SignalGraphRequest waiting = request();
  waiting.waitForPicture = true;
  for (int time = 1; time <= 2; ++time)
    EXPECT_EQ(procedures().lMakeGNUSignalPlot(file(base + ".png"), waiting), ExportOutcome::kWritten) << time;
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 4);
}

TEST_F(SignalGraphTest, ThroughLinksResultsAndPictureAreTheFilesBehindThem) {
  store.set("Settings", "gnuPlotEXE", "/opt/gnuplot");
  const test::TemporaryFolder elsewhere;
  const std::string results_ = (elsewhere / "real.txt").string(), picture = (elsewhere / "real.png").string();
  writeBytes(results_, "old");
  writeBytes(picture, "old");
  fs::create_symlink(results_, file("graph_PTP.txt"));
  fs::create_symlink(picture, file("graph.png"));
  const auto run = programs.onRun;
  programs.onRun = [&](const ProgramCall& call) {
    if (call.program != "/opt/gnuplot") return run(call);
    EXPECT_NE(script().find('"' + picture + '"'), std::string::npos) << script();
    writeBytes(picture, std::string(kPicture));
    return ProgramOutcome{true, false, 0, {}};
  };
  SignalGraphRequest waiting = request();
  waiting.waitForPicture = true;
  EXPECT_EQ(given(waiting), ExportOutcome::kWritten);
  EXPECT_EQ(programs.runs[0].arguments[1], results_);
  EXPECT_TRUE(fs::is_symlink(file("graph_PTP.txt")));
  EXPECT_TRUE(fs::is_symlink(file("graph.png")));
  EXPECT_EQ(fileBytes(results_), kResults);
  EXPECT_EQ(fileBytes(picture), kPicture);
}

// gnuplot would run what follows the bar.
TEST_F(SignalGraphTest, ALinkIsNoWayToACommand) {
  const fs::path before = fs::current_path();
  fs::current_path(folder.path());
  fs::create_symlink("|command", "graph.png");
  EXPECT_EQ(procedures().lMakeGNUSignalPlot("graph.png", request()), ExportOutcome::kWritten);
  fs::current_path(before);
  EXPECT_NE(script().find("\"./|command\""), std::string::npos) << script();
  EXPECT_EQ(script().find("\"|command\""), std::string::npos) << script();
}

TEST_F(SignalGraphTest, WritesDataAndScriptByWholeLines) {
  EXPECT_EQ(given(request()), ExportOutcome::kWritten);
  std::string expectedData, expectedScript;
  GraphRange range{1, 10, 60, 70, 0};
  std::vector<PlottedSample> curves;
  writeGraphData(
      test::exportOf(state), {{2.5, 3, 4.5}, 0, 10, "Ridge"}, readPointToPointLevels(kResults, 11),
      [&](std::string_view line) { expectedData.append(line).append("\r\n"); },
      [](std::int32_t, std::int32_t) {},
      [&](const PlottedSample& sample) {
        curves.push_back(sample);
        for (const double level : sample.levels) {
          range.low = std::fmin(range.low, level);
          range.high = std::fmax(range.high, level);
        }
      });
  EXPECT_EQ(data(), expectedData);
  range = graphAxes(range);
  range.labels = labelLevel(curves, range);
  writeGnuplotScript(signalGraphFiles(file("graph.png")), "Ridge",
                     {950, 2.5, 131, 30, 3, 4.5, {36.5, -84.25}, 30}, range,
                     [&](std::string_view line) { expectedScript.append(line).append("\r\n"); });
  EXPECT_EQ(script(), expectedScript);
  EXPECT_GE(range.high, 110) << "the curves set the range";
}

TEST_F(SignalGraphTest, WithItsAnswersGivenItShowsNoBoxAndWritesTheSame) {
  graph();
  const std::string asked = data() + script();
  dialogs.inputs.clear();
  dialogs.messages.clear();
  module.graphErp = 1;
  EXPECT_EQ(given(request()), ExportOutcome::kWritten);
  EXPECT_EQ(data() + script(), asked);
  EXPECT_TRUE(dialogs.inputs.empty());
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(module.graphErp, 1) << "nobody entered anything";
}

TEST_F(SignalGraphTest, AGivenPowerOfZeroEndsItSilently) {
  SignalGraphRequest none = request();
  none.signal.erp = 0;
  EXPECT_EQ(given(none), ExportOutcome::kNothing);
  EXPECT_TRUE(nothingWritten());
}

TEST_F(SignalGraphTest, AGivenStretchThatIsNoneIsAnError) {
  SignalGraphRequest wrong = request();
  wrong.start = 5000;
  wrong.end = 5000;
  EXPECT_EQ(given(wrong), ExportOutcome::kFailed);
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->number(), 5);
  expectLogged("5 (The plotted stretch must begin on the path, and end beyond its beginning)", 1);
  EXPECT_TRUE(nothingWritten());
}

TEST_F(SignalGraphTest, CancelledItLeavesWhatWasThere) {
  writeOldFiles();
  progress = [](std::int32_t done, std::int32_t all) {
    EXPECT_EQ(all, 11);
    return done < 5;
  };
  EXPECT_EQ(graph(), ExportOutcome::kCancelled);
  expectOldFiles();
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(logged(), "");
  EXPECT_TRUE(programs.starts.empty());
  EXPECT_EQ(pointer.shapes.back(), PointerShape::kDefault);
}

TEST_F(SignalGraphTest, CancelledWhereNothingWasItLeavesNothing) {
  progress = [](std::int32_t done, std::int32_t) { return done < 5; };
  EXPECT_EQ(graph(), ExportOutcome::kCancelled);
  EXPECT_TRUE(nothingWritten());
}

TEST_F(SignalGraphTest, CancelledBeforeTheProgramItDoesNotStartIt) {
  progress = [](std::int32_t done, std::int32_t) { return done != 0; };
  EXPECT_EQ(graph(), ExportOutcome::kCancelled);
  EXPECT_TRUE(programs.runs.empty());
  EXPECT_TRUE(nothingWritten());
}

TEST_F(SignalGraphTest, CancelledWhileTheProgramRunsItEndsItAndLeavesWhatWasThere) {
  writeOldFiles();
  progress = [this](std::int32_t, std::int32_t) { return programs.runs.empty(); };
  EXPECT_EQ(graph(), ExportOutcome::kCancelled);
  EXPECT_EQ(programs.runs.size(), 1U);
  expectOldFiles();
  EXPECT_EQ(logged(), "");
}

TEST_F(SignalGraphTest, AFailureOfTheLongleyRiceModelLeavesWhatWasThere) {
  writeOldFiles();
  state.elevation[6] = 1e6F;
  EXPECT_EQ(graph(), ExportOutcome::kFailed);
  expectLogged("5 (The irregular terrain model stopped at point 6 of the signal graph: ", 5);
  expectOldFiles();
}

TEST_F(SignalGraphTest, WithoutModelParametersOrWithWrongSettingsNothingIsTouched) {
  writeOldFiles();
  store.set("PTP", "ClutterCategory", "9");
  EXPECT_EQ(graph(), ExportOutcome::kFailed);
  expectLogged("5 (", 2);
  expectOldFiles();
  fs::remove(logFolder / "zelErrorLog.txt");
  state.model.reset();
  dialogs.inputs.clear();
  EXPECT_EQ(graph(), ExportOutcome::kFailed);
  expectLogged("1101 (", 2);
  EXPECT_TRUE(programs.runs.empty());
}

TEST_F(SignalGraphTest, AFolderThatIsNotThereIsToldBeforeTheProgramRuns) {
  EXPECT_EQ(graph(file("none/graph.png")), ExportOutcome::kFailed);
  expectLogged("76 (Path not found: cannot write ", 2);
  EXPECT_TRUE(programs.runs.empty());
}

// Nobody makes a file there.
TEST_F(SignalGraphTest, AFolderThatCannotBeWrittenToIsToldBeforeTheProgramRuns) {
  EXPECT_EQ(graph("/proc/graph.png"), ExportOutcome::kFailed);
  EXPECT_NE(logged().find(": cannot write /proc/graph.dat ("), std::string::npos) << logged();
  EXPECT_TRUE(programs.runs.empty());
}

TEST_F(SignalGraphTest, AFolderThatVanishesMeanwhileIsToldAndNothingIsLeft) {
  const std::string inner = file("inner");
  fs::create_directory(inner);
  eventLoop.onEvents = [&] {
    if (eventLoop.runs == 5) fs::remove_all(inner);
  };
  EXPECT_EQ(graph(inner + "/graph.png"), ExportOutcome::kFailed);
  expectLogged("76 (Path not found: cannot write ", 6);
  EXPECT_FALSE(fs::exists(inner));
}

TEST_F(SignalGraphTest, AScriptThatCannotBeWrittenLeavesTheOldOneAndTheNewData) {
  writeOldFiles();
  eventLoop.onEvents = [&] {
    if (eventLoop.runs != 5) return;
    fs::remove(file("graph.plt"));
    fs::create_directory(file("graph.plt"));
  };
  EXPECT_EQ(graph(), ExportOutcome::kFailed);
  EXPECT_EQ(logged().find("75 (Path/File access error") == std::string::npos, false) << logged();
  EXPECT_NE(data(), "old");
  EXPECT_EQ(resultFile(), kResults);
}

TEST_F(SignalGraphTest, NoRoomForTheScratchFileIsToldAndNothingIsLeft) {
  const test::EnvironmentVariable gone("tmp", file("gone"));
  EXPECT_EQ(graph(), ExportOutcome::kFailed);
  expectLogged("76 (Path not found: cannot write ", 3);
  EXPECT_TRUE(nothingWritten());
}

// A device in the data's place takes nothing.
TEST_F(SignalGraphTest, AFullDiskIsToldAndTheOtherFilesStay) {
  writeBytes(file("graph.plt"), "old");
  writeBytes(file("graph_PTP.txt"), "old");
  fs::create_symlink("/dev/full", file("graph.dat"));
  EXPECT_EQ(graph(), ExportOutcome::kFailed);
  expectLogged("61 (Disk full: cannot write ", 6);
  EXPECT_EQ(script(), "old");
  EXPECT_EQ(resultFile(), "old");
}

TEST_F(SignalGraphTest, APictureWithoutANameIsToldByNumber) {
  EXPECT_EQ(graph(folder.path().string() + "/"), ExportOutcome::kFailed);
  EXPECT_NE(logged().find("75 (Path/File access error: not the name of a picture"), std::string::npos);
}

// --- gnuplot ---

TEST_F(SignalGraphTest, StartsGnuplotOnTheScriptAndDoesNotWait) {
  store.set("Settings", "gnuPlotEXE", " /opt/gnuplot 5/bin/gnuplot ");
  EXPECT_EQ(graph(), ExportOutcome::kWritten);
  ASSERT_EQ(programs.starts.size(), 1U);
  EXPECT_EQ(programs.starts[0].program, "/opt/gnuplot 5/bin/gnuplot");
  EXPECT_EQ(programs.starts[0].arguments, Answers{file("graph.plt")});
  EXPECT_EQ(programs.runs.size(), 1U);
  EXPECT_EQ(dialogs.messages.back().text, "Done");
}

TEST_F(SignalGraphTest, WithoutTheSettingItIsNotStartedAndTheFilesStay) {
  EXPECT_EQ(graph(), ExportOutcome::kWritten);
  EXPECT_TRUE(programs.starts.empty());
  for (const char* name : {"graph.dat", "graph.plt", "graph_PTP.txt"}) EXPECT_TRUE(fs::exists(file(name)));
  EXPECT_FALSE(fs::exists(file("graph.png")));
  EXPECT_EQ(dialogs.messages.back().text, "Done");
}

TEST_F(SignalGraphTest, AMissingGnuplotGoesToTheErrorLogAndTheFilesStay) {
  store.set("Settings", "gnuPlotEXE", "/nowhere/gnuplot");
  programs.onStart = [](const ProgramCall&) { throw RuntimeError::fileNotFound(); };
  EXPECT_EQ(graph(), ExportOutcome::kFailed);
  expectLogged(
      "53 (File not found: gnuplot as the setting \"gnuPlotEXE\" (section \"Settings\") names it: "
      "/nowhere/gnuplot)",
      7);
  for (const char* name : {"graph.dat", "graph.plt", "graph_PTP.txt"}) EXPECT_TRUE(fs::exists(file(name)));
}

struct SignalGraphPictureTest : SignalGraphTest {
  ProgramOutcome gnuplot{true, false, 0, {}};
  bool draws = true;
  std::string picture{kPicture};
  void SetUp() override {
    SignalGraphTest::SetUp();
    store.set("Settings", "gnuPlotEXE", "gnuplot");
    programs.onRun = [this](const ProgramCall& call) {
      if (call.program == "gnuplot") {
        if (draws) writeBytes(file("graph.png"), picture);
        return gnuplot;
      }
      writeBytes(call.arguments[1], kResults);
      return ProgramOutcome{true, false, 0, {}};
    };
  }
  ExportOutcome waited() {
    SignalGraphRequest all = request();
    all.waitForPicture = true;
    return given(all);
  }
};

TEST_F(SignalGraphPictureTest, IsWaitedForWhenAskedFor) {
  EXPECT_EQ(waited(), ExportOutcome::kWritten);
  EXPECT_TRUE(programs.starts.empty());
  ASSERT_EQ(programs.runs.size(), 2U);
  EXPECT_EQ(programs.runs[1].arguments, Answers{file("graph.plt")});
  EXPECT_EQ(programs.limits[1], 60000);
}

TEST_F(SignalGraphPictureTest, CancelledWhileGnuplotDrawsTheOldOneStaysBesideTheNewScript) {
  writeBytes(file("graph.png"), "old");
  progress = [this](std::int32_t, std::int32_t) { return programs.runs.size() < 2; };
  EXPECT_EQ(waited(), ExportOutcome::kCancelled);
  EXPECT_EQ(fileBytes(file("graph.png")), "old");
  EXPECT_FALSE(script().empty());
}

TEST_F(SignalGraphPictureTest, AnOldOneIsNotTakenForTheNewOneAndStays) {
  writeBytes(file("graph.png"), "old");
  draws = false;
  EXPECT_EQ(waited(), ExportOutcome::kFailed);
  EXPECT_EQ(fileBytes(file("graph.png")), "old");
}

TEST_F(SignalGraphPictureTest, NotMadeIsAnErrorWithWhatGnuplotSays) {
  gnuplot = {true, false, 1, "cannot open file\n"};
  EXPECT_EQ(waited(), ExportOutcome::kFailed);
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->number(), 53);
  EXPECT_NE(failure->description().find("(cannot open file)"), std::string::npos) << failure->description();
  EXPECT_NE(failure->description().find("\"gnuPlotEXE\""), std::string::npos);
}

TEST_F(SignalGraphPictureTest, NotMadeByAProgramThatIsNoGnuplotIsAnError) {
  draws = false;
  EXPECT_EQ(waited(), ExportOutcome::kFailed);
}

TEST_F(SignalGraphPictureTest, CutByAFullDiskIsAnErrorAndTheOldOneStays) {
  writeBytes(file("graph.png"), "old");
  picture.resize(picture.size() - 1);
  EXPECT_EQ(waited(), ExportOutcome::kFailed);
  EXPECT_EQ(failure->number(), 61);
  EXPECT_EQ(fileBytes(file("graph.png")), "old");
}

TEST_F(SignalGraphPictureTest, NotMadeWithinAMinuteIsAnError) {
  gnuplot.finished = false;
  EXPECT_EQ(waited(), ExportOutcome::kFailed);
  EXPECT_EQ(failure->number(), 75);
}

// --- what the others share ---

TEST_F(SignalGraphTest, TheFailureIsToldUntilTheNextExport) {
  ExportProcedures all = procedures();
  EXPECT_EQ(all.lExportDataToCSV(file("none/out.csv")), ExportOutcome::kFailed);
  ASSERT_TRUE(all.failure());
  EXPECT_EQ(all.failure()->number(), 76);
  EXPECT_EQ(all.lMakeGNUSignalPlot(file("graph.png"), request()), ExportOutcome::kWritten);
  EXPECT_FALSE(all.failure());
  EXPECT_EQ(all.lExportITMToCSV(file("none/out.csv")), ExportOutcome::kFailed);
  EXPECT_TRUE(all.failure());
  EXPECT_EQ(all.lExportITMToCSV("x"), ExportOutcome::kNothing);
  EXPECT_FALSE(all.failure());
}

}  // namespace
}  // namespace zel
