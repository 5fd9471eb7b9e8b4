#include "models/ptp/vexptp/input_text.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/temporary_folder.h"
#include "vexptp/expect_error.h"

namespace zel::ptp {
namespace {

using Lines = std::vector<std::string_view>;

TEST(InputText, LinesEndInLfOrCrLfAndTheLastNeedsNoEnd) {
  EXPECT_EQ(linesOf("a\r\nb\nc"), (Lines{"a", "b", "c"}));
  EXPECT_EQ(linesOf("a\n"), (Lines{"a"}));
  EXPECT_EQ(linesOf("a\n\nb\n\n"), (Lines{"a", "", "b", ""}));
  EXPECT_EQ(linesOf(""), Lines{});
}

TEST(InputText, ACarriageReturnWithinALineStays) { EXPECT_EQ(linesOf("a\rb\r\r\n"), (Lines{"a\rb\r"})); }

TEST(InputText, AQuotedTextIsShortAndOnOneLine) {
  EXPECT_EQ(inQuotes("12,5"), "\"12,5\"");
  EXPECT_EQ(inQuotes(std::string_view("a\n\0\x80z", 5)), "\"a???z\"");
  EXPECT_EQ(inQuotes(std::string(41, 'x')), '"' + std::string(40, 'x') + "...\"");
}

TEST(InputText, AFileIsReadUpToItsBound) {
  const test::TemporaryFolder folder;
  const std::string file = folder / "file";
  test::writeBytes(file, "12345");
  EXPECT_EQ(boundedFile(file, 5), "12345");
  EXPECT_EQ(errorOf<InputError>([&] { boundedFile(file, 4); }),
            "cannot read " + file + ": it has more than 4 bytes");
}

TEST(InputText, WhatIsNoPlainFileIsRefusedWithoutWaitingForIt) {
  const test::TemporaryFolder folder;
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(errorOf<InputError>([&] { boundedFile(pipe, 5); }),
            "cannot read " + pipe + ": it is not a plain file");
  EXPECT_EQ(errorOf<InputError>([] { boundedFile("/dev/zero", 5); }),
            "cannot read /dev/zero: it is not a plain file");
  EXPECT_EQ(errorOf<InputError>([&] { boundedFile(folder.path(), 5); }),
            "cannot read " + folder.path().string() + ": it is a folder");
  const std::string missing = folder / "missing";
  EXPECT_EQ(errorOf<InputError>([&] { boundedFile(missing, 5); }),
            "cannot read " + missing + ": No such file or directory");
}

}  // namespace
}  // namespace zel::ptp
