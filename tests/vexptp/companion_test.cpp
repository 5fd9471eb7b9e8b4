#include "models/ptp/vexptp/companion.h"

#include <gtest/gtest.h>

#include "models/ptp/vexptp/input_text.h"
#include "vexptp/expect_error.h"

namespace zel::ptp {
namespace {

std::string errorOfText(const std::string& text) {
  return errorOf<InputError>([&text] { parseCompanion(text); });
}

TEST(Companion, WithoutAKeyHasTheUsualValue) {
  const Companion companion = parseCompanion("");
  EXPECT_EQ(companion.spacing, 0.1);
  EXPECT_EQ(companion.transmitter, std::nullopt);
  EXPECT_EQ(companion.samples, std::nullopt);
  EXPECT_EQ(companion.model.ground.polarization, Polarization::kHorizontal);
  EXPECT_EQ(companion.model.ground.permittivity, 15);
  EXPECT_EQ(companion.model.ground.conductivity, 0.005);
  EXPECT_EQ(companion.model.clutter.category, ClutterCategory::kNone);
  EXPECT_EQ(companion.model.clutter.height, 0);
  EXPECT_EQ(companion.model.effectiveRadius, 8500);
  EXPECT_TRUE(companion.unknownKeys.empty());
}

TEST(Companion, HasOneKeyWithItsValueALine) {
  const Companion companion = parseCompanion(
      "spacing_km=0.0301\r\ntx_amsl_m=217.4\r\nsamples=501\r\npolarization=1\r\npermittivity=80\r\n"
      "conductivity=5\r\nclutter_category=4\r\nclutter_height_m=12.5\r\n");
  EXPECT_EQ(companion.spacing, 0.0301);
  EXPECT_EQ(companion.transmitter, 217.4);
  EXPECT_EQ(companion.samples, 501U);
  EXPECT_EQ(companion.model.ground.polarization, Polarization::kVertical);
  EXPECT_EQ(companion.model.ground.permittivity, 80);
  EXPECT_EQ(companion.model.ground.conductivity, 5);
  EXPECT_EQ(companion.model.clutter.category, ClutterCategory::kUrbanOrForest);
  EXPECT_EQ(companion.model.clutter.height, 12.5);
}

TEST(Companion, BlanksAroundKeyAndValueAndEmptyLinesDoNoHarm) {
  const Companion companion = parseCompanion("\n  spacing_km = 0.5 \n\n\tsamples\t=\t3\n");
  EXPECT_EQ(companion.spacing, 0.5);
  EXPECT_EQ(companion.samples, 3U);
}

TEST(Companion, AKeyThatIsNotKnownIsPassedOverAndRemembered) {
  const Companion companion = parseCompanion("colour=red\nspacing_km=2\nSpacing_km=3\n");
  EXPECT_EQ(companion.spacing, 2) << "case counts";
  EXPECT_EQ(companion.unknownKeys, (std::vector<std::string>{"colour", "Spacing_km"}));
}

TEST(Companion, ALineWithoutKeyAndValueIsNamedWithItsNumber) {
  EXPECT_EQ(errorOfText("samples=2\nspacing\n"), "line 2 is no key=value: \"spacing\"");
  EXPECT_EQ(errorOfText("=5\n"), "line 1 is no key=value: \"=5\"");
}

TEST(Companion, AKeyStandsOnce) {
  EXPECT_EQ(errorOfText("samples=2\nspacing_km=1\nsamples=2\n"), "line 3: \"samples\" stands there twice");
}

TEST(Companion, AValueThatIsNoneOrOutsideItsLimitsIsNamed) {
  EXPECT_EQ(errorOfText("spacing_km=0,1\n"), "line 1: the spacing is not a number: \"0,1\"");
  EXPECT_EQ(errorOfText("spacing_km=\n"), "line 1: the spacing is not a number: \"\"");
  EXPECT_EQ(errorOfText("spacing_km=0\n"), "line 1: the spacing is 0 km; it must be 1E-06 to 21000 km");
  EXPECT_EQ(errorOfText("tx_amsl_m=1e6\n"),
            "line 1: the transmitter's antenna height above sea level is 1000000 m; it must be -9000 to "
            "130000 m");
  EXPECT_EQ(errorOfText("samples=1\n"), "line 1: the number of samples is 1; it must be 2 to 32767");
  EXPECT_EQ(errorOfText("samples=2.5\n"), "line 1: the number of samples is not a whole number: \"2.5\"");
  EXPECT_EQ(errorOfText("polarization=2\n"), "line 1: the polarization is 2; it must be 0 to 1");
  EXPECT_EQ(errorOfText("polarization=0.5\n"), "line 1: the polarization is not a whole number: \"0.5\"");
  EXPECT_EQ(errorOfText("permittivity=0.9\n"),
            "line 1: the ground's relative permittivity is 0.9; it must be 1 to 100000");
  EXPECT_EQ(errorOfText("conductivity=-1\n"),
            "line 1: the ground's conductivity is -1 S/m; it must be 0 to 1000000000 S/m");
  EXPECT_EQ(errorOfText("clutter_category=6\n"), "line 1: the clutter category is 6; it must be 0 to 5");
  EXPECT_EQ(errorOfText("clutter_category=99\n"), "line 1: the clutter category is 99; it must be 0 to 5");
  EXPECT_EQ(errorOfText("clutter_height_m=1001\n"),
            "line 1: the clutter height is 1001 m; it must be 0 to 1000 m");
}

}  // namespace
}  // namespace zel::ptp
