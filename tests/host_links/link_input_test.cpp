// One row as a link.
#include "links/link_input.h"

#include "list_checks.h"

namespace zel::host {
namespace {

using Texts = std::vector<std::string>;

std::string errorOf(const std::string& row) { return inputsOf(kPlainHeader + row + "\n").at(0).error; }

TEST(LinkInput, TakesPositionsHeightsAndFrequency) {
  const LinkInput link = inputsOf(kPlainHeader + " A-B ,36.5,-84.25,30,36.25,-84,12.5,450\n").at(0);
  EXPECT_EQ(link.error, "");
  EXPECT_EQ(link.name, "A-B");
  EXPECT_EQ(link.from, (Position{36.5, -84.25}));
  EXPECT_EQ(link.to, (Position{36.25, -84}));
  EXPECT_EQ(link.fromHeight, 30);
  EXPECT_EQ(link.toHeight, 12.5);
  EXPECT_EQ(link.frequencyMhz, 450);
  EXPECT_TRUE(link.placed);
}

TEST(LinkInput, TakesDegreesMinutesSecondsAndUnits) {
  const LinkInput link =
      inputsOf(kPlainHeader + "x,36-30-00 N,84-15-00 W,100 ft,\"36 15 00 N\",84:00:00 W,30 m,2.4 GHz\n")
          .at(0);
  EXPECT_EQ(link.error, "");
  EXPECT_NEAR(link.from.latitude, 36.5, 1e-12);
  EXPECT_NEAR(link.from.longitude, -84.25, 1e-12);
  EXPECT_NEAR(*link.fromHeight, 30.48, 1e-12);
  EXPECT_EQ(link.frequencyMhz, 2400);
}

TEST(LinkInput, LeavesOpenWhatTheRowDoesNotSay) {
  const LinkInput link = inputsOf("lat1,lon1,lat2,lon2\n36.5,-84.25,36.25,-84\n").at(0);
  EXPECT_EQ(link.error, "");
  EXPECT_FALSE(link.fromHeight || link.toHeight || link.frequencyMhz);
  EXPECT_EQ(inputsOf(kPlainHeader + "x,36.5,-84.25,,36.25,-84\n").at(0).error, "") << "a row that ends early";
}

TEST(LinkInput, TakesBothNumbersOutOfOneField) {
  const LinkInput link = inputsOf("position1;position2\n36.5,-84.25,40;POINT (-84 36.25)\n").at(0);
  EXPECT_EQ(link.error, "");
  EXPECT_EQ(link.from, (Position{36.5, -84.25}));
  EXPECT_EQ(link.fromHeight, 40);
  EXPECT_EQ(link.to, (Position{36.25, -84}));
}

TEST(LinkInput, TakesDecimalCommas) {
  const LinkInput link =
      inputsOf("lat1;lon1;h1;lat2;lon2;h2;frequency\n36,5;-84,25;12,5;36,25;-84,0;30;2,4 GHz\n").at(0);
  EXPECT_EQ(link.error, "");
  EXPECT_EQ(link.from, (Position{36.5, -84.25}));
  EXPECT_EQ(link.fromHeight, 12.5);
  EXPECT_EQ(link.frequencyMhz, 2400);
}

TEST(LinkInput, RefusesANumberWithTheOtherDecimalMark) {
  EXPECT_EQ(
      errorOf("x,36.5,-84.25,\"1,200\",36.25,-84,30,450"),
      "h1: \"1,200\" has a comma, and the decimal mark of this list is the point; write 1200 or 12.5, or say "
      "--decimal comma");
  EXPECT_EQ(
      errorsOf("lat1;lon1;lat2;lon2;h1\n36,5;-84,2;36;-84;1.200\n"),
      (Texts{
          "2: h1: \"1.200\" has a point, and the decimal mark of this list is the comma; write 12,5, or say "
          "--decimal point"}));
}

TEST(LinkInput, NamesTheColumnAndTheFault) {
  EXPECT_EQ(errorOf("x,95,-84.25,30,36.25,-84,30,450"), "lat1: latitude 95 is not from -90 to 90");
  EXPECT_EQ(errorOf("x,36.5,-84.25,30,36.25,-184,30,450"), "lon2: longitude -184 is not from -180 to 180");
  EXPECT_EQ(errorOf("x,,-84.25,30,36.25,-84,30,450"), "lat1: there is no value");
  EXPECT_EQ(errorOf("x,36.5,-84.25,30,abc,-84,30,450"), "lat2: \"abc\" is no latitude");
  EXPECT_EQ(errorOf("x,36.5,1e400,30,36.25,-84,30,450"), "lon1: \"1e400\" is no longitude");
  EXPECT_EQ(errorOf("x,nan,inf,30,36.25,-84,30,450").substr(0, 12), "lat1, lon1: ");
  EXPECT_EQ(errorOf("x,36.5,-84.25,tall,36.25,-84,30,450"), "h1: \"tall\" is no height");
  EXPECT_EQ(errorOf("x,36.5,-84.25,30,36.25,-84,-5,450"), "h2: -5 m is not from 0 to 32767 m above ground");
  EXPECT_EQ(errorOf("x,36.5,-84.25,40000,36.25,-84,5,450"),
            "h1: 40000 m is not from 0 to 32767 m above ground");
  EXPECT_EQ(errorOf("x,36.5,-84.25,30,36.25,-84,30,0"),
            "frequency: 0 MHz is not above 0 and at most 1000000 MHz");
  EXPECT_EQ(errorOf("x,36.5,-84.25,30,36.25,-84,30,high"), "frequency: \"high\" is no frequency");
}

TEST(LinkInput, PassesOverNoBreakSpacesAroundNumbers) {
  EXPECT_EQ(errorOf("x,36.5\xC2\xA0,\xC2\xA0-84.25,30\xC2\xA0m,36.25,-84,98 ft,450\xC2\xA0MHz"), "");
}

TEST(LinkInput, CallsColumnsAsTheFileDoes) {
  EXPECT_EQ(errorsOf("Breite A;Länge A;Breite B;Länge B\nabc;-84;36;-84\n"),
            Texts{"2: Breite A: \"abc\" is no latitude"});
}

TEST(LinkInput, RefusesARowWithMoreFieldsThanColumnsUnlessTheyAreEmpty) {
  EXPECT_EQ(errorOf("x,36.5,-84.25,30,36.25,-84,30,450,,"), "");
  EXPECT_EQ(errorOf("x,36,5,-84,25,30,36,25,-84,30"),
            "the row has 10 fields, the first line names 8 columns");
}

TEST(LinkInput, RefusesZeroBytes) {
  EXPECT_EQ(inputsOf(kPlainHeader + std::string("x\0y,36.5,-84.25,30,36.25,-84,30,450\n", 37)).at(0).error,
            "there is a zero byte in the row");
}

}  // namespace
}  // namespace zel::host
