#include "models/ptp/vexptp/arguments.h"

#include <gtest/gtest.h>

#include <vector>

#include "vexptp/expect_error.h"

namespace zel::ptp {
namespace {

using Items = std::vector<std::string>;

const Items kItems{"/data/scratch.tmp", "/data/out_PTP.txt", "100.1", "2.5", "10", "-3.5", "scratch.tmp"};

std::string errorWith(std::size_t index, const std::string& item) {
  Items items = kItems;
  items[index] = item;
  return errorOf<UsageError>([&items] { readArguments(items); });
}

TEST(Arguments, AreTakenInTheirOrder) {
  const Arguments read = readArguments(kItems);
  EXPECT_EQ(read.scratchPath, "/data/scratch.tmp");
  EXPECT_EQ(read.resultPath, "/data/out_PTP.txt");
  EXPECT_EQ(read.frequency, 100.1F) << "in single precision";
  EXPECT_EQ(read.erp, 2.5);
  EXPECT_EQ(read.receiverHeight, 10);
  EXPECT_EQ(read.clutter, -3.5);
}

TEST(Arguments, MustAllBeGivenAndNoMore) {
  EXPECT_EQ(errorOf<UsageError>([] { readArguments({}); }), "the number of items is 0; it must be 7");
  Items items = kItems;
  items.pop_back();
  EXPECT_EQ(errorOf<UsageError>([&] { readArguments(items); }), "the number of items is 6; it must be 7");
  items.insert(items.end(), 2, "x");
  EXPECT_EQ(errorOf<UsageError>([&] { readArguments(items); }), "the number of items is 8; it must be 7");
}

TEST(Arguments, ANumberThatIsNoneIsNamed) {
  EXPECT_EQ(errorWith(2, "100,1"), "the frequency is not a number: \"100,1\"");
  EXPECT_EQ(errorWith(3, ""), "the effective radiated power is not a number: \"\"");
  EXPECT_EQ(errorWith(4, "nan"), "the receiver's antenna height is not a number: \"nan\"");
  EXPECT_EQ(errorWith(5, "3 dB"), "the clutter is not a number: \"3 dB\"");
}

TEST(Arguments, ANumberOutsideItsLimitsIsToldWithThem) {
  EXPECT_EQ(errorWith(2, "9.9"), "the frequency is 9.9 MHz; it must be 10 to 1000000 MHz");
  EXPECT_EQ(errorWith(2, "1000001"), "the frequency is 1000001 MHz; it must be 10 to 1000000 MHz");
  EXPECT_EQ(errorWith(3, "0"), "the effective radiated power is 0 kW; it must be 1E-12 to 1000000000000 kW");
  EXPECT_NE(errorWith(3, "-1"), "");
  EXPECT_EQ(errorWith(4, "-1"), "the receiver's antenna height is -1 m; it must be 0 to 100000 m");
  EXPECT_EQ(errorWith(5, "1001"), "the clutter is 1001 dB; it must be -1000 to 1000 dB");
}

TEST(Arguments, TheNameMustBeTheScratchFiles) {
  EXPECT_EQ(errorWith(6, "other"),
            "the last item is \"other\", and not the scratch file's name \"scratch.tmp\"");
  EXPECT_NE(errorWith(0, "/data/folder/"), "") << "a folder has no name of its own";
}

TEST(Arguments, AnEmptyPathIsNone) {
  EXPECT_EQ(errorWith(0, ""), "a file's path is empty");
  EXPECT_EQ(errorWith(1, ""), "a file's path is empty");
}

}  // namespace
}  // namespace zel::ptp
