// Plans as JSON texts and files.
#include "planning/plan_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <functional>
#include <limits>
#include <random>
#include <string>

#include "support/other_user.h"
#include "support/temporary_folder.h"

namespace zel::host {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using test::fileBytes;
using test::TemporaryFolder;
using test::writeBytes;

PlanFile smallFile() {
  PlanFile file;
  file.plan.stations = {{1, {"North ridge", {36.4, -84.35}, 30}},
                        {4, {"Depot \"old\" \\ 山", {36.1, -84.05}, 12.5}}};
  file.plan.links = {{1, Link{1, 4, 450.0}}, {2, Link{4, 1, {}}}};
  file.plan.datum = PlanDatum::kNad27;
  file.view = PlanView{{36.31, -84.23}, 40};
  return file;
}

const char* kSmallText = R"({
  "format": "terrain-profiler plan",
  "version": 1,
  "datum": "NAD-27",
  "stations": [
    {"id": 1, "name": "North ridge", "latitude": 36.4, "longitude": -84.35, "antenna_m": 30},
    {"id": 4, "name": "Depot \"old\" \\ 山", "latitude": 36.1, "longitude": -84.05, "antenna_m": 12.5}
  ],
  "links": [
    {"from": 1, "to": 4, "frequency_mhz": 450},
    {"from": 4, "to": 1}
  ],
  "view": {"latitude": 36.31, "longitude": -84.23, "metres_per_pixel": 40}
}
)";

std::string errorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const PlanFileError& error) {
    return error.what();
  }
  return "no error";
}

std::string errorOfText(const std::string& text) {
  return errorOf([&] { readPlanText(text); });
}

// A plan with these members besides the format and version, which are its first line.
std::string planWith(const std::string& members) {
  return "{\"format\": \"terrain-profiler plan\", \"version\": 1,\n" + members + "\n}";
}

// Three good stations, and a fourth with this text in its place.
std::string stationsWith(const std::string& fourth, const std::string& links = "") {
  return planWith(
      "\"stations\": [\n"
      "  {\"id\": 1, \"name\": \"A\", \"latitude\": 1, \"longitude\": 2},\n"
      "  {\"id\": 2, \"name\": \"B\", \"latitude\": 1, \"longitude\": 2},\n"
      "  {\"id\": 3, \"name\": \"C\", \"latitude\": 1, \"longitude\": 2},\n"
      "  " +
      fourth + "\n]" + (links.empty() ? "" : ",\n\"links\": [" + links + "]"));
}

bool same(const PlanFile& a, const PlanFile& b) { return a.plan == b.plan && a.view == b.view; }

// ---- Writing and reading again

TEST(PlanFile, WritesAStationOrLinkALine) { EXPECT_EQ(planText(smallFile()), kSmallText); }

TEST(PlanFile, ReadsWhatItWrites) { EXPECT_TRUE(same(readPlanText(kSmallText), smallFile())); }

TEST(PlanFile, WritesAnEmptyPlan) {
  const std::string text = planText({});
  EXPECT_EQ(text,
            "{\n  \"format\": \"terrain-profiler plan\",\n  \"version\": 1,\n  \"datum\": \"NAD-83\",\n"
            "  \"stations\": [],\n  \"links\": []\n}\n");
  EXPECT_TRUE(same(readPlanText(text), {}));
}

TEST(PlanFile, NumbersLinksAnewFromOne) {
  PlanFile file = smallFile();
  file.plan.links = {{7, Link{1, 4, {}}}, {9, Link{4, 1, {}}}};
  EXPECT_EQ(readPlanText(planText(file)).plan.links,
            (std::map<LinkId, Link>{{1, Link{1, 4, {}}}, {2, Link{4, 1, {}}}}));
}

TEST(PlanFile, GivesTheSameNumbersBackToTheLastBit) {
  constexpr unsigned kSeed = 7;
  std::mt19937 random(kSeed);
  PlanFile file;
  std::uniform_real_distribution<double> latitude(-90, 90), longitude(-180, 180), antenna(0, 750);
  for (StationId id = 1; id <= 2000; ++id)
    file.plan.stations[id] = {"S", {latitude(random), longitude(random)}, antenna(random)};
  file.plan.stations[2001] = {"least", {std::numeric_limits<double>::denorm_min(), -180}, 1e-300};
  file.plan.stations[2002] = {"most", {std::nextafter(90, 0), 180}, std::nextafter(750, 0)};
  const std::string text = planText(file);
  EXPECT_TRUE(same(readPlanText(text), file)) << "seed " << kSeed;
  EXPECT_EQ(planText(readPlanText(text)), text);
}

TEST(PlanFile, WritesAZeroWithoutASign) {
  PlanFile file;
  file.plan.stations[1] = {"A", {-0.0, -0.0}, -0.0};
  EXPECT_EQ(planText(file).find("-0"), std::string::npos);
}

TEST(PlanFile, LeavesOutAViewThatCannotBe) {
  for (const double scale : {0.0, -1.0, std::nan(""), HUGE_VAL}) {
    PlanFile file = smallFile();
    file.view->metresPerPixel = scale;
    EXPECT_FALSE(readPlanText(planText(file)).view) << scale;
  }
}

TEST(PlanFile, DoesNotWriteAPlanThatCannotBe) {
  PlanFile file = smallFile();
  file.plan.stations[1].position.latitude = std::nan("");
  EXPECT_EQ(errorOf([&] { planText(file); }), "station 1: latitude is not a number");
}

// ---- What is understood

TEST(PlanFile, PassesOverMembersThatItDoesNotKnow) {
  const PlanFile file = readPlanText(
      stationsWith("{\"id\": 4, \"colour\": {\"name\": [1, null]}, \"name\": \"D\", \"latitude\": 1, "
                   "\"longitude\": 2, \"antenna_m\": 7}",
                   "{\"from\": 1, \"to\": 4, \"stations\": [3]}"));
  EXPECT_EQ(file.plan.stations.size(), 4U);
  EXPECT_EQ(file.plan.stations.at(4).antennaM, 7);
  EXPECT_EQ(file.plan.links.size(), 1U);
  EXPECT_EQ(readPlanText(planWith("\"colours\": [[{\"stations\": 3}]]")).plan.stations.size(), 0U);
}

TEST(PlanFile, GivesAStationWithoutAnAntennaTheUsualOne) {
  EXPECT_EQ(readPlanText(stationsWith("{\"id\": 4, \"name\": \"D\", \"latitude\": 1, \"longitude\": 2}"))
                .plan.stations.at(4)
                .antennaM,
            kDefaultAntenna);
}

TEST(PlanFile, TakesMembersInAnyOrder) {
  const PlanFile file = readPlanText(
      "{\"links\": [{\"to\": 2, \"from\": 1}], \"stations\": [{\"longitude\": 4, \"latitude\": 3, \"name\": "
      "\"A\", \"id\": 1}, {\"id\": 2, \"name\": \"B\", \"latitude\": 3, \"longitude\": 4}], \"version\": 1, "
      "\"format\": \"terrain-profiler plan\"}");
  EXPECT_EQ(file.plan.links.at(1), (Link{1, 2, {}}));
  EXPECT_EQ(file.plan.datum, PlanDatum::kNad83);
}

TEST(PlanFile, TakesAByteOrderMarkAndLineEndsOfBothKinds) {
  std::string text = std::string("\xEF\xBB\xBF") + kSmallText;
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) text.insert(at, "\r");
  EXPECT_TRUE(same(readPlanText(text), smallFile()));
}

TEST(PlanFile, NumbersStationsAnewWhereNumbersWouldRunOut) {
  const Plan plan = readPlanText(stationsWith("{\"id\": 4294967295, \"name\": \"D\", \"latitude\": 1, "
                                              "\"longitude\": 2}",
                                              "{\"from\": 4294967295, \"to\": 2}"))
                        .plan;
  EXPECT_EQ(plan.stations.rbegin()->first, 4U);
  EXPECT_EQ(plan.links.at(1), (Link{4, 2, {}}));
}

TEST(PlanFile, KeepsTheNumbersOfStationsOtherwise) {
  const Plan plan =
      readPlanText(stationsWith("{\"id\": 1000000000, \"name\": \"D\", \"latitude\": 1, \"longitude\": 2}"))
          .plan;
  EXPECT_EQ(plan.stations.rbegin()->first, 1'000'000'000U);
}

TEST(PlanFile, TakesLongitudesUpTo180AsTheyAre) {
  const auto longitudeOf = [](const std::string& text) {
    return readPlanText(
               stationsWith("{\"id\": 4, \"name\": \"D\", \"latitude\": 1, \"longitude\": " + text + "}"))
        .plan.stations.at(4)
        .position.longitude;
  };
  EXPECT_EQ(longitudeOf("180"), 180);
  EXPECT_EQ(longitudeOf("-180"), -180);
  EXPECT_EQ(longitudeOf("1.8e2"), 180);
}

// ---- What is refused, with the place

struct RefusedStation {
  const char* text;
  const char* error;
};

TEST(PlanFile, NamesTheLineTheStationAndTheValueThatIsWrong) {
  const RefusedStation cases[] = {
      {R"({"id": 4, "name": "D", "latitude": 95, "longitude": 2})",
       "line 6, column 3: station 4: latitude 95 is not from -90 to 90"},
      {R"({"id": 4, "name": "D", "latitude": 1, "longitude": 200.5})",
       "line 6, column 3: station 4: longitude 200.5 is not from -180 to 180"},
      {R"({"id": 4, "name": "D", "latitude": 1e300, "longitude": 2})",
       "line 6, column 3: station 4: latitude 1e+300 is not from -90 to 90"},
      {R"({"id": 4, "name": "D", "latitude": 1, "longitude": 2, "antenna_m": -3})",
       "line 6, column 3: station 4: antenna height -3 m is not from 0 to 750 m"},
      {R"({"id": 4, "name": "", "latitude": 1, "longitude": 2})",
       "line 6, column 3: station 4: the name is empty"},
      {R"({"id": 4, "name": "a\u0000b", "latitude": 1, "longitude": 2})",
       "line 6, column 3: station 4: the name has a line break or another control character in it"},
      {R"({"id": 2, "name": "D", "latitude": 1, "longitude": 2})",
       "line 6, column 3: station 4: another station has the id 2"},
      {R"({"id": 0, "name": "D", "latitude": 1, "longitude": 2})",
       "line 6, column 10: station 4: \"id\" is not a whole number from 1 to 4294967295"},
      {R"({"id": 4294967296, "name": "D", "latitude": 1, "longitude": 2})",
       "line 6, column 10: station 4: \"id\" is not a whole number from 1 to 4294967295"},
      {R"({"id": 2.5, "name": "D", "latitude": 1, "longitude": 2})",
       "line 6, column 10: station 4: \"id\" is not a whole number from 1 to 4294967295"},
      {R"({"id": -2, "name": "D", "latitude": 1, "longitude": 2})",
       "line 6, column 10: station 4: \"id\" is not a whole number from 1 to 4294967295"},
      {R"({"name": "D", "latitude": 1, "longitude": 2})", "line 6, column 3: station 4: \"id\" is missing"},
      {R"({"id": 4, "latitude": 1, "longitude": 2})", "line 6, column 3: station 4: \"name\" is missing"},
      {R"({"id": 4, "name": "D", "longitude": 2})", "line 6, column 3: station 4: \"latitude\" is missing"},
      {R"({"id": 4, "name": "D", "latitude": 1})", "line 6, column 3: station 4: \"longitude\" is missing"},
      {R"({"id": 4, "name": "D", "latitude": "1", "longitude": 2})",
       "line 6, column 38: station 4: \"latitude\" is a text, not a number"},
      {R"({"id": 4, "name": 12, "latitude": 1, "longitude": 2})",
       "line 6, column 21: station 4: \"name\" is a number, not a text"},
      {R"({"id": 4, "name": "D", "latitude": null, "longitude": 2})",
       "line 6, column 38: station 4: \"latitude\" is null, not a number"},
      {R"({"id": 4, "name": "D", "latitude": [1], "longitude": 2})",
       "line 6, column 38: station 4: \"latitude\" is a list, not a number"},
      {R"({"id": 4, "name": "D", "latitude": 1, "latitude": 1, "longitude": 2})",
       "line 6, column 53: station 4: \"latitude\" stands there twice"},
      {R"([1, 2])", "line 6, column 3: station 4: a list where an object is needed"},
      {R"("D")", "line 6, column 3: station 4: a text where an object is needed"},
  };
  for (const RefusedStation& refused : cases)
    EXPECT_EQ(errorOfText(stationsWith(refused.text)), refused.error) << refused.text;
}

TEST(PlanFile, NamesTheLinkThatIsWrong) {
  const std::string station = R"({"id": 4, "name": "D", "latitude": 1, "longitude": 2})";
  const RefusedStation cases[] = {
      {R"({"from": 1, "to": 9})", "line 8, column 11: link 1: there is no station with the id 9"},
      {R"({"from": 1, "to": 2}, {"from": 3, "to": 3})",
       "line 8, column 33: link 2: the link ends at the station where it starts"},
      {R"({"from": 1})", "line 8, column 11: link 1: \"to\" is missing"},
      {R"({"from": 1, "to": 2, "frequency_mhz": 5})",
       "line 8, column 11: link 1: frequency 5 MHz is not from 20 to 20000 MHz"},
      {R"({"from": "A", "to": 2})", "line 8, column 20: link 1: \"from\" is a text, not a number"},
      {"7", "line 8, column 11: link 1: a number where an object is needed"},
  };
  for (const RefusedStation& refused : cases)
    EXPECT_EQ(errorOfText(stationsWith(station, refused.text)), refused.error) << refused.text;
}

TEST(PlanFile, NamesAnotherMemberThatIsWrong) {
  const RefusedStation cases[] = {
      {R"("datum": "ED50")", "line 2, column 10: \"datum\" is \"ED50\", neither \"NAD-83\" nor \"NAD-27\""},
      {R"("datum": 83)", "line 2, column 10: \"datum\" is a number, not a text"},
      {R"("stations": {})", "line 2, column 13: \"stations\" is an object, not a list"},
      {R"("stations": [], "stations": [])", "line 2, column 29: \"stations\" stands there twice"},
      {R"("links": true)", "line 2, column 10: \"links\" is true or false, not a list"},
      {R"("view": [])", "line 2, column 9: \"view\" is a list, not an object"},
      {R"("view": {"latitude": 1, "longitude": 2})",
       "line 2, column 9: view: \"metres_per_pixel\" is missing"},
      {R"("view": {"latitude": 1, "longitude": 2, "metres_per_pixel": 0})",
       "line 2, column 9: view: \"metres_per_pixel\" is not above 0"},
      {R"("view": {"latitude": 100, "longitude": 2, "metres_per_pixel": 1})",
       "line 2, column 9: view: latitude 100 is not from -90 to 90"},
  };
  for (const RefusedStation& refused : cases)
    EXPECT_EQ(errorOfText(planWith(refused.text)), refused.error) << refused.text;
}

TEST(PlanFile, SaysTheFirstThingThatIsWrong) {
  EXPECT_EQ(errorOfText(planWith("\"datum\": 1,\n\"stations\": 2,\n\"links\": [3]")),
            "line 2, column 10: \"datum\" is a number, not a text");
}

TEST(PlanFile, RefusesNumbersBeyondAllMeasure) {
  EXPECT_EQ(errorOfText(stationsWith("{\"id\": 1e999}")),
            "line 6, column 10: the number \"1e999\" is too large");
  EXPECT_EQ(errorOfText(stationsWith("{\"id\": 4, \"name\": \"D\", \"latitude\": NaN}")).substr(0, 43),
            "line 6, column 38: this is no JSON here: in");
}

TEST(PlanFile, SaysWhereTheTextIsNoJson) {
  EXPECT_EQ(errorOfText("{\n  \"format\": \"x\"\n  \"version\": 1}"),
            "line 3, column 11: this is no JSON here: unexpected string literal");
  EXPECT_EQ(errorOfText("{\n  \"format\": \"terrain-profiler plan\","),
            "line 2, column 37: the file ends in the middle");
  EXPECT_EQ(errorOfText("PK\x03\x04"), "line 1, column 1: this is no JSON here: invalid literal");
  EXPECT_EQ(errorOfText(std::string(kSmallText) + "x"),
            "line 15, column 1: this is no JSON here: invalid literal");
  EXPECT_EQ(errorOfText("{\"山山\": tru}").substr(0, 20), "line 1, column 11: t");
}

TEST(PlanFile, RefusesEveryCutText) {
  const std::string text = kSmallText;
  for (std::size_t size = 0; size + 2 < text.size(); ++size) {
    ASSERT_NE(errorOfText(text.substr(0, size)), "no error") << size;
    ASSERT_LT(errorOfText(text.substr(0, size)).size(), 200U);
  }
}

TEST(PlanFile, SaysThatAFileIsEmpty) {
  EXPECT_EQ(errorOfText(""), "the file is empty");
  EXPECT_EQ(errorOfText(" \r\n\t"), "the file is empty");
  EXPECT_EQ(errorOfText("\xEF\xBB\xBF"), "the file is empty");
}

TEST(PlanFile, SaysWhichEncodingAFileHas) {
  const std::string utf16 = "the text is UTF-16; save it as UTF-8";
  EXPECT_EQ(errorOfText(std::string("\xFF\xFE{\0", 4)), utf16);
  EXPECT_EQ(errorOfText(std::string("\xFE\xFF\0{", 4)), utf16);
  EXPECT_EQ(errorOfText(std::string("{\0\"\0", 4)), utf16);
  EXPECT_EQ(errorOfText(std::string("\0{\0\"", 4)), utf16);
  EXPECT_EQ(errorOfText(planWith("\"x\": \"caf\xE9\"")),
            "line 2, column 10: this is no UTF-8 (but perhaps Latin-1, or no text at all); save the file as "
            "UTF-8");
}

TEST(PlanFile, RefusesWhatIsNoPlan) {
  const std::string noPlan =
      "this is no plan of this program: the text has no member \"format\" that says \"terrain-profiler "
      "plan\"";
  EXPECT_EQ(errorOfText("{}"), noPlan);
  EXPECT_EQ(errorOfText("[]"), noPlan);
  EXPECT_EQ(errorOfText("7"), noPlan);
  EXPECT_EQ(errorOfText("{\"format\": \"another\", \"version\": 1}"), noPlan);
  EXPECT_EQ(errorOfText("{\"format\": 1, \"stations\": 7}"), noPlan);
  EXPECT_EQ(errorOfText("[{\"format\": \"terrain-profiler plan\", \"version\": 1}]"), noPlan);
}

TEST(PlanFile, KnowsGeoJsonWhenItSeesIt) {
  EXPECT_EQ(errorOfText("{\"type\": \"FeatureCollection\", \"features\": [{\"type\": \"Feature\"}]}"),
            "this is GeoJSON, not a plan; its points can be imported as stations");
}

TEST(PlanFile, RefusesALaterVersionWhateverElseIsInIt) {
  EXPECT_EQ(errorOfText("{\"format\": \"terrain-profiler plan\", \"stations\": {\"1\": []}, \"version\": 2}"),
            "this plan is of a later version of the program (its format is 2, this program reads 1); open it "
            "with that version, or install it");
}

TEST(PlanFile, NeedsAVersionThatIsANumber) {
  EXPECT_EQ(errorOfText("{\"format\": \"terrain-profiler plan\"}"),
            "line 1, column 1: \"version\" is missing");
  for (const char* version : {"0", "-1", "1.5", "\"1\"", "null"}) {
    EXPECT_EQ(
        errorOfText("{\"format\": \"terrain-profiler plan\",\n\"version\": " + std::string(version) + "}")
            .substr(0, 8),
        "line 2, ")
        << version;
  }
}

TEST(PlanFile, RefusesDeepNestingWithoutRunningOutOfStack) {
  const auto nested = [](std::size_t depth) {  // inside the plan's own object
    return planWith("\"x\": " + std::string(depth, '[') + std::string(depth, ']'));
  };
  EXPECT_EQ(errorOfText(nested(15)), "no error");
  EXPECT_EQ(errorOfText(nested(16)), "line 2, column 21: objects and lists lie deeper than 16 in each other");
  EXPECT_EQ(errorOfText(std::string(5'000'000, '[')),
            "line 1, column 17: objects and lists lie deeper than 16 in each other");
}

TEST(PlanFile, RefusesMoreStationsThanAPlanHas) {
  std::string stations;
  for (std::size_t id = 1; id <= kMostStations + 1; ++id) {
    if (id > 1) stations += ",\n";
    stations += "{\"id\":" + std::to_string(id) + ",\"name\":\"A\",\"latitude\":1,\"longitude\":2}";
  }
  EXPECT_EQ(errorOfText(planWith("\"stations\": [" + stations + "]")),
            "line 200002, column 1: more than 200000 stations");
}

TEST(PlanFile, RefusesAnyDamageWithAReasonOrReadsAPlan) {
  constexpr unsigned kSeed = 11;
  std::mt19937 random(kSeed);
  const std::string text = kSmallText;
  const std::string bytes = "{}[]\",:0919.-eE\\ntu\xC3\xFF\n\0 "s;
  int refused = 0;
  for (int i = 0; i < 3000; ++i) {
    std::string damaged = text;
    for (int n = 0; n < 3; ++n) damaged[random() % damaged.size()] = bytes[random() % bytes.size()];
    try {
      EXPECT_EQ(errorOfText(planText(readPlanText(damaged))), "no error");
    } catch (const PlanFileError& error) {
      ++refused;
      ASSERT_GT(std::string(error.what()).size(), 10U) << "seed " << kSeed << ", case " << i;
    }
  }
  EXPECT_GT(refused, 1000);
  EXPECT_LT(refused, 3000);
}

// ---- Files

TEST(PlanFile, IsReadAndWrittenByPath) {
  const TemporaryFolder folder;
  const std::string path = folder / "my plan é.json";
  writePlanFile(path, smallFile());
  EXPECT_EQ(fileBytes(path), kSmallText);
  EXPECT_TRUE(same(readPlanFile(path), smallFile()));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

TEST(PlanFile, NamesThePathAndTheReasonWhenItCannotBeRead) {
  const TemporaryFolder folder;
  const std::string missing = folder / "missing.json";
  EXPECT_EQ(errorOf([&] { readPlanFile(missing); }),
            "cannot open " + missing + ": No such file or directory");
  EXPECT_EQ(errorOf([&] { readPlanFile(folder.path()); }),
            "cannot open " + folder.path().string() + ": it is a folder");
  EXPECT_EQ(errorOf([&] { readPlanFile("/dev/zero"); }),
            "cannot open /dev/zero: it is a device or a pipe, not a file");
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(errorOf([&] { readPlanFile(pipe); }),
            "cannot open " + pipe + ": it is a device or a pipe, not a file");
  EXPECT_EQ(errorOf([] { readPlanFile(""); }), "cannot open a file without a name");
  EXPECT_EQ(errorOf([&] { readPlanFile(missing + "\0x"s); }),
            "cannot open " + missing + ": there is a zero byte in the name");
  const std::string bad = folder / "bad.json";
  writeBytes(bad, stationsWith("{}"));
  EXPECT_EQ(errorOf([&] { readPlanFile(bad); }), bad + ": line 6, column 3: station 4: \"id\" is missing");
}

TEST(PlanFile, RefusesAFileThatIsTooLargeBeforeReadingIt) {
  const TemporaryFolder folder;
  const std::string path = folder / "large.json";
  writeBytes(path, "{");
  fs::resize_file(path, std::uintmax_t{1} << 40U);
  EXPECT_EQ(errorOf([&] { readPlanFile(path); }), "cannot open " + path + ": it is larger than 128 MiB");
}

TEST(PlanFile, KeepsTheRightsOfTheFileThatItReplaces) {
  const TemporaryFolder folder;
  const fs::path path = folder / "plan.json";
  writeBytes(path, "old");
  const auto rights = fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read;
  fs::permissions(path, rights);
  writePlanFile(path, smallFile());
  EXPECT_EQ(fs::status(path).permissions(), rights);
  EXPECT_EQ(fileBytes(path), kSmallText);
}

TEST(PlanFile, ReplacesWhatALinkLeadsToNotTheLink) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "kept");
  writeBytes(folder / "kept/plan.json", "old");
  fs::create_symlink("kept/plan.json", folder / "link.json");
  fs::create_symlink("link.json", folder / "again.json");
  writePlanFile(folder / "again.json", smallFile());
  EXPECT_TRUE(fs::is_symlink(folder / "again.json"));
  EXPECT_TRUE(fs::is_symlink(folder / "link.json"));
  EXPECT_EQ(fileBytes(folder / "kept/plan.json"), kSmallText);
}

TEST(PlanFile, RefusesToWriteWhereNoFileCanBe) {
  const TemporaryFolder folder;
  const std::string base = folder.path();
  EXPECT_EQ(errorOf([&] { writePlanFile(base, {}); }), "cannot write " + base + ": it is a folder");
  EXPECT_EQ(errorOf([&] { writePlanFile(base + "/", {}); }), "cannot write " + base + "/: it is a folder");
  EXPECT_EQ(errorOf([&] { writePlanFile("/dev/null", {}); }),
            "cannot write /dev/null: it is a device or a pipe, not a file");
  EXPECT_EQ(errorOf([&] { writePlanFile(base + "/no/plan.json", {}); }),
            "cannot write " + base + "/no/plan.json: No such file or directory");
  fs::create_symlink("circle", folder / "circle");
  EXPECT_EQ(errorOf([&] { writePlanFile(base + "/circle", {}); }),
            "cannot write " + base + "/circle: Too many levels of symbolic links");
  EXPECT_EQ(errorOf([] { writePlanFile("", {}); }), "cannot write a file without a name");
}

TEST(PlanFile, LeavesAProtectedFileAlone) {
  const TemporaryFolder folder;
  fs::permissions(folder.path(), fs::perms::all);
  const std::string path = folder / "plan.json";
  writeBytes(path, "old");
  fs::permissions(path, fs::perms(0444));
  const int code = test::exitCodeAsNobody([&] {
    return errorOf([&] { writePlanFile(path, smallFile()); }) ==
                   "cannot write " + path + ": Permission denied"
               ? 0
               : 1;
  });
  EXPECT_EQ(code, 0);
  EXPECT_EQ(fileBytes(path), "old");
}

TEST(PlanFile, StaysAsItWasOnAFullDisk) {
  const TemporaryFolder folder;
  fs::permissions(folder.path(), fs::perms::all);
  const std::string path = folder / "plan.json";
  writeBytes(path, "old");
  fs::permissions(path, fs::perms::all);
  const int code = test::exitCodeWithLargestFile(100, [&] {
    return errorOf([&] { writePlanFile(path, smallFile()); }) == "cannot write " + path + ": File too large"
               ? 0
               : 1;
  });
  EXPECT_EQ(code, 0);
  EXPECT_EQ(fileBytes(path), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

TEST(PlanFile, IsWrittenUnderALongName) {
  const TemporaryFolder folder;
  std::string name;
  for (int i = 0; i < 83; ++i) name += "山";  // 249 bytes of 255
  writePlanFile(folder / (name + ".json"), smallFile());
  EXPECT_EQ(fileBytes(folder / (name + ".json")), kSmallText);
}

// Sixteen seconds would be a sanitizer's; each of the two takes some tenths without one.
TEST(PlanFile, TakesTenThousandStationsWithoutAWait) {
  PlanFile file;
  for (StationId id = 1; id <= 10'000; ++id) {
    file.plan.stations[id] = {"Station " + std::to_string(id), {id * 0.007, id * -0.017}, 30};
    if (id > 1) file.plan.links[id - 1] = Link{id - 1, id, {}};
  }
  const TemporaryFolder folder;
  using Clock = std::chrono::steady_clock;
  const auto begin = Clock::now();
  writePlanFile(folder / "large.json", file);
  const auto written = Clock::now();
  const PlanFile again = readPlanFile(folder / "large.json");
  const auto read = Clock::now();
  EXPECT_TRUE(same(again, file));
  const std::chrono::duration<double> writing = written - begin, reading = read - written;
  RecordProperty("writing_seconds", std::to_string(writing.count()));
  RecordProperty("reading_seconds", std::to_string(reading.count()));
  EXPECT_LT(writing.count(), 4);
  EXPECT_LT(reading.count(), 4);
}

}  // namespace
}  // namespace zel::host
