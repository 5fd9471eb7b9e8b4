// A list of links from end to end: rows are read, computed by several threads, and written in their order.
//
// Memory is bounded by the rows under way, some dozens a thread, whatever the length of the list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "links/input_bytes.h"
#include "links/link_figures.h"
#include "links/link_totals.h"
#include "links/link_writer.h"
#include "links/text_decoder.h"
#include "links/unfinished_output.h"

namespace zel::host {

// A list that is read row by row.
class LinkList {
 public:
  // Reads the first rows. `stop` is asked while nothing comes. Throws LinkFileError for what is no list.
  LinkList(InputBytes& input, const LayoutOptions& options, std::function<bool()> stop);

  const LinkLayout& layout() const { return layout_; }
  bool marked() const { return decoder_.marked(); }
  bool next(Row& row);
  // Whether next() would not wait for the input, as far as that can be told.
  bool atHand() const { return !ahead_.empty() || finished_ || reader_.lineAtHand() || input_.ready(); }
  // From now on this is asked while nothing comes, and ends the list when it is true.
  void whileWaiting(std::function<bool()> stop) { stop_ = std::move(stop); }
  // Bytes of the input that its rows so far are, or nearly so.
  std::uint64_t position() const;
  // What was assumed and passed over, so far.
  std::vector<std::string> notes() const;

 private:
  InputBytes& input_;
  std::function<bool()> stop_;
  TextDecoder decoder_;
  std::string bytes_;
  bool finished_ = false;
  RowReader reader_;
  std::deque<Row> ahead_;
  LinkLayout layout_;
};

struct BatchJob {
  PathSource source;
  FigureOptions figures;
  std::size_t jobs = 1;  // threads
  // From the datum of the list to that of maps; nothing where they are the same, or no map is written.
  std::function<Position(Position)> toMap;
  std::size_t done = 0;  // rows that are written already
  bool begun = false;    // what stands before them is, too
};

struct BatchHooks {
  // An error of a row, in the order of the rows.
  std::function<void(std::size_t line, const std::string& error)> rowError;
  // Called between rows and while they are waited for, with those done so far. False ends the run.
  std::function<bool(std::size_t links)> advance;
};

// Writes the rows behind those that are done, and adds them to the totals. False when it was ended: what was
// computed until then is written, and counted. Throws what the sink throws.
bool runLinkBatch(LinkList& list, const LinkWriter& writer, const BatchJob& job, LinkSink& sink,
                  LinkTotals& totals, const BatchHooks& hooks);

}  // namespace zel::host
