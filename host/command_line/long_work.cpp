#include "command_line/long_work.h"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <csignal>
#include <iostream>
#include <utility>

namespace zel::host {
namespace {

constexpr std::chrono::milliseconds kBetweenLines{100};
constexpr double kLeastSeconds = 0.05;  // before a rate means anything
constexpr std::array kAsking = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t asked = 0;
std::array<struct sigaction, kAsking.size()> before{};

void noteSignal(int signal) { asked = signal; }

}  // namespace

std::string progressText(const std::string& title, std::int32_t done, std::int32_t all, double seconds) {
  const std::int64_t percent = all > 0 ? std::int64_t{100} * done / all : 100;
  std::string text = title + ": " + std::to_string(done) + " of " + std::to_string(all) + " samples, " +
                     std::to_string(percent) + " %";
  if (seconds >= kLeastSeconds) text += ", " + std::to_string(std::llround(done / seconds)) + " samples/s";
  return text;
}

LongWork::LongWork(std::string title) : title_(std::move(title)), onTerminal_(isatty(STDERR_FILENO) != 0) {
  asked = 0;
  struct sigaction once {};
  once.sa_handler = noteSignal;
  once.sa_flags = static_cast<int>(SA_RESETHAND);
  sigemptyset(&once.sa_mask);
  for (std::size_t i = 0; i < kAsking.size(); ++i) {
    sigaction(kAsking[i], nullptr, &before[i]);
    // Who is told to ignore it, as a job in the background is, goes on doing so.
    if (before[i].sa_handler != SIG_IGN) sigaction(kAsking[i], &once, nullptr);
  }
}

LongWork::~LongWork() {
  for (std::size_t i = 0; i < kAsking.size(); ++i) sigaction(kAsking[i], &before[i], nullptr);
  clearLine();
}

int LongWork::askedBy() { return asked; }

bool LongWork::advance(std::int32_t done, std::int32_t all) {
  return advance([&](double seconds) { return progressText(title_, done, all, seconds); });
}

bool LongWork::advance(const std::function<std::string(double)>& line) {
  const Clock::time_point now = Clock::now();
  if (onTerminal_ && now - lastShown_ >= kBetweenLines) {
    std::cerr << '\r' << line(std::chrono::duration<double>(now - begin_).count()) << "\x1b[K" << std::flush;
    lastShown_ = now;
    shown_ = true;
  }
  return !interrupted();
}

void LongWork::clearLine() {
  if (shown_) std::cerr << "\r\x1b[K" << std::flush;
  shown_ = false;
}

}  // namespace zel::host
