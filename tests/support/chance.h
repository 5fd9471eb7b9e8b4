// Chance by a seed, for tests that do random things for long. Length and seed come from the environment:
// ZEL_SOAK_ACTIONS and ZEL_SOAK_SEED; what a run took is printed, so that it can be run again.
#pragma once

#include <gtest/gtest.h>

#include <QPoint>
#include <QWidget>
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <random>
#include <string>

namespace zel::test {

struct SoakRun {
  int actions = 0;
  unsigned seed = 0;
};

// That what is held did not grow between half way and the end. With sanitizers, which keep what is given back
// for a while, that is the leak checker's business.
inline void expectLittleGrowth([[maybe_unused]] std::size_t halfWay, [[maybe_unused]] std::size_t end,
                               [[maybe_unused]] std::size_t mebibytes) {
#if !defined(__SANITIZE_ADDRESS__) && !defined(__has_feature)
  EXPECT_LT(end, halfWay + (mebibytes << 20U)) << "bytes in use, against the half way";
#endif
}

class Chance {
 protected:
  SoakRun beginSoak(int actionsOtherwise) {
    const SoakRun run{numberFromEnvironment("ZEL_SOAK_ACTIONS", actionsOtherwise),
                      static_cast<unsigned>(numberFromEnvironment("ZEL_SOAK_SEED", 20261121))};
    std::printf("ZEL_SOAK_SEED=%u ZEL_SOAK_ACTIONS=%d\n", run.seed, run.actions);
    testing::Test::RecordProperty("seed", static_cast<int>(run.seed));
    random_.seed(run.seed);
    return run;
  }

  int upTo(int last) { return std::uniform_int_distribution<int>(0, last)(random_); }
  bool oneIn(int many) { return upTo(many - 1) == 0; }
  template <typename List>
  auto& oneOf(List& list) {
    return *std::next(std::begin(list), upTo(static_cast<int>(std::size(list)) - 1));
  }
  QPoint somewhereIn(const QWidget& widget) {
    const int x = upTo(std::max(0, widget.width() - 1));
    return {x, upTo(std::max(0, widget.height() - 1))};
  }
  double around(double middle, double reach) { return middle + reach * (upTo(2000) - 1000) / 1000; }

 private:
  static int numberFromEnvironment(const char* name, int otherwise) {
    const char* text = std::getenv(name);
    return text == nullptr || *text == '\0' ? otherwise : std::atoi(text);
  }

  std::mt19937 random_;
};

}  // namespace zel::test
