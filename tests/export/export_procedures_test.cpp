#include "export/export_procedures.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "export/height_profile.h"
#include "export/loss_table.h"
#include "export/path_models.h"
#include "export/signal_profile.h"
#include "export_fixture.h"

namespace zel {
namespace {

using test::fileBytes;
using test::writeBytes;
using Shapes = std::vector<PointerShape>;

struct ExportProceduresTest : test::ExportFixture {
  void SetUp() override {
    ExportFixture::SetUp();
    dialogs.answers = {"2.5", "3", "4"};
    // More ground than the terrain block asks for.
    state.elevation = SampleArray<float>(30, 150.0F);
  }
  ExportOutcome height(const std::string& path) { return procedures().lExportDataToCSV(path); }
  ExportOutcome losses(const std::string& path) { return procedures().lExportITMToCSV(path); }
  ExportOutcome signal(const std::string& path) { return procedures().lExportSignalProfileToCSV(path); }

  std::string linesOf(const std::function<void(const ExportProfile&, const LineSink&)>& write) {
    std::string text;
    write(exportProfile(state, geodesy, module.datumText, numbers),
          [&text](std::string_view line) { text.append(line).append("\r\n"); });
    return text;
  }
  std::string signalText() {
    return linesOf([](const ExportProfile& profile, const LineSink& write) {
      writeSignalProfile(profile, {2.5, 3, 4}, {}, write, [](std::int32_t, std::int32_t) {});
    });
  }
  void expectTrapped(const std::string& location, int number) {
    ASSERT_EQ(dialogs.messages.size(), 1U);
    const std::string& text = dialogs.messages[0].text;
    EXPECT_NE(text.find("In Host Planner::zelProfiler01\r\nfrmProfile" + location), std::string::npos)
        << text;
    EXPECT_NE(text.find("Error Number: " + std::to_string(number)), std::string::npos) << text;
    EXPECT_NE(fileBytes(logFolder / "zelErrorLog.txt").find(location), std::string::npos);
  }
};

// --- height profile, loss table ---

TEST_F(ExportProceduresTest, WritesTheHeightProfileWithoutAWord) {
  EXPECT_EQ(height(file()), ExportOutcome::kWritten);
  EXPECT_EQ(fileBytes(file()), linesOf(writeHeightProfile));
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(eventLoop.runs, 0);
}

TEST_F(ExportProceduresTest, WritesTheLossTableWithoutAWord) {
  EXPECT_EQ(losses(file()), ExportOutcome::kWritten);
  EXPECT_EQ(fileBytes(file()), linesOf([this](const ExportProfile& profile, const LineSink& write) {
              writeLossTable(profile, normalTable, write);
            }));
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(ExportProceduresTest, ReplacesAnExistingFileWithoutAsking) {
  writeBytes(file(), std::string(1000000, 'x'));
  EXPECT_EQ(height(file()), ExportOutcome::kWritten);
  EXPECT_EQ(fileBytes(file()), linesOf(writeHeightProfile));
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(ExportProceduresTest, ShowsTheHourglassWhileItWrites) {
  for (const auto& run : std::vector<std::function<ExportOutcome()>>{[this] { return height(file()); },
                                                                     [this] { return losses(file()); },
                                                                     [this] { return signal(file()); }}) {
    pointer.shapes.clear();
    EXPECT_EQ(run(), ExportOutcome::kWritten);
    EXPECT_EQ(pointer.shapes, (Shapes{PointerShape::kHourglass, PointerShape::kDefault}));
  }
}

TEST_F(ExportProceduresTest, APointerThatCannotBeSetBackDoesNotLoseTheExport) {
  eventLoop.onEvents = [this] { pointer.failing = true; };
  EXPECT_EQ(signal(file()), ExportOutcome::kWritten);
  EXPECT_TRUE(std::filesystem::exists(file()));
}

TEST_F(ExportProceduresTest, WritesTheDatumOfTheHost) {
  module.datumText = "NAD-27";
  height(file());
  EXPECT_NE(fileBytes(file()).find(", 950, NAD-27\r\n"), std::string::npos);
}

// A name counts in characters, not in the bytes of its 8-bit text.
TEST_F(ExportProceduresTest, ANameOfLessThanFiveCharactersEndsAnyExportSilently) {
  for (const std::string name : {"", "a", "abcd", "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9"}) {
    EXPECT_EQ(height(name), ExportOutcome::kNothing);
    EXPECT_EQ(losses(name), ExportOutcome::kNothing);
    EXPECT_EQ(signal(name), ExportOutcome::kNothing);
    EXPECT_EQ(procedures().lExportSignalProfileToCSV(name, {1, 0, 0}), ExportOutcome::kNothing);
    EXPECT_FALSE(std::filesystem::exists(name)) << name;
  }
  EXPECT_TRUE(journal.empty()) << "no box, the pointer unchanged";
}

TEST_F(ExportProceduresTest, FiveCharactersAreAName) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  EXPECT_EQ(height("a.csv"), ExportOutcome::kWritten);
  std::filesystem::current_path(before);
  EXPECT_TRUE(std::filesystem::exists(file("a.csv")));
}

TEST_F(ExportProceduresTest, AFailedProfileIsNotWritten) {
  state.flags.profileError = true;
  EXPECT_EQ(height(file()), ExportOutcome::kNothing);
  EXPECT_EQ(losses(file()), ExportOutcome::kNothing);
  EXPECT_EQ(signal(file()), ExportOutcome::kNothing);
  EXPECT_TRUE(journal.empty());
  EXPECT_TRUE(nothingWritten());
}

TEST_F(ExportProceduresTest, AProfileThatIsNotSampledIsNotWritten) {
  state.flags.resample = true;
  EXPECT_EQ(height(file()), ExportOutcome::kNothing);
  EXPECT_EQ(losses(file()), ExportOutcome::kNothing);
  EXPECT_EQ(signal(file()), ExportOutcome::kNothing);
  EXPECT_TRUE(nothingWritten());
}

// --- failures of those two ---

TEST_F(ExportProceduresTest, AFileThatCannotBeMadeGoesToTheTrap) {
  EXPECT_EQ(height(file("none/out.csv")), ExportOutcome::kFailed);
  expectTrapped(":lExportDataToCSV:2", 76);
  dialogs.messages.clear();
  EXPECT_EQ(losses(file("none/out.csv")), ExportOutcome::kFailed);
  expectTrapped(":lExportITMToCSV:2", 76);
  EXPECT_EQ(pointer.shapes.back(), PointerShape::kDefault);
}

TEST_F(ExportProceduresTest, TheLinesBeforeAnIndexFailureReplaceWhatWasThere) {
  writeBytes(file(), "old");
  test::placeMarker(state.rightMarker, 10.75F, {36.5975, -84.25}, 77);
  EXPECT_EQ(height(file()), ExportOutcome::kFailed);
  expectTrapped(":lExportDataToCSV:", 9);
  const std::string text = fileBytes(file());
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 4);
  EXPECT_TRUE(text.ends_with("'LOS AMSL (m)' \r\n\r\n")) << text;
}

TEST_F(ExportProceduresTest, AFailureOfTheModelLeavesTheFirstFourLinesOfTheLossTable) {
  state.model->permittivity = -1;
  EXPECT_EQ(losses(file()), ExportOutcome::kFailed);
  expectTrapped(":lExportITMToCSV:", 5);
  const std::string text = fileBytes(file());
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 4);
}

TEST_F(ExportProceduresTest, WithoutModelParametersAModelExportLeavesWhatWasThere) {
  state.model.reset();
  writeBytes(file(), "old");
  EXPECT_EQ(losses(file()), ExportOutcome::kFailed);
  expectTrapped(":lExportITMToCSV:", 1101);
  dialogs.messages.clear();
  EXPECT_EQ(signal(file()), ExportOutcome::kFailed);
  expectTrapped(":lExportSignalProfileToCSV:", 1101);
  EXPECT_EQ(fileBytes(file()), "old");
  dialogs.messages.clear();
  EXPECT_EQ(height(file()), ExportOutcome::kWritten) << "the height profile needs none";
}

TEST_F(ExportProceduresTest, ADeviceWithoutRoomIsAFullDisk) {
  EXPECT_EQ(height("/dev/full"), ExportOutcome::kFailed);
  expectTrapped(":lExportDataToCSV:", 61);
}

// --- signal profile ---

TEST_F(ExportProceduresTest, AsksForPowerAndBothCluttersAndSaysDone) {
  EXPECT_EQ(signal(file()), ExportOutcome::kWritten);
  ASSERT_EQ(dialogs.inputs.size(), 3U);
  EXPECT_EQ(dialogs.inputs[0].prompt, "Enter transmit power along this path (in kiloWatts)");
  EXPECT_EQ(dialogs.inputs[1].prompt, "Enter Longley-Rice Clutter Value (in dB)");
  EXPECT_EQ(dialogs.inputs[2].prompt, "Enter Point-to-Point Clutter Value (in dB)");
  for (const InputBoxRequest& input : dialogs.inputs) {
    EXPECT_EQ(input.title, "");
    EXPECT_EQ(input.defaultText, "");
  }
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(dialogs.messages[0].text, "Done");
  EXPECT_EQ(dialogs.messages[0].title, "");
  EXPECT_EQ(dialogs.messages[0].icon, MessageIcon::kNone);
  EXPECT_EQ(dialogs.messages[0].buttons, MessageButtons::kOk);
  EXPECT_EQ(fileBytes(file()), signalText());
  EXPECT_EQ(fileBytes(file() + ".terrain.txt"), "     &150,150,150,150,150,150,150,150,150,150,150,150,\r\n");
}

TEST_F(ExportProceduresTest, TheHourglassComesAfterThePromptsAndGoesBeforeDone) {
  signal(file());
  ASSERT_EQ(journal.size(), 6U);
  EXPECT_EQ(journal[3], "hourglass");
  EXPECT_EQ(journal[4], "pointer default");
  EXPECT_EQ(journal[5], "message: Done");
}

TEST_F(ExportProceduresTest, WithItsAnswersGivenItShowsNoBoxAndWritesTheSame) {
  EXPECT_EQ(procedures().lExportSignalProfileToCSV(file(), {2.5, 3, 4}), ExportOutcome::kWritten);
  EXPECT_EQ(fileBytes(file()), signalText());
  EXPECT_TRUE(std::filesystem::exists(file() + ".terrain.txt"));
  EXPECT_TRUE(dialogs.inputs.empty());
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(ExportProceduresTest, AnswersAreTheNumbersThatTheyBeginWith) {
  dialogs.answers = {"  2.5 kW", "3dB", "4"};
  signal(file());
  EXPECT_EQ(fileBytes(file()), signalText());
}

TEST_F(ExportProceduresTest, APowerOfZeroOrNoNumberEndsItSilentlyBeforeAnyFile) {
  for (const std::string power : {"0", "", "-1", "kW 5", "0.0"}) {
    dialogs.inputs.clear();
    dialogs.answers = {power, "3", "4"};
    EXPECT_EQ(signal(file()), ExportOutcome::kNothing) << power;
    EXPECT_EQ(dialogs.inputs.size(), 3U) << "the power is looked at after the prompts";
  }
  EXPECT_TRUE(nothingWritten());
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_TRUE(pointer.shapes.empty());
}

TEST_F(ExportProceduresTest, AClutterThatIsNoNumberIsZeroAndANegativeOneIsTaken) {
  dialogs.answers = {"1", "none", "-6"};
  EXPECT_EQ(signal(file()), ExportOutcome::kWritten);
  EXPECT_EQ(fileBytes(file()), linesOf([](const ExportProfile& profile, const LineSink& write) {
              writeSignalProfile(profile, {1, 0, -6}, {}, write, [](std::int32_t, std::int32_t) {});
            }));
}

TEST_F(ExportProceduresTest, AnAnswerBeyondEveryNumberIsTrapped) {
  dialogs.answers = {"1e999"};
  EXPECT_EQ(signal(file()), ExportOutcome::kFailed);
  expectTrapped(":lExportSignalProfileToCSV:1", 6);
  EXPECT_TRUE(nothingWritten());
}

TEST_F(ExportProceduresTest, NeedsTenSamplesFromStationToStation) {
  state.path.intervals = 9;
  EXPECT_EQ(signal(file()), ExportOutcome::kWritten);
  state.path.intervals = 8;
  journal.clear();
  EXPECT_EQ(signal(file("other.csv")), ExportOutcome::kNothing);
  EXPECT_TRUE(journal.empty()) << "nothing is asked";
}

TEST_F(ExportProceduresTest, TheTenSamplesAreThoseOfTheWholePathInAnExpandedView) {
  test::expandBetween(state, 3.5F, 6.25F);
  EXPECT_EQ(signal(file()), ExportOutcome::kWritten);
}

TEST_F(ExportProceduresTest, NeedsASpacing) {
  state.path.spacing = 0;
  EXPECT_EQ(signal(file()), ExportOutcome::kNothing);
  EXPECT_TRUE(journal.empty());
}

TEST_F(ExportProceduresTest, NeedsAFrequencyFrom20To20000MHz) {
  for (const auto& [frequency, outcome] : {std::pair{19.9F, ExportOutcome::kNothing},
                                           {20.0F, ExportOutcome::kWritten},
                                           {20000.0F, ExportOutcome::kWritten},
                                           {20001.0F, ExportOutcome::kNothing}}) {
    state.inputs.frequency = frequency;
    EXPECT_EQ(procedures().lExportSignalProfileToCSV(file(), {1, 0, 0}), outcome) << frequency;
  }
}

TEST_F(ExportProceduresTest, HandlesPendingEventsAtEachSample) {
  signal(file());
  EXPECT_EQ(eventLoop.runs, 11);
}

TEST_F(ExportProceduresTest, WhatEventsChangeReachesNoLine) {
  const std::string expected = signalText();
  eventLoop.onEvents = [this] { state = ProfileViewState{}; };
  EXPECT_EQ(signal(file()), ExportOutcome::kWritten);
  EXPECT_EQ(fileBytes(file()), expected);
}

TEST_F(ExportProceduresTest, WhatChangesWhileItAsksReachesNoLine) {
  const std::string expected = signalText();
  dialogs.onInput = [this] { state = ProfileViewState{}; };
  EXPECT_EQ(signal(file()), ExportOutcome::kWritten);
  EXPECT_EQ(fileBytes(file()), expected);
}

TEST_F(ExportProceduresTest, AnExportMayBeBegunWhileAnotherRuns) {
  const std::string expected = signalText();
  ExportProcedures all = procedures();
  eventLoop.onEvents = [&] {
    eventLoop.onEvents = nullptr;
    EXPECT_EQ(all.lExportDataToCSV(file("inner.csv")), ExportOutcome::kWritten);
    EXPECT_EQ(all.lExportSignalProfileToCSV(file(), {2.5, 3, 4}), ExportOutcome::kWritten);
  };
  EXPECT_EQ(all.lExportSignalProfileToCSV(file()), ExportOutcome::kWritten);
  EXPECT_EQ(fileBytes(file()), expected);
  EXPECT_EQ(fileBytes(file("inner.csv")), linesOf(writeHeightProfile));
}

TEST_F(ExportProceduresTest, TellsHowFarItHasCome) {
  std::vector<std::pair<std::int32_t, std::int32_t>> told;
  progress = [&told](std::int32_t done, std::int32_t all) {
    told.emplace_back(done, all);
    return true;
  };
  signal(file());
  ASSERT_EQ(told.size(), 11U);
  EXPECT_EQ(told.front(), std::pair(1, 11));
  EXPECT_EQ(told.back(), std::pair(11, 11));
}

TEST_F(ExportProceduresTest, CancelledItLeavesWhatWasThereAndSaysNothing) {
  writeBytes(file(), "old");
  writeBytes(file() + ".terrain.txt", "old terrain");
  progress = [](std::int32_t done, std::int32_t) { return done < 5; };
  EXPECT_EQ(signal(file()), ExportOutcome::kCancelled);
  EXPECT_EQ(eventLoop.runs, 5);
  EXPECT_EQ(fileBytes(file()), "old");
  EXPECT_EQ(fileBytes(file() + ".terrain.txt"), "old terrain");
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(pointer.shapes.back(), PointerShape::kDefault);
  std::filesystem::remove(file());
  std::filesystem::remove(file() + ".terrain.txt");
  dialogs.inputs.clear();
  EXPECT_EQ(signal(file()), ExportOutcome::kCancelled);
  EXPECT_TRUE(nothingWritten());
}

TEST_F(ExportProceduresTest, AFailureOfTheLongleyRiceModelIsTrappedAndNothingGoesOnAfterIt) {
  state.elevation[6] = 1e6F;
  EXPECT_EQ(signal(file()), ExportOutcome::kFailed);
  expectTrapped(":lExportSignalProfileToCSV:3", 5);
  const std::string text = fileBytes(file());
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 4 + 5);
  EXPECT_FALSE(std::filesystem::exists(file() + ".terrain.txt"));
}

TEST_F(ExportProceduresTest, ATerrainBlockPastTheGroundFailsAfterTheMainFileIsComplete) {
  state.elevation = SampleArray<float>(12, 150.0F);
  EXPECT_EQ(signal(file()), ExportOutcome::kFailed);
  expectTrapped(":lExportSignalProfileToCSV:4", 9);
  EXPECT_EQ(fileBytes(file()), signalText());
  EXPECT_EQ(fileBytes(file() + ".terrain.txt"), "     &150,150,150,150,150,150,150,150,150,150,150,");
  EXPECT_EQ(dialogs.messages.size(), 1U) << "no \"Done\"";
}

TEST_F(ExportProceduresTest, ATerrainFileThatCannotBeMadeLeavesTheMainFileComplete) {
  std::filesystem::create_directory(file() + ".terrain.txt");
  EXPECT_EQ(signal(file()), ExportOutcome::kFailed);
  expectTrapped(":lExportSignalProfileToCSV:4", 75);
  EXPECT_EQ(fileBytes(file()), signalText());
}

TEST_F(ExportProceduresTest, TakesTheSettingsOfThePointToPointModel) {
  store.set("PTP", "ClutterCategory", "3");
  store.set("PTP", "ClutterHeight", "20");
  state.inputs.antennaHeights = {10, 10};
  signal(file());
  const auto withCover = [this](const PtpSettings& settings) {
    return linesOf([&settings](const ExportProfile& profile, const LineSink& write) {
      writeSignalProfile(profile, {2.5, 3, 4}, pointToPointParameters(settings), write,
                         [](std::int32_t, std::int32_t) {});
    });
  };
  EXPECT_EQ(fileBytes(file()), withCover({0, 15, 0.005, 3, 20}));
  EXPECT_NE(fileBytes(file()), withCover({0, 15, 0.005, 0, 0}));
}

TEST_F(ExportProceduresTest, SettingsThatThePointToPointModelDoesNotTakeLeaveWhatWasThere) {
  store.set("PTP", "ClutterCategory", "9");
  writeBytes(file(), "old");
  EXPECT_EQ(signal(file()), ExportOutcome::kFailed);
  expectTrapped(":lExportSignalProfileToCSV:2", 5);
  EXPECT_EQ(fileBytes(file()), "old");
}

TEST_F(ExportProceduresTest, TakesTheUsersDecimalSeparator) {
  numbers = test::commaStyle();
  signal(file());
  EXPECT_EQ(fileBytes(file()), signalText());
  EXPECT_NE(fileBytes(file()).find("36,49000, -84,25000"), std::string::npos);
}

}  // namespace
}  // namespace zel
