// A long piece of work: how far it has come, on standard error where that is a terminal, and Ctrl+C.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace zel::host {

// While it lives the first Ctrl+C, or another program's request to end, is noted and asks the work to stop; a
// second one ends the program at once. One at a time.
class LongWork {
 public:
  explicit LongWork(std::string title);
  ~LongWork();
  LongWork(const LongWork&) = delete;
  LongWork& operator=(const LongWork&) = delete;

  // So many of all are done. False when the work is to stop.
  bool advance(std::int32_t done, std::int32_t all);
  // The same with a line of the work's own, made when one is due, of the seconds since it began.
  bool advance(const std::function<std::string(double seconds)>& line);
  // The line is gone, until it is due again: something else is to be written.
  void clearLine();
  // Whether it was asked to stop.
  static bool interrupted() { return askedBy() != 0; }
  // The signal that asked, SIGINT, SIGTERM or SIGHUP; 0 for none.
  static int askedBy();

 private:
  using Clock = std::chrono::steady_clock;

  std::string title_;
  bool onTerminal_;
  bool shown_ = false;
  Clock::time_point begin_ = Clock::now();
  Clock::time_point lastShown_;
};

// "signal profile: 1200 of 5000 samples, 24 %, 20000 samples/s"; the rate is left out while it is not known.
std::string progressText(const std::string& title, std::int32_t done, std::int32_t all, double seconds);

}  // namespace zel::host
