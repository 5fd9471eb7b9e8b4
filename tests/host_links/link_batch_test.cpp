// Lists from end to end: order, threads, bad rows, hostile texts, runs that are ended and gone on with.
#include "links/link_batch.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <thread>

#include "list_checks.h"
#include "support/says.h"

namespace zel::host {
namespace {

using Texts = std::vector<std::string>;

std::string listOf(std::size_t links) {
  std::string text = kPlainHeader;
  for (std::size_t i = 0; i < links; ++i)
    text += "L" + std::to_string(i) + (i % 7 == 3 ? ",-36," : ",36,") + "-84,30,36." +
            std::to_string(i % 90 + 10) + ",-84," + (i % 11 == 5 ? "tall" : "20") + ",450\n";
  return text;
}

TEST(LinkBatch, WritesTheSameBytesWithAnyNumberOfThreads) {
  const std::string text = listOf(1000);
  const RunResult one = runList(text);
  EXPECT_EQ(one.totals.links, 1000U);
  EXPECT_EQ(linesOf(one.content).size(), 1001U);
  for (const std::size_t jobs : {2U, 5U, 16U}) {
    RunOptions options;
    options.jobs = jobs;
    const RunResult several = runList(text, options);
    EXPECT_TRUE(several.content == one.content) << jobs;
    EXPECT_EQ(several.errors, one.errors) << jobs;
    EXPECT_EQ(several.totals, one.totals) << jobs;
  }
}

TEST(LinkBatch, TellsBadRowsWithTheirLinesAndGoesOn) {
  const RunResult result = runList(kPlainHeader +
                                   "\"two\nlines\",36,-84,30,36.5,-84,20,450\n"
                                   "x,95,-84,30,36.5,-84,20,450\n"
                                   "\n"
                                   "y,-36,-84,30,36.5,-84,20,450\n"
                                   "z,36,-84,30,36.5,-84,20,450\n");
  EXPECT_EQ(result.errors, (Texts{"4: lat1: latitude 95 is not from -90 to 90", "6: there is no terrain"}));
  EXPECT_EQ(result.totals.links, 4U);
  EXPECT_EQ(result.totals.errors, 2U);
  EXPECT_EQ(rowsOf(result.content).size(), 5U);
}

// ---- Hostile texts: whatever comes, each row has a figure or an error, or the list is refused with a
// reason.

TEST(HostileLists, AreRefusedWithAReason) {
  std::string wide;
  for (int i = 0; i < 100000; ++i) wide += "c,";
  EXPECT_EQ(runList(wide + "\n").refused, "LIST: line 1: the row has more than 4096 fields");
  EXPECT_EQ(runList("").refused, "LIST: there is nothing in it");
  EXPECT_EQ(runList(std::string(10000, '\0')).refused, "cannot read LIST: this is no text file");
  EXPECT_EQ(runList(std::string("\xFF\xFE\0\0n\0\0\0", 8)).refused,
            "cannot read LIST: its encoding is UTF-32; save it as UTF-8");
  EXPECT_EQ(runList("\"name,lat1\n").refused, "LIST: line 1: a quote begins here and does not end");
  EXPECT_EQ(runList(std::string(2 << 20, 'x')).refused, "LIST: line 1: the row is longer than 1048576 bytes");
  EXPECT_NE(runList("{\"links\": []}\n").refused, "");
  EXPECT_EQ(runList("lat1,lon1,lat2,lon2,lat1\n").refused.substr(0, 20), "LIST: line 1: column");
}

TEST(HostileLists, OfAHeaderAloneAreEmpty) {
  for (const char* end : {"", "\n", "\r", "\r\n\r\n"}) {
    const RunResult result = runList(std::string("lat1,lon1,lat2,lon2") + end);
    EXPECT_EQ(result.refused, "");
    EXPECT_EQ(result.totals.links, 0U);
    EXPECT_EQ(linesOf(result.content).size(), 1U);
  }
}

TEST(HostileLists, OfCarriageReturnsAloneKeepTheirLines) {
  const RunResult result = runList("lat1,lon1,lat2,lon2\r36,-84,36.5,-84\r95,0,0,0\r");
  EXPECT_EQ(result.totals.links, 2U);
  EXPECT_EQ(result.errors, Texts{"3: lat1: latitude 95 is not from -90 to 90"});
}

TEST(HostileLists, HaveRowsWithErrorsOfTheirOwn) {
  const RunResult result = runList(
      "name,lat1,lon1,lat2,lon2\n"
      "huge,1e400,0,0,0\n"            // 2
      "ragged,36\n"                   // 3
      "much,36,-84,36.5,-84,extra\n"  // 4
      "a\xFF"
      "b,36,-84,36.5,-84\n"                             // 5
      "\xEF\xBB\xBFmark,36,\xEF\xBB\xBF-84,36.5,-84\n"  // 6
      "=HYPERLINK(\"\"x\"\"),36,-84,36.5,-84\n"         // 7
      "open,\"36,-84,36.5,-84\n"                        // 8
      "last,36,-84,36.5,-84\n" +                        // 9
      std::string(70000, ' ') +
      "\n");
  EXPECT_EQ(result.errors, (Texts{"2: lat1: \"1e400\" is no latitude", "3: lon1: there is no value",
                                  "4: the row has 6 fields, the first line names 5 columns",
                                  "6: lon1: \"\xEF\xBB\xBF-84\" is no longitude",
                                  "8: a quote begins here and does not end"}));
  EXPECT_EQ(result.totals.links, 8U);
  EXPECT_TRUE(test::says(result.notes, "1 byte is no UTF-8; read as Windows-1252"));
  const auto rows = rowsOf(result.content);
  EXPECT_EQ(rows.at(4).field(0), "aÿb");
  EXPECT_EQ(rows.at(6).field(0), "=HYPERLINK(\"\"x\"\")");
}

TEST(HostileLists, WithZeroBytesHaveThemInOneRowOnly) {
  std::string text = "name,lat1,lon1,lat2,lon2\nx,36,-84,36.5,-84\n";
  for (int i = 0; i < 300; ++i) text += "y,36,-84,36.5,-84\n";
  text += std::string("a\0b,36,-84,36.5,-84\n", 20);
  const RunResult result = runList(text);
  EXPECT_EQ(result.errors, Texts{"303: there is a zero byte in the row"});
  EXPECT_EQ(result.content.find('\0'), std::string::npos);
}

TEST(HostileLists, WithHugeFieldsAreCarriedOver) {
  const std::string huge(60000, 'x');
  const RunResult result = runList("lat1,lon1,lat2,lon2,note\n36,-84,36.5,-84,\"" + huge + "\"\n");
  EXPECT_EQ(result.totals.errors, 0U);
  EXPECT_NE(result.content.find(huge), std::string::npos);
}

// ---- A producer that waits.

class Pipe {
 public:
  Pipe() { EXPECT_EQ(::pipe2(ends_.data(), O_CLOEXEC), 0); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    close(0);
    close(1);
  }
  int end(std::size_t which) const { return ends_.at(which); }
  void close(std::size_t which) {
    if (ends_.at(which) >= 0) ::close(std::exchange(ends_.at(which), -1));
  }
  void write(const std::string& text) const {
    EXPECT_EQ(::write(ends_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  // What comes until there are so many lines, or nothing for very long.
  std::string readLines(std::size_t lines) const {
    constexpr int kVeryLong = 60000;  // ms
    std::string text;
    while (static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) < lines) {
      struct pollfd wanted {
        ends_[0], POLLIN, 0
      };
      std::array<char, 4096> piece{};
      if (::poll(&wanted, 1, kVeryLong) <= 0) return text + "(nothing comes)";
      const ssize_t count = ::read(ends_[0], piece.data(), piece.size());
      if (count <= 0) return text;
      text.append(piece.data(), static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  std::array<int, 2> ends_{-1, -1};
};

TEST(LinkBatch, GivesOutEachLinkWhileItsProducerWaits) {
  Pipe in, out;
  std::thread run([&] {
    InputBytes input("/dev/fd/" + std::to_string(in.end(0)));
    LinkList list(input, {}, nullptr);
    WriterOptions writing;
    writing.layout = list.layout();
    const auto writer = makeLinkWriter(LinkFormat::kCsv, writing);
    BatchJob job;
    job.source = flatPaths();
    job.jobs = 2;
    LinkTotals totals;
    const auto sink = makeStreamSink(out.end(1), "the pipe", false);
    EXPECT_TRUE(runLinkBatch(list, *writer, job, *sink, totals, {}));
  });
  const auto nameOf = [](const std::string& text) { return text.substr(0, text.find(',')); };
  in.write(kPlainHeader + "A,36.1,-84,30,36.5,-84,20,450\n");
  EXPECT_EQ(nameOf(out.readLines(2)), "name");
  in.write("B,36.1,-84,30,36.5,-84,20,450\nC,36.1,-84,");
  EXPECT_EQ(nameOf(out.readLines(1)), "B");
  in.write("30,36.5,-84,20,450\n");
  EXPECT_EQ(nameOf(out.readLines(1)), "C");
  in.close(1);
  run.join();
}

// ---- Runs that end before their list.

struct Stopped {
  std::string content, totals;
  std::size_t links = 0;
};

Stopped stoppedAfter(const std::string& path, std::size_t links, const Stopped& before) {
  InputBytes input(path);
  LinkList list(input, {}, nullptr);
  WriterOptions writing;
  writing.layout = list.layout();
  const auto writer = makeLinkWriter(LinkFormat::kJson, writing);
  BatchJob job;
  job.source = flatPaths();
  job.jobs = 3;
  LinkTotals totals;
  TextSink sink;
  sink.content = before.content;
  if (!before.totals.empty()) {
    EXPECT_TRUE(totals.read(before.totals));
    job.begun = true;
    job.done = totals.links;
  }
  BatchHooks hooks;
  hooks.advance = [&](std::size_t done) { return done < links; };
  const bool whole = runLinkBatch(list, *writer, job, sink, totals, hooks);
  EXPECT_EQ(whole, links > 1000);
  return {sink.content, sink.totals, totals.links};
}

TEST(LinkBatch, GoesOnWhereARunEndedAndWritesTheSameBytes) {
  const test::TemporaryFolder folder;
  const std::string path = folder / "list.csv";
  std::ofstream(path, std::ios::binary) << listOf(900);
  const Stopped whole = stoppedAfter(path, 10000, {});
  EXPECT_EQ(whole.links, 900U);
  Stopped part;
  for (const std::size_t links : {1U, 100U, 130U, 700U}) {
    part = stoppedAfter(path, links, part);
    EXPECT_LE(part.links, 900U) << "what was ready is kept, too";
  }
  EXPECT_GE(part.links, 700U);
  EXPECT_TRUE(stoppedAfter(path, 10000, part).content == whole.content);
}

}  // namespace
}  // namespace zel::host
