// Files that mean harm, or are no lists at all: a message and an end, soon.
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "import/formats.h"
#include "import_checks.h"
#include "packed_files.h"
#include "support/temporary_folder.h"

namespace zel::host {
namespace {

using Clock = std::chrono::steady_clock;

std::string repeated(const std::string& text, std::size_t count) {
  std::string all;
  all.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

TEST(HostileFiles, AMillionRowsGiveAsManyStationsAsAPlanMayHave) {
  std::string text = "name,lat,lon,height\n";
  for (int i = 0; i < 1'000'000; ++i) text += "S,36." + std::to_string(i) + ",-84,20\n";
  const auto begin = Clock::now();
  const auto result = importText(text);
  // Half a second when built for speed; sanitizers take ten times that.
  EXPECT_LT(std::chrono::duration<double>(Clock::now() - begin).count(), 30);
  EXPECT_EQ(result.stations.size(), kMostStations);
  EXPECT_EQ(result.skipped, 1'000'000U - kMostStations);
  EXPECT_EQ(problemTexts(result),
            Texts{"200002: a plan has 200000 stations at most; this one and those behind it "
                  "are left out"});
}

TEST(HostileFiles, ManyBadRowsAreCountedAndTheFirstOfThemNamed) {
  const auto result = importText("name,lat,lon\n" + repeated("A,x,y\n", 50'000));
  EXPECT_EQ(result.error.substr(0, 52), "none of the 50000 entries can be taken; line 2: \"x\",");
  EXPECT_EQ(result.problems.size(), kMostProblems);
}

TEST(HostileFiles, VeryLongLinesAreReadOrNamed) {
  const auto extra = importText("name,lat,lon\nA,36,-84," + std::string(5'000'000, 'x') + "\nB,36,-84\n");
  EXPECT_EQ(extra.stations.size(), 2U);
  const auto position = importText("name,lat,lon\nA," + std::string(5'000'000, '1') + ",-84\nB,36,-84\n");
  EXPECT_EQ(problemTexts(position), Texts{"2: its position is too long"});
  EXPECT_EQ(importText("name,lat,lon\n" + std::string(5'000'000, ',')).error, "there are no stations in it");
  EXPECT_NE(importText(std::string(5'000'000, 'x')).error, "");
}

TEST(HostileFiles, QuotesWithoutEndCostNoMoreThanTheirLines) {
  const auto result = importText("name,lat,lon\n" + repeated("\"\"\"\n\"\"\"\"\n", 50'000) + "A,36,-84\n");
  EXPECT_EQ(result.stations.size(), 1U);
}

TEST(HostileFiles, BinaryFilesAreNoText) {
  std::mt19937 random(7);
  std::string bytes(100'000, '\0');
  for (char& c : bytes) c = static_cast<char>(random());
  EXPECT_NE(importText(bytes).error.find("this is no text file"), std::string::npos);
  for (char& c : bytes)
    if (c == '\0') c = 1;
  EXPECT_EQ(importText(bytes).error, "this is no text file");
  EXPECT_EQ(importText(std::string("name,lat,lon\nA,36,-84\nB\0,36,-84\n", 33)).error,
            "line 3: there is a zero byte; this is no text file, or it is damaged");
  EXPECT_EQ(importText(std::string("\xFF\xFE\0\0a\0\0\0", 8)).error,
            "its encoding is UTF-32; save it as UTF-8");
}

TEST(HostileFiles, NothingIsEmptyAndSoAreBlanks) {
  EXPECT_EQ(importText("").error, "it is empty");
  EXPECT_EQ(importText(" \r\n\n\t").error, "it is empty");
  EXPECT_EQ(importText("\xEF\xBB\xBF").error, "it is empty");
}

TEST(HostileFiles, DeepJsonIsRefused) {
  const std::string deep = "line 1: arrays and objects are nested deeper than 100";
  EXPECT_EQ(importText(R"({"features":)" + repeated("[", 100'000) + repeated("]", 100'000) + "}").error,
            deep);
  EXPECT_EQ(importText(repeated("{\"a\":", 100'000)).error, deep);
  EXPECT_EQ(importText(R"({"type":"Point","coordinates":)" + repeated("[", 100'000)).error, deep);
}

TEST(HostileFiles, DeepXmlIsRefused) {
  EXPECT_EQ(importText("<kml>" + repeated("<a>", 100'000)).error,
            "line 1: elements are nested deeper than 100");
}

TEST(HostileFiles, EntitiesOfOnesOwnAndOutsideFilesAreRefused) {
  std::string bomb = "<?xml version=\"1.0\"?>\n<!DOCTYPE kml [<!ENTITY a0 \"lol\">";
  for (int i = 1; i < 10; ++i)
    bomb +=
        "<!ENTITY a" + std::to_string(i) + " \"" + repeated("&a" + std::to_string(i - 1) + ";", 10) + "\">";
  EXPECT_EQ(importText(bomb + "]>\n<kml>&a9;</kml>", "a.kml").error,
            "line 2: there is a document type with definitions of its own, which is not read");
  EXPECT_NE(importText(
                "<!DOCTYPE kml [<!ENTITY x SYSTEM \"file:///etc/hostname\">]><kml><Placemark><name>&x;</name>"
                "<Point><coordinates>1,2</coordinates></Point></Placemark></kml>")
                .error,
            "");
  EXPECT_NE(importText("<kml>&undeclared;</kml>").error.find("line 1: the XML is damaged"),
            std::string::npos);
}

TEST(HostileFiles, TagsWithoutEndAreRefused) {
  std::string tag = "<kml>\n<a ";
  for (int i = 0; i < 50'000; ++i) tag += "a" + std::to_string(i) + "=\"1\" ";
  EXPECT_EQ(importText(tag + "/></kml>").error, "line 2: a tag is longer than 16 KiB");
}

TEST(HostileFiles, ArchivesThatUnpackToTooMuchAreRefusedWithoutUnpackingAll) {
  constexpr std::size_t kMost = 2U << 20;
  const std::string bomb = packed({{"doc.kml", std::string(40U << 20, ' ')}});
  EXPECT_LT(bomb.size(), 100'000U);
  const UnpackedKml unpacked = unpackKmz(bomb, {}, kMost);
  EXPECT_EQ(unpacked.error, "the KML in it is larger than 2 MiB");
  EXPECT_LE(unpacked.text.size(), kMost);
  EXPECT_EQ(unpackKmz(packed({{"doc.kml", std::string(kMost, ' ')}}), {}, kMost).text.size(), kMost);
}

TEST(HostileFiles, ArchivesWithoutAKmlThatCanBeReadAreRefused) {
  const std::string kml = "<kml><Placemark><Point><coordinates>1,2</coordinates></Point></Placemark></kml>";
  EXPECT_EQ(importText(packed({{"sheet.xml", "x"}}), "a.xlsx").error,
            "there is no KML in this archive; save a spreadsheet as CSV");
  EXPECT_EQ(importText(packed({{"doc.kml", kml}}, "secret")).error, "the KML in it is encrypted");
  EXPECT_EQ(importText(packed({{"doc.kml", packed({{"doc.kml", kml}})}})).error,
            "the KML in it is an archive again");
  const std::string whole = packed({{"doc.kml", repeated(kml + "\n", 1000)}});
  for (std::size_t length = 4; length < whole.size(); length += 7)
    EXPECT_NE(importText(whole.substr(0, length)).error, "") << length;
}

TEST(HostileFiles, ArchivesOfManyFilesAreSearched) {
  std::vector<std::pair<std::string, std::string>> files;
  for (int i = 0; i < 5'000; ++i) files.emplace_back(std::to_string(i), "");
  files.emplace_back("doc.kml",
                     "<kml><Placemark><Point><coordinates>1,2</coordinates></Point></Placemark></kml>");
  EXPECT_EQ(importText(packed(files)).stations.size(), 1U);
  EXPECT_EQ(importText("PK\3\4" + repeated("PK\1\2", 200'001)).error,
            "there are more than 200000 files in this archive");
}

TEST(ImportedFiles, AreReadFromTheDisk) {
  const test::TemporaryFolder folder;
  test::writeBytes(folder / "masts.csv", "lat,lon\n36.4,-84.3\n");
  EXPECT_EQ(stationTexts(importStations(folder / "masts.csv")), Texts{"masts 1 36.4 -84.3 30"});
}

TEST(ImportedFiles, ThatAreNoneAreRefusedWithTheReasonAndNeverWaitedFor) {
  const test::TemporaryFolder folder;
  EXPECT_EQ(importStations(folder.path()).error, "it is a folder");
  EXPECT_EQ(importStations(folder / "missing.csv").error, "No such file or directory");
  EXPECT_EQ(importStations("").error, "No such file or directory");
  EXPECT_EQ(importStations(std::string("a\0b", 3)).error, "its name has a zero byte");
  EXPECT_EQ(importStations("/dev/zero").error, "it is no regular file");
  ASSERT_EQ(::mkfifo((folder / "pipe.csv").c_str(), 0600), 0);
  EXPECT_EQ(importStations(folder / "pipe.csv").error, "it is no regular file");
}

TEST(ImportedFiles, ThatAreTooLargeAreRefusedBeforeTheyAreRead) {
  const test::TemporaryFolder folder;
  test::writeBytes(folder / "large.csv", "name,lat,lon\n");
  std::filesystem::resize_file(folder / "large.csv", std::uintmax_t{1} << 40);
  EXPECT_EQ(importStations(folder / "large.csv").error, "it is larger than 256 MiB");
}

TEST(ImportedFiles, ThatMayNotBeReadSayWhy) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read everything";
  const test::TemporaryFolder folder;
  test::writeBytes(folder / "locked.csv", "name,lat,lon\n");
  std::filesystem::permissions(folder / "locked.csv", std::filesystem::perms::none);
  EXPECT_EQ(importStations(folder / "locked.csv").error, "Permission denied");
}

TEST(ImportWork, EndsWhenItIsCancelledAndGivesNothing) {
  std::atomic<bool> cancelled = false;
  ImportOptions options;
  options.cancelled = &cancelled;
  const std::string csv = "name,lat,lon\n" + repeated("A,36,-84\n", 10'000);
  const std::string json =
      R"({"type":"FeatureCollection","features":[)" +
      repeated(R"({"type":"Feature","geometry":{"type":"Point","coordinates":[1,2]}},)", 10'000) + "{}]}";
  const std::string kml =
      "<kml>" + repeated("<Placemark><Point><coordinates>1,2</coordinates></Point></Placemark>", 10'000) +
      "</kml>";
  for (const std::string& text : {csv, json, kml, packed({{"doc.kml", kml}})}) {
    cancelled = false;
    int calls = 0;
    options.progress = [&](double) { cancelled = ++calls == 3; };
    const auto result = importStationsFrom(text, "x", options);
    EXPECT_EQ(result.error, "the import was cancelled");
    EXPECT_TRUE(result.stations.empty() && result.links.empty());
    EXPECT_EQ(calls, 3);
  }
  options.progress = nullptr;
  EXPECT_EQ(importStationsFrom(csv, "x", options).error, "the import was cancelled");
}

TEST(ImportWork, TellsHowFarItIsUpToTheEnd) {
  ImportOptions options;
  std::vector<double> told;
  options.progress = [&](double fraction) { told.push_back(fraction); };
  importStationsFrom("name,lat,lon\n" + repeated("A,36,-84\n", 10'000), "x", options);
  ASSERT_GT(told.size(), 50U);
  EXPECT_LE(told.size(), 102U);
  EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
  EXPECT_LE(told.back(), 1.0);
  EXPECT_GE(told.back(), 0.98);
}

}  // namespace
}  // namespace zel::host
