// The signal graph as it is used: the point-to-point program and gnuplot run, and their picture is looked at.
#include <gtest/gtest.h>

#include <QColor>
#include <QImage>
#include <QString>
#include <cmath>
#include <cstdlib>
#include <map>

#include "component/desktop/desktop_programs.h"
#include "export_fixture.h"
#include "support/environment_variable.h"

namespace zel {
namespace {

namespace fs = std::filesystem;
using test::fileBytes;
using test::writeBytes;

// The colours that gnuplot gives its first five curves.
const QColor kLongleyRice(0x94, 0x00, 0xD3), kPointToPoint(0x00, 0x9E, 0x73), kFreeSpace(0x56, 0xB4, 0xE9),
    kContour(0xE6, 0x9F, 0x00), kReference(0xF0, 0xE4, 0x42);

bool isNear(QRgb pixel, const QColor& colour) {
  constexpr int kTolerance = 24;  // of 255
  return std::abs(qRed(pixel) - colour.red()) < kTolerance &&
         std::abs(qGreen(pixel) - colour.green()) < kTolerance &&
         std::abs(qBlue(pixel) - colour.blue()) < kTolerance;
}

// A graph's picture, read back by the two level lines: they tell where 70 and 60 dBu are, and their ends
// where the first and the last distance are.
class Graph {
 public:
  Graph(const std::string& path, double first, double last)
      : image_(QString::fromStdString(path)), first_(first), last_(last) {
    if (image_.isNull()) return;
    const int below = 150;  // the key is above it, at the right
    for (int y = below; y < image_.height(); ++y)
      noteRow(y, kContour, row70_), noteRow(y, kReference, row60_);
  }
  const QImage& image() const { return image_; }
  bool isReadable() const { return row70_.width > 600 && row60_.width > 600 && row60_.y > row70_.y; }

  double row(double level) const { return row70_.y + (70 - level) * (row60_.y - row70_.y) / 10.0; }
  int column(double distance) const {
    return static_cast<int>(
        std::lround(row70_.left + (distance - first_) * (row70_.width - 1) / (last_ - first_)));
  }
  // Whether a curve goes through a point; to a few pixels, the width of its line and of the reading.
  bool shows(const QColor& curve, double distance, double level) const {
    constexpr int kPixels = 4;
    const int x = column(distance), y = static_cast<int>(std::lround(row(level)));
    for (int dy = -kPixels; dy <= kPixels; ++dy)
      for (int dx = -2; dx <= 2; ++dx)
        if (image_.valid(x + dx, y + dy) && isNear(image_.pixel(x + dx, y + dy), curve)) return true;
    return false;
  }
  bool hasInColumn(const QColor& curve, double distance) const {
    for (int y = 0; y < image_.height(); ++y)
      if (isNear(image_.pixel(column(distance), y), curve)) return true;
    return false;
  }

 private:
  struct Row {
    double y = 0;
    int left = 0, width = 0;
  };
  void noteRow(int y, const QColor& colour, Row& widest) const {
    int left = -1, right = -1;
    for (int x = 0; x < image_.width(); ++x)
      if (isNear(image_.pixel(x, y), colour)) {
        if (left < 0) left = x;
        right = x;
      }
    if (left >= 0 && right - left + 1 > widest.width)
      widest = {static_cast<double>(y), left, right - left + 1};
  }

  QImage image_;
  double first_, last_;
  Row row70_, row60_;
};

struct SignalGraphPicture : test::ExportFixture {
  test::TemporaryFolder temporary;
  test::EnvironmentVariable tmp{"tmp", temporary.path().string()};
  DesktopPrograms real;
  SignalGraphRequest request{{2.5, 3, 4.5}, 0, std::nullopt, "Ridge to valley", true};

  void SetUp() override {
    ExportFixture::SetUp();
    module.helperProgramFolder = ZEL_HELPER_PROGRAMS;
    store.set("Settings", "gnuPlotEXE", "gnuplot");
    programs.onRun = [this](const ProgramCall& call) { return real.run(call, 60000, {}); };
    programs.onStart = [this](const ProgramCall& call) { real.start(call); };
    // A ridge of 160 m half way: behind it the levels fall.
    state.elevation[6] = 260;
  }
  ExportOutcome draw(const std::string& picture) {
    ExportProcedures all = procedures();
    const ExportOutcome outcome = all.lMakeGNUSignalPlot(picture, request);
    if (all.failure()) ADD_FAILURE() << all.failure()->description();
    return outcome;
  }
  // The plotted rows of the data: distance, then the levels of columns 3, 4 and 6.
  std::vector<std::array<double, 4>> rows(const std::string& data) const {
    std::vector<std::array<double, 4>> all;
    std::istringstream text(fileBytes(data));
    bool begun = false;
    for (std::string line; std::getline(text, line);) {
      if (begun && line[0] != '#') {
        const auto fields = test::fieldsOf(line);
        all.push_back({std::strtod(fields[1].c_str(), nullptr), std::strtod(fields[2].c_str(), nullptr),
                       std::strtod(fields[3].c_str(), nullptr), std::strtod(fields[5].c_str(), nullptr)});
      }
      begun = begun || line == "START DATA\r";
    }
    return all;
  }
};

TEST_F(SignalGraphPicture, HasItsSizeAndItsCurvesWhereTheDataSay) {
  ASSERT_EQ(draw(file("graph.png")), ExportOutcome::kWritten);
  const Graph graph(file("graph.png"), 1, 10);
  ASSERT_EQ(graph.image().size(), QSize(1280, 1024));
  ASSERT_TRUE(graph.isReadable());
  const auto all = rows(file("graph.dat"));
  ASSERT_EQ(all.size(), 10U);
  for (std::size_t i = 1; i + 1 < all.size(); ++i) {
    const auto& [distance, longleyRice, pointToPoint, freeSpace] = all[i];
    EXPECT_TRUE(graph.shows(kLongleyRice, distance, longleyRice)) << distance;
    EXPECT_TRUE(graph.shows(kPointToPoint, distance, pointToPoint)) << distance;
    EXPECT_TRUE(graph.shows(kFreeSpace, distance, freeSpace)) << distance;
    EXPECT_FALSE(graph.shows(kFreeSpace, distance, freeSpace + 2)) << "the reading can fail";
  }
  EXPECT_LT(all[9][1], all[3][1] - 20) << "the ridge is in the picture";
}

// 10 log10(2.5) + 106.92 - 20 log10(d) less 4.5 dB, and beyond the ridge less what it costs.
TEST_F(SignalGraphPicture, ThePointToPointLevelsAreThoseOfTheProgram) {
  ASSERT_EQ(draw(file("graph.png")), ExportOutcome::kWritten);
  const auto all = rows(file("graph.dat"));
  EXPECT_NEAR(all[0][2], 110.899 - 4.5, 0.01);
  EXPECT_LT(all[9][2], all[9][3] - 4.5 - 15);
  EXPECT_TRUE(fs::exists(file("graph_PTP.txt")));
}

TEST_F(SignalGraphPicture, ShowsTheStretchOnly) {
  request.start = 3000;
  request.end = 8000;
  ASSERT_EQ(draw(file("graph.png")), ExportOutcome::kWritten);
  const Graph graph(file("graph.png"), 3, 8);
  ASSERT_TRUE(graph.isReadable());
  for (const auto& [distance, longleyRice, pointToPoint, freeSpace] : rows(file("graph.dat")))
    EXPECT_TRUE(graph.shows(kFreeSpace, distance, freeSpace)) << distance;
}

TEST_F(SignalGraphPicture, ASampleWithoutAPointToPointLevelInterruptsItsCurve) {
  programs.onRun = [this](const ProgramCall& call) {
    const ProgramOutcome outcome = real.run(call, 60000, {});
    if (call.program == "gnuplot") return outcome;
    std::string text;
    std::istringstream lines(fileBytes(call.arguments[1]));
    for (std::string line; std::getline(lines, line);)
      if (!line.starts_with("5,")) text += line + "\n";
    writeBytes(call.arguments[1], text);
    return outcome;
  };
  ASSERT_EQ(draw(file("graph.png")), ExportOutcome::kWritten);
  const Graph graph(file("graph.png"), 1, 10);
  ASSERT_TRUE(graph.isReadable());
  EXPECT_FALSE(graph.hasInColumn(kPointToPoint, 4.3));
  EXPECT_FALSE(graph.hasInColumn(kPointToPoint, 3.7));
  EXPECT_TRUE(graph.hasInColumn(kPointToPoint, 2.5));
  EXPECT_TRUE(graph.hasInColumn(kLongleyRice, 4.3));
}

TEST_F(SignalGraphPicture, WithoutAnyPointToPointLevelTheOtherCurvesAreThere) {
  programs.onRun = [this](const ProgramCall& call) {
    if (call.program == "gnuplot") return real.run(call, 60000, {});
    writeBytes(call.arguments[1], "sample,distance_km\n");
    return ProgramOutcome{true, false, 0, {}};
  };
  ASSERT_EQ(draw(file("graph.png")), ExportOutcome::kWritten);
  EXPECT_TRUE(Graph(file("graph.png"), 1, 10).isReadable());
}

TEST_F(SignalGraphPicture, ThreeSamplesAreEnough) {
  state.path.intervals = 2;
  state.path.lastIndex = 3;
  ASSERT_EQ(draw(file("graph.png")), ExportOutcome::kWritten);
  EXPECT_EQ(QImage(QString::fromStdString(file("graph.png"))).size(), QSize(1280, 1024));
}

// The picture below its title.
QImage plotOf(const std::string& path) {
  const QImage image(QString::fromStdString(path));
  return image.copy(0, 60, image.width(), image.height() - 60);
}

TEST_F(SignalGraphPicture, ATitleOfNumbersIsNoPointOfACurve) {
  draw(file("plain.png"));
  request.title = "500 5";
  draw(file("numbers.png"));
  EXPECT_EQ(plotOf(file("numbers.png")), plotOf(file("plain.png")));
}

TEST_F(SignalGraphPicture, ATitleOrPathRunsNothing) {
  const std::string touched = file("trap");
  const std::string inner = file("a `touch trap` \"b\" $c \\d_e");
  fs::create_directory(inner);
  request.title = "x `touch " + touched + "` \" `touch " + touched + "` \\` \\\" @x";
  const auto before = fs::current_path();
  fs::current_path(folder.path());
  const ExportOutcome outcome = draw(inner + "/`touch trap`.png");
  fs::current_path(before);
  EXPECT_EQ(outcome, ExportOutcome::kWritten);
  EXPECT_FALSE(fs::exists(touched));
  EXPECT_EQ(QImage(QString::fromStdString(inner + "/`touch trap`.png")).size(), QSize(1280, 1024));
}

TEST_F(SignalGraphPicture, ARelativeNameThatLooksLikeACommandIsAFile) {
  const auto before = fs::current_path();
  fs::current_path(folder.path());
  for (const std::string name : {"|touch trap", "<touch trap", "~x", "-"}) {
    EXPECT_EQ(draw(name + "1.png"), ExportOutcome::kWritten) << name;
    EXPECT_TRUE(fs::exists(file(name + "1.png"))) << name;
  }
  fs::current_path(before);
  for (const auto& entry : fs::directory_iterator(folder.path()))
    EXPECT_FALSE(entry.path().filename().string().starts_with("trap")) << entry.path();
}

TEST_F(SignalGraphPicture, LeftToItselfGnuplotDrawsItToo) {
  request.waitForPicture = false;
  ASSERT_EQ(draw(file("graph.png")), ExportOutcome::kWritten);
  ASSERT_EQ(programs.starts.size(), 1U);
  QImage image;
  for (int i = 0; i < 500 && image.isNull(); ++i) {
    ::usleep(20000);
    image = QImage(QString::fromStdString(file("graph.png")));
  }
  EXPECT_EQ(image.size(), QSize(1280, 1024));
}

TEST_F(SignalGraphPicture, AGnuplotThatIsNotThereIsTold) {
  store.set("Settings", "gnuPlotEXE", "/nowhere/gnuplot");
  for (const bool wait : {true, false}) {
    request.waitForPicture = wait;
    ExportProcedures all = procedures();
    EXPECT_EQ(all.lMakeGNUSignalPlot(file("graph.png"), request), ExportOutcome::kFailed);
    ASSERT_TRUE(all.failure());
    EXPECT_EQ(all.failure()->number(), 53);
    EXPECT_NE(all.failure()->description().find("gnuPlotEXE"), std::string::npos);
  }
  EXPECT_TRUE(fs::exists(file("graph.plt")));
}

TEST_F(SignalGraphPicture, APointToPointProgramThatIsNotThereIsTold) {
  module.helperProgramFolder = folder.path().string();
  ExportProcedures all = procedures();
  EXPECT_EQ(all.lMakeGNUSignalPlot(file("graph.png"), request), ExportOutcome::kFailed);
  ASSERT_TRUE(all.failure());
  EXPECT_EQ(all.failure()->number(), 53);
  EXPECT_NE(all.failure()->description().find("vexptp.exe"), std::string::npos);
  EXPECT_FALSE(fs::exists(file("graph.dat")));
}

// One that hangs, with its minute made as long as it needs to write.
TEST_F(SignalGraphPicture, APointToPointProgramThatHangsIsEndedAndItsResultsSoFarAreTaken) {
  writeBytes(folder / "vexptp.exe",
             "#!/bin/sh\nprintf '3,2,0,0,99.5\\n4,3,0,0,9' > \"$2\"\n: > \"$0.ready\"\nsleep 30\n");
  fs::permissions(folder / "vexptp.exe", fs::perms::owner_all);
  module.helperProgramFolder = folder.path().string();
  programs.onRun = [this](const ProgramCall& call) {
    if (call.program == "gnuplot") return real.run(call, 60000, {});
    const ProgramOutcome outcome =
        real.run(call, 60000, [this] { return !fs::exists(folder / "vexptp.exe.ready"); });
    EXPECT_FALSE(outcome.finished);
    return outcome;
  };
  ASSERT_EQ(draw(file("graph.png")), ExportOutcome::kWritten);
  const auto all = rows(file("graph.dat"));
  EXPECT_TRUE(std::isnan(all[0][2]));
  EXPECT_EQ(all[1][2], 99.5);
  EXPECT_TRUE(std::isnan(all[2][2]));
}

TEST_F(SignalGraphPicture, AKilledPointToPointProgramLeavesItsResultsSoFar) {
  writeBytes(folder / "vexptp.exe", "#!/bin/sh\nprintf '3,2,0,0,99.5\\n' > \"$2\"\nkill -9 $$\n");
  fs::permissions(folder / "vexptp.exe", fs::perms::owner_all);
  module.helperProgramFolder = folder.path().string();
  ASSERT_EQ(draw(file("graph.png")), ExportOutcome::kWritten);
  EXPECT_EQ(rows(file("graph.dat"))[1][2], 99.5);
}

}  // namespace
}  // namespace zel
