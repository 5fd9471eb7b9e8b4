// printPath over the real parts: the document is the one that the window prints, and whatever the page cannot
// have is told.
#include <gtest/gtest.h>

#include <QApplication>
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bundled_path.h"
#include "canvas/qt/pdf_document.h"
#include "real_component.h"
#include "support/offscreen.h"
#include "support/says.h"
#include "ui/profile_window/frm_profile.h"
#include "zel/path_page.h"

namespace zel {
namespace {

using test::says;

std::size_t countOf(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size()))
    ++count;
  return count;
}

// The PDF without the second in which it was written, which the document takes from the system; the pages
// themselves have the time of the component's clock.
std::string withoutTimeOfWriting(std::string document) {
  const std::string_view entry = "/CreationDate (D:";
  const std::size_t at = document.find(entry);
  EXPECT_NE(at, std::string::npos);
  return at == std::string::npos ? document : document.replace(at + entry.size(), 14, 14, '0');
}

using test::kEnd;
using test::kStart;

class PathPageTest : public test::RealComponentOver<test::OffscreenTest<QApplication>> {
 protected:
  std::string file(const std::string& name) const { return (folder_ / name).string(); }
  std::string bytes(const std::string& name) const { return test::fileBytes(folder_ / name); }

  PathPageRequest request() const {
    PathPageRequest request;
    request.from = {kStart.Lat, kStart.Lon};
    request.to = {kEnd.Lat, kEnd.Lon};
    request.fromHeight = 30;
    request.toHeight = 12;
    request.file = file("own.pdf");
    return request;
  }
  static PathPage printed(const PathPageRequest& request) {
    PathPage page = printPath(request);
    EXPECT_EQ(page.status, 0) << page.error;
    return page;
  }
  // Nothing of the page is seen at the host.
  void expectNoTrace() {
    EXPECT_TRUE(dialogs_->messages.empty());
    EXPECT_EQ(logged(), "");
    EXPECT_FALSE(component_.state().bProfileFailed);
    EXPECT_FALSE(control_.get_PFrmLoaded());
    EXPECT_EQ(store_->ReadSetting("Host Planner", "Profile", "PrintDescription", "none"), "none");
  }

  FrmProfile& window() {
    control_.ShowMainForm(kStart, kEnd);
    EXPECT_NE(windows_->profileWindow(), nullptr);
    return *windows_->profileWindow();
  }
  void expectTheWindowsPage(const PathPageRequest& own, const PaperFormat& paper) {
    PrintRequest print;
    print.file = file("window.pdf");
    print.paper = paper;
    print.copies = own.copies;
    std::string windows;
    printing_->onPrint = [&windows](const PrintRequest& request, const PrintedPage& page,
                                    const PrintedDocument& document) {
      windows = pdfDocument(page, request.copies, document);
    };
    ASSERT_TRUE(windows_->profileWindow()->PrintProfile(print, own.description));
    printed(own);
    EXPECT_GT(bytes("own.pdf").size(), 10000U);
    EXPECT_TRUE(withoutTimeOfWriting(bytes("own.pdf")) == withoutTimeOfWriting(windows));
  }
};

// ---- The same page as from the window ----

TEST_F(PathPageTest, IsThePageOfTheWindow) {
  window();
  PathPageRequest own = request();
  own.description = "Jacksboro, second reflector";
  expectTheWindowsPage(own, {});
}

TEST_F(PathPageTest, IsThePageOfTheWindowWithAMarkerInImperialUnitsOnLetterInLandscape) {
  set("Settings", "DispUnits", "1");
  set("Profile", "Prf_Frez", "60");
  FrmProfile& shown = window();
  shown.Picture1_MouseDown(static_cast<float>(shown.state().plotIndex().xAtDistance(4.5)), 0);
  PathPageRequest own = request();
  own.markersKm = {4.5};
  own.paper = PagePaper::kLetter;
  own.landscape = true;
  own.copies = 2;
  expectTheWindowsPage(own, {"Letter", 15840, 12240, {}});
}

TEST_F(PathPageTest, IsThePageOfTheWindowBetweenTheMarkers) {
  FrmProfile& shown = window();
  const PlotIndex index = shown.state().plotIndex();
  shown.Picture1_MouseDown(static_cast<float>(index.xAtDistance(4.5)), 0);
  shown.Picture1_MouseDown(static_cast<float>(index.xAtDistance(12)), 0);
  shown.mnuProfileExpand_Click();
  PathPageRequest own = request();
  own.expanded = PlotStretch{12, 4.5};
  expectTheWindowsPage(own, {});
}

// ---- What it tells ----

TEST_F(PathPageTest, SaysWhatIsOnThePage) {
  PathPageRequest own = request();
  own.frequencyMhz = 450;
  own.k = 0.75;
  own.fresnelPercent = 60;
  own.units = PlotUnits::kImperial;
  own.markersKm = {12, 4.5};
  const PathPage page = printed(own);
  EXPECT_NEAR(page.widthMm, 210, 0.01);
  EXPECT_NEAR(page.heightMm, 297, 0.01);
  EXPECT_EQ(page.from.latitude, 36.40);
  EXPECT_EQ(page.to.longitude, -84.12);
  EXPECT_EQ(page.startHeightM, 30);
  EXPECT_EQ(page.endHeightM, 12);
  EXPECT_NEAR(page.distanceKm, 28.733669, 1e-5);  // geodesic, by an independent solver
  EXPECT_NEAR(page.bearingDeg, 133.9695, 1e-3);
  EXPECT_EQ(page.k, 0.75);
  EXPECT_EQ(page.frequencyMhz, 450);
  EXPECT_EQ(page.fresnelPercent, 60);
  EXPECT_EQ(page.units, PlotUnits::kImperial);
  EXPECT_FALSE(page.expanded);
  EXPECT_FALSE(page.descriptionCut);
  ASSERT_EQ(page.markers.size(), 2U);
  EXPECT_FALSE(page.markers[0].right);
  EXPECT_NEAR(page.markers[0].distanceKm, 4.5, 1e-5);  // plot x are 32-bit floats
  EXPECT_NEAR(page.markers[1].distanceKm, 12, 1e-5);
  EXPECT_EQ(page.freeSpaceLoss, "114.63");  // 32.45 + 20 log 450 + 20 log 28.734
  EXPECT_FALSE(page.modeledLoss.empty());
  ASSERT_TRUE(page.model);
  EXPECT_EQ(page.model->climate, 5);
  EXPECT_TRUE(page.terrain.bundledSample);
  EXPECT_TRUE(says(page.notes, "the markers are taken in the order of the path"));
  EXPECT_TRUE(page.warnings.empty());
  expectNoTrace();
}

TEST_F(PathPageTest, LetterLiesOnItsLongerSideInLandscape) {
  PathPageRequest own = request();
  own.paper = PagePaper::kLetter;
  own.landscape = true;
  const PathPage page = printed(own);
  EXPECT_NEAR(page.widthMm, 279.4, 0.01);
  EXPECT_NEAR(page.heightMm, 215.9, 0.01);
}

TEST_F(PathPageTest, EachCopyIsAPageOfTheDocument) {
  PathPageRequest own = request();
  own.copies = 3;
  printed(own);
  EXPECT_EQ(countOf(bytes("own.pdf"), "/Type /Page\n"), 3U);
}

TEST_F(PathPageTest, SaysThatALongDescriptionWasCut) {
  PathPageRequest own = request();
  for (int i = 0; i < 5000; ++i) own.description += "mile after mile ";
  const PathPage page = printed(own);
  EXPECT_TRUE(page.descriptionCut);
  EXPECT_TRUE(says(page.notes, "ends in an ellipsis"));
  EXPECT_EQ(countOf(bytes("own.pdf"), "/Type /Page\n"), 1U);
  EXPECT_LT(bytes("own.pdf").size(), 300000U);
}

TEST_F(PathPageTest, NotesBytesOfTheDescriptionThatAreNoText) {
  // A lone lead byte, a lone continuation, an overlong blank, a surrogate, beyond the last code point, and
  // characters that end with the text.
  for (const std::string& text :
       {std::string("caf\xE9 au lait"), std::string("a\x80z"), std::string("\xC0\xA0"),
        std::string("\xED\xA0\x80"), std::string("\xF4\x90\x80\x80"), std::string("Berg \xE5\xB1"),
        std::string("\xF0\x9F\x8F")}) {
    PathPageRequest own = request();
    own.description = text;
    const PathPage page = printed(own);
    EXPECT_TRUE(says(page.notes, "bytes that are not UTF-8")) << text;
    EXPECT_FALSE(says(page.notes, "control characters"));
  }
  for (const std::string& text :
       {std::string("plain"), std::string("F\xC3\xBC\xC3\x9F"), std::string("\xE5\xB1\xB1"),
        std::string("\xF0\x9F\x8F\x94"), std::string("two\r\nlines\tand a tab")}) {
    PathPageRequest own = request();
    own.description = text;
    const PathPage page = printed(own);
    EXPECT_FALSE(says(page.notes, "the description")) << text;
  }
}

TEST_F(PathPageTest, NotesControlCharactersOfTheDescription) {
  using std::string_literals::operator""s;
  for (const std::string& text : {"a\0b"s, "\x1B[1mbold"s, "\x7F"s}) {
    PathPageRequest own = request();
    own.description = text;
    const PathPage page = printed(own);
    EXPECT_TRUE(says(page.notes, "the description has control characters, which are printed as blanks"));
  }
}

TEST_F(PathPageTest, NotesSamplesWithoutAHeight) {
  useTile([](int row, int) { return row > 700 && row < 720 ? -32768 : 300; });
  const PathPage page = printed(request());
  EXPECT_TRUE(says(page.notes, "samples have no height; they are drawn in red, at sea level"));
}

TEST_F(PathPageTest, WarnsOfAFrequencyThatTheModelIsNotMeantFor) {
  PathPageRequest own = request();
  own.frequencyMhz = 30000;
  const PathPage page = printed(own);
  EXPECT_TRUE(says(page.warnings, "the frequency of 30000 MHz is outside 20 to 20000 MHz"));
  EXPECT_FALSE(page.model);
}

TEST_F(PathPageTest, PrintsWithoutAModeledLossWhenTheModelsSettingsCannotBeRead) {
  set("ITM", "iHor", "99999");  // beyond its integer
  const PathPage page = printed(request());
  EXPECT_EQ(page.modeledLoss, "");
  EXPECT_TRUE(says(page.notes, "the modeled loss is left out: "));
  EXPECT_FALSE(page.model);
  expectNoTrace();
}

// ---- What it refuses ----

TEST_F(PathPageTest, RefusesWhatNoPageCanHave) {
  const std::vector<std::pair<std::function<void(PathPageRequest&)>, std::string>> all{
      {[](PathPageRequest& r) { r.file.clear(); }, "no file is named"},
      {[](PathPageRequest& r) { r.copies = 0; }, "there would be 0 copies; give 1 to 999"},
      {[](PathPageRequest& r) { r.copies = 1000; }, "there would be 1000 copies"},
      {[](PathPageRequest& r) { r.copies = std::numeric_limits<std::int32_t>::min(); }, "copies"},
      {[](PathPageRequest& r) {
         r.markersKm = {1, 2, 3};
       },
       "3 markers"},
      {[](PathPageRequest& r) { r.markersKm = {40}; }, "a marker at 40 km is not on the path"},
      {[](PathPageRequest& r) {
         r.expanded = PlotStretch{5, 5.05};
       },
       "needs more than 0.1 km"},
      {[](PathPageRequest& r) {
         r.to = {36.401, -84.35};
       },
       "only 0.111 km apart"},
      {[](PathPageRequest& r) { r.from.latitude = std::numeric_limits<double>::quiet_NaN(); }, "latitude"},
      {[](PathPageRequest& r) { r.frequencyMhz = -1; }, "frequency"}};
  for (const auto& [spoil, said] : all) {
    PathPageRequest own = request();
    spoil(own);
    const PathPage page = printPath(own);
    EXPECT_EQ(page.status, 5) << said;
    EXPECT_NE(page.error.find(said), std::string::npos) << page.error;
    EXPECT_FALSE(std::filesystem::exists(folder_ / "own.pdf"));
  }
  expectNoTrace();
}

TEST_F(PathPageTest, RefusesTerrainThatIsMissing) {
  test::writeBytes(folder_ / "own.pdf", "old");
  PathPageRequest own = request();
  own.from = {50, 10};
  own.to = {50.1, 10};
  const PathPage page = printPath(own);
  EXPECT_EQ(page.status, 2);
  EXPECT_NE(page.error.find("lies outside"), std::string::npos) << page.error;
  EXPECT_EQ(bytes("own.pdf"), "old");
  expectNoTrace();
}

TEST_F(PathPageTest, WritesNoFileOfAnotherNameThanTheOneGiven) {
  PathPageRequest own = request();
  own.file = file("cut") + std::string("\0.pdf", 5);
  const PathPage page = printPath(own);
  EXPECT_EQ(page.status, kPathExportFailed);
  EXPECT_NE(page.error.find("Bad file name"), std::string::npos) << page.error;
  EXPECT_FALSE(std::filesystem::exists(file("cut")));
}

TEST_F(PathPageTest, TellsOfAFileThatCannotBeWritten) {
  std::filesystem::create_directory(folder_ / "folder.pdf");
  test::writeBytes(folder_ / "text", "text");
  const std::vector<std::pair<std::string, std::string>> cases{
      {"/dev/full", "Disk full"},
      {file("vanished/own.pdf"), "Path not found"},
      {file("text/own.pdf"), "Path not found"},
      {file("folder.pdf"), "Path/File access error"}};
  for (const auto& [name, said] : cases) {
    PathPageRequest own = request();
    own.file = name;
    const PathPage page = printPath(own);
    EXPECT_EQ(page.status, kPathExportFailed) << name;
    EXPECT_NE(page.error.find(said), std::string::npos) << page.error;
    EXPECT_NE(page.error.find(name), std::string::npos) << page.error;
  }
  EXPECT_EQ(bytes("text"), "text");
  expectNoTrace();
}

TEST_F(PathPageTest, LeavesTheOpenWindowAsItIs) {
  FrmProfile& shown = window();
  const std::string before = shown.state().path.distance > 0 ? shown.windowTitle().toStdString() : "";
  const float x = static_cast<float>(shown.state().plotIndex().xAtDistance(4.5));
  shown.Picture1_MouseDown(x, 0);
  PathPageRequest own = request();
  own.to = {36.30, -84.20};
  own.markersKm = {2, 3};
  printed(own);
  EXPECT_EQ(shown.windowTitle().toStdString(), before);
  EXPECT_NEAR(shown.state().path.distance, 28.733669, 1e-5);
  EXPECT_EQ(shown.state().leftMarker.x, x);
  EXPECT_FALSE(shown.state().rightMarker.shown);
  EXPECT_FALSE(component_.state().bProfileFailed);
}

}  // namespace
}  // namespace zel
