// Where the rows of a run go: beside the file that they will be, until all are there.
//
//   OUT.unfinished         what is written so far
//   OUT.unfinished.state   how much of it counts, and what the run was: written anew twice a second
//
// A run that ends, however it ends, leaves both, and the next one goes on behind what counts. What was
// written after the last state is cut off and computed again. finish() renames the first to OUT and takes the
// second away. A checkpoint brings both to the disk; the second is a file of
// some kilobytes.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zel::host {

// What a run is made of, by name: "input" and its size, an option and its value. Two runs of the same give
// the same output.
using RunFacts = std::vector<std::pair<std::string, std::string>>;

// "the input was a.csv, and is b.csv; the setting ... was 100, and is 50"; empty for the same.
std::string differenceOf(const RunFacts& before, const RunFacts& now);

struct KeptState {
  RunFacts facts;
  std::uint64_t bytes = 0;  // of the output that count
  std::string totals;       // as LinkTotals::text

  std::string text() const;
  // Nothing for what is no whole state.
  static std::optional<KeptState> read(std::string_view text);
};

enum class StartMode { kFresh, kResume, kRestart };

// Where rows go. Everything throws LinkFileError.
class LinkSink {
 public:
  LinkSink() = default;
  LinkSink(const LinkSink&) = delete;
  LinkSink& operator=(const LinkSink&) = delete;
  virtual ~LinkSink();

  virtual void write(std::string_view text) = 0;
  // These rows need not be computed again. `totals` is asked for when it is time for a checkpoint, or now.
  virtual void checkpoint(const std::string& totals) = 0;
  virtual bool checkpointIsDue() const = 0;
  virtual void finish() = 0;
  // What is left when the run ends here, for a person; empty when nothing is.
  virtual std::string left() const = 0;
};

// A stream or a device: there is nothing to go on with.
std::unique_ptr<LinkSink> makeStreamSink(int descriptor, std::string title, bool owned);

class UnfinishedOutput final : public LinkSink {
 public:
  // `path` is no device. A left-over of another run is refused unless it is to be gone on with, which it must
  // fit, or to be thrown away.
  UnfinishedOutput(const std::string& path, RunFacts facts, StartMode mode, bool canResume);
  ~UnfinishedOutput() override;

  // The totals of what is kept; nothing for a run that begins.
  const std::optional<std::string>& keptTotals() const { return keptTotals_; }

  void write(std::string_view text) override;
  void checkpoint(const std::string& totals) override;
  bool checkpointIsDue() const override;
  void finish() override;
  std::string left() const override { return unfinished_; }

 private:
  using Clock = std::chrono::steady_clock;

  void checkTarget() const;
  void open();
  void begin(StartMode mode, bool canResume);
  void takeKept(bool canResume);
  void flush();
  void writeState(const std::string& totals);

  std::string path_, target_, unfinished_, state_;
  RunFacts facts_;
  int file_ = -1;
  std::uint64_t bytes_ = 0;
  std::string buffer_;
  std::optional<std::string> keptTotals_;
  Clock::time_point lastCheckpoint_ = Clock::now();
};

}  // namespace zel::host
