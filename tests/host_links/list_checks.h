// What the tests of lists share: a list as a file, paths that need no terrain, and a run in memory.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <deque>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "links/input_bytes.h"
#include "links/link_batch.h"
#include "support/temporary_folder.h"

namespace zel::host {

inline const std::string kPlainHeader = "name,lat1,lon1,h1,lat2,lon2,h2,frequency\n";

// Rows of a text that comes in pieces of so many bytes.
inline std::vector<Row> rowsOf(const std::string& text, char delimiter = ',', std::size_t piece = 1 << 20) {
  std::size_t at = 0;
  RowReader reader([&](std::string& buffer) {
    if (at >= text.size()) return false;
    buffer.append(text, at, piece);
    at += piece;
    return true;
  });
  reader.setDelimiter(delimiter);
  std::vector<Row> rows;
  for (Row row; reader.next(row);) rows.push_back(row);
  return rows;
}

// "2: a|b|c", each row; "5: ! why" for one that is none.
inline std::vector<std::string> rowTexts(const std::vector<Row>& rows) {
  std::vector<std::string> texts;
  for (const Row& row : rows) {
    std::string text = std::to_string(row.line) + ":";
    if (!row.problem.empty()) text += " ! " + row.problem;
    for (std::size_t i = 0; i < row.size(); ++i) text += (i == 0 ? " " : "|") + std::string(row.field(i));
    texts.push_back(text);
  }
  return texts;
}

struct ReadLayout {
  LayoutResult result;
  std::vector<Row> rows;
};

inline ReadLayout layoutOf(const std::string& text, const LayoutOptions& options = {}) {
  bool given = false;
  RowReader reader([&](std::string& buffer) {
    if (std::exchange(given, true)) return false;
    buffer.append(text);
    return true;
  });
  std::deque<Row> ahead;
  ReadLayout read{readLayout(reader, options, ahead), {}};
  if (!read.result.layout) return read;
  read.rows.assign(ahead.begin(), ahead.end());
  for (Row row; reader.next(row);) read.rows.push_back(row);
  return read;
}

// The links of a text, whose layout must be understood.
inline std::vector<LinkInput> inputsOf(const std::string& text, const LayoutOptions& options = {}) {
  const ReadLayout read = layoutOf(text, options);
  std::vector<LinkInput> inputs;
  EXPECT_EQ(read.result.error, "");
  if (!read.result.layout) return inputs;
  for (const Row& row : read.rows) inputs.push_back(linkInput(row, *read.result.layout));
  return inputs;
}

inline std::vector<std::string> errorsOf(const std::string& text, const LayoutOptions& options = {}) {
  std::vector<std::string> errors;
  for (const LinkInput& input : inputsOf(text, options))
    errors.push_back(std::to_string(input.line) + ": " + input.error);
  return errors;
}

// Paths whose figures follow from the request alone. South of the equator there is no terrain.
inline PathSource flatPaths() {
  PathSource source;
  const auto profileOf = [](const PathProfileRequest& request, std::optional<double> k) {
    PathProfile profile;
    if (request.from.latitude < 0) {
      profile.status = 2;
      profile.error = "there is no terrain";
      return profile;
    }
    profile.distanceKm = 100 * std::abs(request.to.latitude - request.from.latitude);
    profile.bearingDeg = 90;
    profile.freeSpaceDb = 120.25;
    profile.k = k.value_or(1.333);
    profile.frequencyMhz = request.frequencyMhz.value_or(950);
    profile.startHeightM = static_cast<std::int16_t>(request.fromHeight.value_or(30));
    profile.endHeightM = static_cast<std::int16_t>(request.toHeight.value_or(30));
    profile.worst = PathObstacle{profile.distanceKm / 2, request.from, 500, 10 * profile.k, 40 * profile.k};
    profile.verdict = profile.worst->clearancePercent >= 60 ? PathVerdict::kClear : PathVerdict::kMarginal;
    profile.terrain.files = {"/terrain/flat.tif"};
    profile.terrain.method = "FCC 4-Point";
    profile.notes = {"a note of " + std::to_string(profile.distanceKm)};
    return profile;
  };
  source.profiles = [profileOf](const PathProfileRequest& request,
                                const std::vector<std::optional<double>>& factors) {
    std::vector<PathProfile> profiles;
    for (const std::optional<double>& k : factors) profiles.push_back(profileOf(request, k));
    return profiles;
  };
  source.loss = [](const PathLossRequest& request) {
    PathLoss loss;
    if (request.from.latitude < 0) {
      loss.status = 2;
      loss.error = "there is no terrain";
      return loss;
    }
    EXPECT_FALSE(request.wantReverse);
    loss.distanceKm = 100 * std::abs(request.to.latitude - request.from.latitude);
    loss.bearingDeg = 90;
    loss.freeSpaceDb = 120.25;
    loss.frequencyMhz = request.frequencyMhz.value_or(950);
    loss.startHeightM = static_cast<std::int16_t>(request.fromHeight.value_or(30));
    loss.endHeightM = static_cast<std::int16_t>(request.toHeight.value_or(30));
    loss.modeledDb = 140.125;
    loss.warnings = {"beware of 7 things"};
    return loss;
  };
  return source;
}

// What is written, in memory.
class TextSink final : public LinkSink {
 public:
  void write(std::string_view text) override { content.append(text); }
  void checkpoint(const std::string& text) override { totals = text; }
  bool checkpointIsDue() const override { return false; }
  void finish() override {}
  std::string left() const override { return {}; }

  std::string content, totals;
};

struct RunOptions {
  LinkFormat format = LinkFormat::kCsv;
  LayoutOptions layout;
  FigureOptions figures;
  std::size_t jobs = 1;
  bool notes = false;
};

struct RunResult {
  std::string content;
  LinkTotals totals;
  std::vector<std::string> errors;  // "3: lat1: ..."
  std::vector<std::string> notes;
  std::string refused;  // why it is no list
};

inline RunResult runList(const std::string& text, const RunOptions& options = {}) {
  const test::TemporaryFolder folder;
  const std::string path = folder / "list.csv";
  std::ofstream(path, std::ios::binary) << text;
  RunResult result;
  try {
    InputBytes input(path);
    LinkList list(input, options.layout, nullptr);
    WriterOptions writing;
    writing.layout = list.layout();
    writing.figures = options.figures;
    writing.notes = options.notes;
    writing.mark = list.marked();
    writing.from.version = "1.2.3";
    writing.from.input = "list.csv";
    const auto writer = makeLinkWriter(options.format, writing);
    BatchJob job;
    job.source = flatPaths();
    job.figures = options.figures;
    job.jobs = options.jobs;
    BatchHooks hooks;
    hooks.rowError = [&](std::size_t line, const std::string& error) {
      result.errors.push_back(std::to_string(line) + ": " + error);
    };
    TextSink sink;
    runLinkBatch(list, *writer, job, sink, result.totals, hooks);
    result.content = sink.content;
    result.notes = list.notes();
  } catch (const LinkFileError& error) {
    result.refused = error.what();
    if (const std::size_t name = result.refused.find(path); name != std::string::npos)
      result.refused.replace(name, path.size(), "LIST");
  }
  return result;
}

inline std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    lines.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return lines;
}

}  // namespace zel::host
