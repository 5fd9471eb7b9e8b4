#include "export/export_texts.h"

#include <gtest/gtest.h>

#include <cmath>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

DisplayUnits metric() { return unitsFor(Init_GUC(), 0); }
DisplayUnits imperial() { return unitsFor(Init_GUC(), 1); }

TEST(ExportTexts, SummaryTitlesBeginWithAnEmptyColumnAndEndWithTheDatum) {
  EXPECT_EQ(
      summaryTitles(metric()),
      ", 'Start Latitude', 'Start Longitude', 'End Latitude', 'End Longitude', 'Range (km)', 'Bearing', "
      "'Max Ht (m)', 'Min Ht (m)', 'Average Ht (m)', 'Earth Curve', '% Fresnel', 'Freq', 'Datum'");
  EXPECT_EQ(
      summaryTitles(imperial()),
      ", 'Start Latitude', 'Start Longitude', 'End Latitude', 'End Longitude', 'Range (mi)', 'Bearing', "
      "'Max Ht (ft)', 'Min Ht (ft)', 'Average Ht (ft)', 'Earth Curve', '% Fresnel', 'Freq', 'Datum'");
}

TEST(ExportTexts, MarkerTitlesHaveTwoBlanksBeforeTheGroundAndOneAtTheEnd) {
  EXPECT_EQ(markerTitles(metric()),
            ", 'Latitude', 'Longitude', 'Distance from Start (km)',  'Ground AMSL (m)', 'Fresnel AMSL (m)', "
            "'LOS AMSL (m)' ");
  EXPECT_EQ(
      markerTitles(imperial()),
      ", 'Latitude', 'Longitude', 'Distance from Start (mi)',  'Ground AMSL (ft)', 'Fresnel AMSL (ft)', "
      "'LOS AMSL (ft)' ");
}

TEST(ExportTexts, PointTitlesNameTheUnits) {
  EXPECT_EQ(pointTitles(metric()),
            "'Point', 'Distance (km)', 'Latitude', 'Longitude', 'Ground AMSL (m)', 'Fresnel AMSL (m)', 'LOS "
            "AMSL (m)', 'Earth Rise (m)'");
  EXPECT_EQ(
      pointTitles(imperial()),
      "'Point', 'Distance (mi)', 'Latitude', 'Longitude', 'Ground AMSL (ft)', 'Fresnel AMSL (ft)', 'LOS "
      "AMSL (ft)', 'Earth Rise (ft)'");
}

TEST(ExportTexts, SignalTitlesContinueThoseOfTheHeightProfile) {
  EXPECT_EQ(signalSummaryTitles(imperial()),
            summaryTitles(imperial()) + ", 'Xmit Ant Ht AGL (ft)',  'Rec Ant Ht AGL (ft)',  'ERP (kW)'");
  EXPECT_EQ(
      signalPointTitles(metric()),
      pointTitles(metric()) +
          ", 'LR Path Loss (dB)', 'LR Signal Level (dBuV/m)', 'PTP Diffraction Loss (dB)', 'PTP Clutter "
          "Loss (dB)', 'PTP Signal Level (dBuV/m)', 'Free Space Loss (dB)', 'Free Space Signal Level "
          "(dBuV/m)'");
}

TEST(ExportTexts, ClimatesAreLabelledByTheirCodes) {
  EXPECT_EQ(climateField(1), " 'Equatorial', ");
  EXPECT_EQ(climateField(2), " 'Continental Subtropical', ");
  EXPECT_EQ(climateField(3), " 'Maritime Tropical', ");
  EXPECT_EQ(climateField(4), " 'Desert', ");
  EXPECT_EQ(climateField(5), " 'Continental Temperate', ");
  EXPECT_EQ(climateField(6), " 'Maritime Temperate, Over Land', ");
  EXPECT_EQ(climateField(7), " 'Maritime Temperate, Over Sea', ");
}

TEST(ExportTexts, ACodeThatIsNoClimateHasNoField) {
  for (const std::int16_t code : {std::int16_t{-1}, std::int16_t{0}, std::int16_t{8}, std::int16_t{32767}})
    EXPECT_EQ(climateField(code), "") << code;
}

TEST(ExportTexts, EveryPolarizationButZeroIsVertical) {
  EXPECT_EQ(polarizationField(0), "'horizontal', ");
  for (const std::int16_t code : {std::int16_t{1}, std::int16_t{2}, std::int16_t{-1}})
    EXPECT_EQ(polarizationField(code), "'vertical', ") << code;
}

TEST(ExportTexts, NumbersHaveFifteenDigitsOfADoubleAndSevenOfAFloat) {
  const NumberStyle point;
  ExportLine line(point);
  line.field(1.0 / 3).field(1.0F / 3).field(123456789.0).field(std::int32_t{1234567}).number(0.5);
  EXPECT_EQ(line.str(), "0.333333333333333, 0.3333333, 123456789, 1234567, 0.5");
}

TEST(ExportTexts, NumbersTakeTheUsersDecimalSeparatorAndNoGroups) {
  const NumberStyle comma{",", "."};
  ExportLine line(comma);
  line.field(1234567.25).field(-0.5F).field(2.5, "##0.0##").number(12.0);
  EXPECT_EQ(line.str(), "1234567,25, -0,5, 2,5, 12");
}

TEST(ExportTexts, ANumberThatIsNotFiniteIsAnOverflow) {
  const NumberStyle point;
  ExportLine line(point);
  EXPECT_THROW(line.number(std::nan("")), RuntimeError);
  EXPECT_THROW(line.number(INFINITY, "##0"), RuntimeError);
}

}  // namespace
}  // namespace zel
