// Outputs that are beside their file until they are whole.
#include "links/unfinished_output.h"

#include <sys/stat.h>

#include <filesystem>

#include "links/input_bytes.h"
#include "links/run_facts.h"
#include "list_checks.h"

namespace zel::host {
namespace {

namespace fs = std::filesystem;

const RunFacts kFacts{{"the list's size", "100"}, {"--clearance", "60"}};

std::string refusalOf(const std::string& path, const RunFacts& facts, StartMode mode, bool canResume = true) {
  try {
    const UnfinishedOutput output(path, facts, mode, canResume);
  } catch (const LinkFileError& error) {
    return error.what();
  }
  return {};
}

class UnfinishedOutputs : public testing::Test {
 protected:
  // A run that is cut off: the first part counts, the second was on its way.
  void cutOff() {
    UnfinishedOutput output(path_, kFacts, StartMode::kFresh, true);
    output.write("counts\n");
    output.checkpoint("links\t1\n");
    output.write("half a li");
  }
  std::string in(const std::string& text) const { return path_ + text; }

  test::TemporaryFolder folder_;
  std::string path_ = folder_ / "out.csv";
};

TEST_F(UnfinishedOutputs, BecomeTheFileWhenTheyAreWhole) {
  std::ofstream(path_) << "before";
  ::chmod(path_.c_str(), 0640);
  {
    UnfinishedOutput output(path_, kFacts, StartMode::kFresh, true);
    output.write("all");
    EXPECT_EQ(test::fileBytes(path_), "before");
    output.finish();
  }
  EXPECT_EQ(test::fileBytes(path_), "all");
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms(0640));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), {}), 1);
}

TEST_F(UnfinishedOutputs, AreNotThrownAwayUnasked) {
  cutOff();
  EXPECT_EQ(refusalOf(path_, kFacts, StartMode::kFresh),
            in(".unfinished is left of a run that was cut off; --resume goes on with it, --restart throws it "
               "away and "
               "begins anew"));
  EXPECT_EQ(test::fileBytes(in(".unfinished")).substr(0, 7), "counts\n");
}

TEST_F(UnfinishedOutputs, AreGoneOnWithBehindWhatCounts) {
  cutOff();
  std::ofstream(in(".unfinished"), std::ios::app) << "half a li";
  {
    UnfinishedOutput output(path_, kFacts, StartMode::kResume, true);
    EXPECT_EQ(output.keptTotals(), "links\t1\n");
    output.write("rest\n");
    output.finish();
  }
  EXPECT_EQ(test::fileBytes(path_), "counts\nrest\n");
}

TEST_F(UnfinishedOutputs, AreBegunAnewWhenAsked) {
  cutOff();
  {
    UnfinishedOutput output(path_, kFacts, StartMode::kRestart, true);
    EXPECT_FALSE(output.keptTotals());
    output.write("new\n");
    output.finish();
  }
  EXPECT_EQ(test::fileBytes(path_), "new\n");
  EXPECT_FALSE(fs::exists(in(".unfinished.state")));
}

TEST_F(UnfinishedOutputs, WithNothingLeftAreBegunByResumeToo) {
  UnfinishedOutput output(path_, kFacts, StartMode::kResume, true);
  EXPECT_FALSE(output.keptTotals());
}

TEST_F(UnfinishedOutputs, OfWhichOnlyTheStateIsLeftAreBegunAnew) {
  cutOff();
  fs::rename(in(".unfinished"), path_);
  for (const StartMode mode : {StartMode::kFresh, StartMode::kResume}) {
    UnfinishedOutput output(path_, kFacts, mode, true);
    EXPECT_FALSE(output.keptTotals());
  }
  EXPECT_EQ(test::fileBytes(path_).substr(0, 7), "counts\n");
}

TEST_F(UnfinishedOutputs, OfAnotherRunAreRefusedWithTheDifference) {
  cutOff();
  EXPECT_EQ(refusalOf(path_, {{"the list's size", "120"}, {"--clearance", "60"}}, StartMode::kResume),
            "what is left in " +
                in(".unfinished is of another run: the list's size was 100 and is 120; make it the "
                   "same, or begin anew with --restart"));
  EXPECT_EQ(differenceOf(kFacts, {{"the list's size", "100"}, {"--notes", "given"}}),
            "--notes was not there and is given; --clearance was 60 and is not there");
  EXPECT_EQ(differenceOf(kFacts, kFacts), "");
}

TEST_F(UnfinishedOutputs, ThatAreDamagedAreToldAndNotTaken) {
  const std::string damaged = "what is left in " + in(".unfinished is damaged; --restart begins anew");
  cutOff();
  std::string state = test::fileBytes(in(".unfinished.state"));
  state[state.size() / 2] ^= 1;
  std::ofstream(in(".unfinished.state")) << state;
  EXPECT_EQ(refusalOf(path_, kFacts, StartMode::kResume), damaged);
  fs::remove(in(".unfinished.state"));
  EXPECT_EQ(refusalOf(path_, kFacts, StartMode::kResume), damaged);
  EXPECT_EQ(refusalOf(path_, kFacts, StartMode::kRestart), "");
  fs::remove(in(".unfinished"));
  fs::remove(in(".unfinished.state"));
  cutOff();
  fs::resize_file(in(".unfinished"), 3);
  EXPECT_EQ(refusalOf(path_, kFacts, StartMode::kResume), damaged);
}

TEST_F(UnfinishedOutputs, OfStandardInputCannotBeGoneOnWith) {
  cutOff();
  EXPECT_NE(
      refusalOf(path_, kFacts, StartMode::kResume, false).find("from standard input cannot be gone on with"),
      std::string::npos);
}

TEST_F(UnfinishedOutputs, AreWrittenByOneRunAtATime) {
  const UnfinishedOutput output(path_, kFacts, StartMode::kFresh, true);
  EXPECT_EQ(refusalOf(path_, kFacts, StartMode::kRestart),
            "another run is writing " + path_ + "; wait for it, or name another file");
}

TEST_F(UnfinishedOutputs, FollowLinks) {
  fs::create_directory(folder_ / "there");
  fs::create_symlink("there/real.csv", path_);
  UnfinishedOutput output(path_, kFacts, StartMode::kFresh, true);
  output.write("x");
  output.finish();
  EXPECT_TRUE(fs::is_symlink(path_));
  EXPECT_EQ(test::fileBytes(folder_ / "there/real.csv"), "x");
}

TEST_F(UnfinishedOutputs, AreRefusedWhereNothingCanBeWritten) {
  EXPECT_EQ(refusalOf(folder_.path().string(), kFacts, StartMode::kFresh),
            "cannot write " + folder_.path().string() + ": it is a folder; name a file");
  EXPECT_EQ(refusalOf(folder_ / "no/out.csv", kFacts, StartMode::kFresh),
            "cannot write " + (folder_ / "no/out.csv.unfinished").string() +
                ": No such file or directory; check the name of its folder");
}

TEST(KeptStates, AreReadAsTheyWereWritten) {
  const KeptState state{{{"a\tb", "c\nd\\"}, {"e", ""}}, 12345, "links\t1\nnote\tx\\y\n"};
  const auto read = KeptState::read(state.text());
  ASSERT_TRUE(read);
  EXPECT_EQ(read->facts, state.facts);
  EXPECT_EQ(read->bytes, 12345U);
  EXPECT_EQ(read->totals, state.totals);
  EXPECT_FALSE(KeptState::read(""));
  EXPECT_FALSE(KeptState::read(state.text().substr(0, state.text().size() - 5)));
}

TEST(InputFingerprints, AreOfTheContentAlone) {
  const test::TemporaryFolder folder;
  const auto fingerprint = [&](const std::string& name, const std::string& content) {
    std::ofstream(folder / name, std::ios::binary) << content;
    return InputBytes(folder / name).fingerprint();
  };
  const std::string content(300001, 'x');
  EXPECT_EQ(fingerprint("a", content), fingerprint("b", content));
  EXPECT_NE(fingerprint("a", content), fingerprint("b", content + "y"));
  std::string other = content;
  other[200000] = 'z';
  EXPECT_NE(fingerprint("a", content), fingerprint("b", other));
}

TEST(InputFiles, ThatCannotBeReadAreTold) {
  const auto problem = [](const std::string& name) {
    try {
      const InputBytes input(name);
    } catch (const LinkFileError& error) {
      return std::string(error.what());
    }
    return std::string();
  };
  EXPECT_EQ(problem("/no/such.csv"),
            "cannot read /no/such.csv: No such file or directory; check its name and folder");
  EXPECT_EQ(problem("/"), "cannot read /: Is a directory; give a file");
}

TEST(TerrainStates, ChangeWithTheFilesOfAFolder) {
  const test::TemporaryFolder folder;
  std::ofstream(folder / "a.hgt") << "1";
  const std::string before = terrainState(folder.path().string());
  EXPECT_EQ(before, terrainState(folder.path().string()));
  EXPECT_EQ(before.substr(0, 8), "1 files,");
  std::ofstream(folder / "b.hgt") << "1";
  const std::string more = terrainState(folder.path().string());
  EXPECT_NE(before, more);
  std::ofstream(folder / "b.hgt") << "12";
  EXPECT_NE(terrainState(folder.path().string()), more);
  EXPECT_EQ(terrainState("/no/such"), "");
}

TEST(LinksProgress, TellsRateAndRemainingTime) {
  LinksProgress progress{1200, 0, 10, 250, 1000};
  EXPECT_EQ(linksProgressText(progress), "links: 1200 done, 25 %, 120 links/s, 0:30 left");
  progress.before = 600;
  EXPECT_EQ(linksProgressText(progress), "links: 1200 done, 25 %, 60 links/s, 1:00 left");
  progress.allBytes = 0;
  EXPECT_EQ(linksProgressText(progress), "links: 1200 done, 60 links/s");
  progress = {100, 0, 100, 1, 1000};
  EXPECT_EQ(linksProgressText(progress), "links: 100 done, 0 %, 1 links/s, 27:45:00 left");
  progress.seconds = 0.1;
  EXPECT_EQ(linksProgressText(progress), "links: 100 done, 0 %");
}

}  // namespace
}  // namespace zel::host
