// Encodings, piece by piece.
#include "links/text_decoder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zel::host {
namespace {

using namespace std::string_literals;

struct Decoded {
  std::string text, note, problem;
  bool marked = false;
};

Decoded decoded(const std::string& bytes, std::size_t piece = 1 << 20) {
  TextDecoder decoder;
  Decoded result;
  for (std::size_t at = 0; at < bytes.size(); at += piece)
    decoder.take(std::string_view(bytes).substr(at, piece), result.text);
  decoder.finish(result.text);
  result.note = decoder.note();
  result.problem = decoder.problem();
  result.marked = decoder.marked();
  return result;
}

std::string utf16(const std::u16string& text, bool big) {
  std::string bytes;
  for (const char16_t unit : text) {
    const char high = static_cast<char>(unit >> 8U), low = static_cast<char>(unit & 0xFFU);
    bytes += big ? high : low;
    bytes += big ? low : high;
  }
  return bytes;
}

TEST(TextDecoder, TakesUtf8WithAndWithoutItsMark) {
  EXPECT_EQ(decoded("H\xC3\xB6he").text, "Höhe");
  EXPECT_EQ(decoded("H\xC3\xB6he").note, "");
  EXPECT_FALSE(decoded("H\xC3\xB6he").marked);
  EXPECT_EQ(decoded("\xEF\xBB\xBFH\xC3\xB6he").text, "Höhe");
  EXPECT_TRUE(decoded("\xEF\xBB\xBFH\xC3\xB6he").marked);
}

TEST(TextDecoder, ReadsBytesThatAreNoUtf8AsWindows1252AndCountsThem) {
  const Decoded result = decoded("H\xF6he \x80 \xC3\xB6 \x9D");
  EXPECT_EQ(result.text, "Höhe € ö \xEF\xBF\xBD");
  EXPECT_EQ(result.note, "3 bytes are no UTF-8; read as Windows-1252");
}

TEST(TextDecoder, KeepsAMarkInTheMiddle) {
  EXPECT_EQ(decoded("a\xEF\xBB\xBF"s + "b").text, "a\xEF\xBB\xBF"s + "b");
}

TEST(TextDecoder, TakesUtf16ByItsMarkAndByItsZeros) {
  for (const bool big : {false, true}) {
    const std::string mark = big ? "\xFE\xFF" : "\xFF\xFE";
    EXPECT_EQ(decoded(mark + utf16(u"Höhe 𝄞", big)).text, "Höhe 𝄞");
    EXPECT_EQ(decoded(mark + utf16(u"Höhe", big)).note, "encoding UTF-16");
    EXPECT_EQ(decoded(utf16(u"name,lat1", big)).text, "name,lat1");
    EXPECT_EQ(decoded(utf16(u"name,lat1", big)).note, "no encoding is named; read as UTF-16");
  }
}

TEST(TextDecoder, RefusesUtf32AndWhatIsNoText) {
  EXPECT_EQ(decoded("\xFF\xFE\0\0a\0\0\0"s).problem, "its encoding is UTF-32; save it as UTF-8");
  EXPECT_EQ(decoded(std::string(5000, '\x01')).problem, "this is no text file");
  EXPECT_EQ(decoded(std::string(5000, '\x01')).text, "");
}

TEST(TextDecoder, GivesTheSameTextWhateverPiecesItComesIn) {
  std::string bytes;
  while (bytes.size() < 9000) bytes += "H\xC3\xB6he \xE2\x82\xAC \xF0\x9D\x84\x9E \xF6 \xE2\x82";
  const Decoded whole = decoded(bytes);
  for (const std::size_t piece : {1U, 2U, 3U, 5U, 4095U, 4097U}) {
    EXPECT_EQ(decoded(bytes, piece).text, whole.text) << piece;
    EXPECT_EQ(decoded(bytes, piece).note, whole.note) << piece;
  }
  const std::string wide = "\xFF\xFE" + utf16(u"𝄞ö𝄞", false);
  for (const std::size_t piece : {1U, 2U, 3U}) EXPECT_EQ(decoded(wide, piece).text, "𝄞ö𝄞") << piece;
}

TEST(TextDecoder, EndsAnUnfinishedCharacterAtTheEnd) {
  EXPECT_EQ(decoded("a\xE2\x82").text, "aâ‚");
  EXPECT_EQ(decoded("\xFF\xFE"s + "a\0b"s).text, "a\xEF\xBF\xBD");
}

}  // namespace
}  // namespace zel::host
