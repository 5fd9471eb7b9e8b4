#include "models/ptp/vexptp/scratch_input.h"

#include <gtest/gtest.h>

#include <string>

#include "models/ptp/vexptp/input_text.h"
#include "vexptp/expect_error.h"

namespace zel::ptp {
namespace {

using Heights = std::vector<float>;

std::string errorOfScratch(const std::string& text) {
  return errorOf<InputError>([&text] { parseScratchInput(text); });
}

std::string withHeights(std::size_t count) {
  std::string text = "START\r\n";
  for (std::size_t i = 0; i < count; ++i) text += "100.00\r\n";
  return text;
}

TEST(ScratchInput, HasOneHeightALineAfterItsFirst) {
  EXPECT_EQ(parseScratchInput("START\r\n187.40\r\n-3.50\r\n0.00\r\n"), (Heights{187.4F, -3.5F, 0}));
  EXPECT_EQ(parseScratchInput("START\n1\n2\n"), (Heights{1, 2}));
  EXPECT_EQ(parseScratchInput("START\n1\r\n2"), (Heights{1, 2})) << "the last line needs no end";
}

TEST(ScratchInput, BeginsWithStart) {
  EXPECT_EQ(errorOfScratch(""), "it is empty; it must begin with START");
  EXPECT_EQ(errorOfScratch("1\n2\n"), "it must begin with START, not with \"1\"");
  EXPECT_EQ(errorOfScratch("start\n1\n2\n"), "it must begin with START, not with \"start\"");
  EXPECT_EQ(errorOfScratch("START 2\n1\n2\n"), "it must begin with START, not with \"START 2\"");
}

TEST(ScratchInput, ALineThatIsNoHeightIsNamedWithItsNumber) {
  EXPECT_EQ(errorOfScratch("START\n1\n2,50\n3\n"), "line 3 is no height: \"2,50\"");
  EXPECT_EQ(errorOfScratch("START\n1\n\n3\n"), "line 3 is no height: \"\"");
  EXPECT_EQ(errorOfScratch("START\n1\n2\n\n"), "line 4 is no height: \"\"");
  EXPECT_EQ(errorOfScratch("START\nnan\n2\n"), "line 2 is no height: \"nan\"");
  EXPECT_EQ(errorOfScratch("START\n1 2\n2\n"), "line 2 is no height: \"1 2\"");
  EXPECT_EQ(errorOfScratch("START\nSTART\n2\n"), "line 2 is no height: \"START\"");
}

TEST(ScratchInput, AMissingHeightIsNeverTaken) {
  EXPECT_EQ(errorOfScratch("START\n1\n-9999.00\n"),
            "line 3 is no height: the elevation is -9999 m; it must be -9000 to 30000 m");
  EXPECT_NE(errorOfScratch("START\n-32768\n1\n"), "");
  EXPECT_NE(errorOfScratch("START\n1\n32767\n"), "");
}

TEST(ScratchInput, APathHasTwoHeightsAtLeastAnd32767AtMost) {
  EXPECT_EQ(errorOfScratch("START"), "it has no height; a path has at least two");
  EXPECT_EQ(errorOfScratch("START\n1\n"), "it has one height; a path has at least two");
  EXPECT_EQ(parseScratchInput(withHeights(32767)).size(), 32767U);
  EXPECT_EQ(errorOfScratch(withHeights(32768)), "it has 32768 heights; it may have 32767");
}

TEST(ScratchInput, ALineIsNotLongerThanAnyHeight) {
  const std::string zeros(63, '0');
  EXPECT_EQ(parseScratchInput("START\n" + zeros + "7\n8\n"), (Heights{7, 8}));
  EXPECT_EQ(errorOfScratch("START\n0" + zeros + "7\n8\n"),
            "line 2 is no height: \"" + std::string(40, '0') + "...\"");
}

TEST(ScratchInput, BinaryBytesAreShownAsText) {
  EXPECT_EQ(errorOfScratch(std::string("START\n\x00\x01\xFF\n", 10)), "line 2 is no height: \"???\"");
  EXPECT_EQ(errorOfScratch("\x7F"
                           "ELF"),
            "it must begin with START, not with \"?ELF\"");
}

}  // namespace
}  // namespace zel::ptp
