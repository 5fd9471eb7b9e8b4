#include "models/ptp/vexptp/result_text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <vector>

namespace zel::ptp {
namespace {

std::vector<std::string> linesFor(const std::vector<PrefixLevel>& rows) {
  std::vector<std::string> lines;
  writeResult(rows, [&lines](std::string_view line) { lines.emplace_back(line); });
  return lines;
}

TEST(ResultText, HasItsTitlesAndOneLineASample) {
  EXPECT_EQ(linesFor({{0, -999, -999, -999}, {0.1, 0, 0, 126.5}, {0.2, 12.25, 3, -100}}),
            (std::vector<std::string>{"sample,distance_km,diffraction_loss_db,clutter_loss_db,level_dbuvm",
                                      "1,0,-999,-999,-999", "2,0.1,0,0,126.5", "3,0.2,12.25,3,-100"}));
}

TEST(ResultText, NumbersReadBackToTheLastBitAndHaveNoExponent) {
  const double third = 1.0 / 3;
  const std::string line = linesFor({{third, 1e-20, 1e20, std::numeric_limits<double>::denorm_min()}})[1];
  EXPECT_EQ(line.find('e'), std::string::npos);
  std::vector<double> read;
  for (std::size_t comma = line.find(','); comma != std::string::npos; comma = line.find(',', comma + 1))
    read.push_back(std::strtod(line.c_str() + comma + 1, nullptr));
  EXPECT_EQ(read, (std::vector<double>{third, 1e-20, 1e20, std::numeric_limits<double>::denorm_min()}));
}

}  // namespace
}  // namespace zel::ptp
