// The one list of the settings: where each stands, what it means, what it is when nobody has set it.
//
// A setting is a text under the host's title, a section and a key. Readers turn it into a number with the
// leading-number parse, so a text that does not begin with a number reads as 0. The ranges are those of
// editing: a reader takes what is stored, except for the repairs that it documents, and never writes.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zel {

enum class SettingType {
  kInt16,   // rounded half to even; RuntimeError 6 when it does not fit
  kInt32,   // the same
  kReal32,  // RuntimeError 6 when it does not fit
  kReal64,
  kBoolean,  // written "True" or "False"
  kColour,   // 0x00BBGGRR as a decimal number
  kText,
  kPaths,  // files and folders with ";" between
};

// Who asks for a setting. Some readers come with a default of their own.
enum class SettingsUser {
  kCalculation,
  kWindow,
  kDialog,
  kWindowless,
  kDrawing,
  kTerrain,
  kExport,
  kPrinting
};

struct SettingRange {
  double low = 0;
  double high = 0;  // both included
};

struct ReaderDefault {
  SettingsUser reader = SettingsUser::kCalculation;
  std::string_view text;
};

struct Setting {
  std::string_view section;
  std::string_view key;
  SettingType type = SettingType::kText;
  std::string_view defaultText;  // for every reader without a default of its own
  std::string_view unit;         // empty: dimensionless, or no number
  std::string_view meaning;
  std::optional<SettingRange> range = {};  // when edited, in the unit
  std::string_view choices = {};           // the only values allowed when edited, with "," between
  std::optional<ReaderDefault> otherDefault = {};

  constexpr std::string_view defaultFor(SettingsUser reader) const {
    return otherDefault && otherDefault->reader == reader ? otherDefault->text : defaultText;
  }
};

namespace settings {

inline constexpr std::string_view kSourceCodes = "1,2,3,7,9";

// The dialog and the calculation differ on purpose: a store that no dialog has written to samples 100 points
// a kilometre, which the dialog itself would refuse.
inline constexpr Setting kPrfPer{"Profile",
                                 "Prf_Per",
                                 SettingType::kInt16,
                                 "100",
                                 "1/km",
                                 "data points per kilometre of path",
                                 SettingRange{10, 99},
                                 {},
                                 ReaderDefault{SettingsUser::kDialog, "50"}};
inline constexpr Setting kPrfMax{"Profile",
                                 "Prf_Max",
                                 SettingType::kInt16,
                                 "1000",
                                 "",
                                 "maximum number of data points on the path",
                                 SettingRange{1000, 5000}};
inline constexpr Setting kPrfTRes{"Profile", "Prf_TRes",  SettingType::kInt16, "3", "", "terrain source code",
                                  {},        kSourceCodes};
inline constexpr Setting kPrfHtL{"Profile",
                                 "Prf_HtL",
                                 SettingType::kInt16,
                                 "30",
                                 "m",
                                 "antenna height above ground at the start, when the host gives none",
                                 SettingRange{1, 750}};
inline constexpr Setting kPrfHtR{"Profile",
                                 "Prf_HtR",
                                 SettingType::kInt16,
                                 "30",
                                 "m",
                                 "antenna height above ground at the end, when the host gives none",
                                 SettingRange{1, 750}};
inline constexpr Setting kPrfEle{
    "Profile",          "Prf_Ele", SettingType::kInt16, "3", "", "number of elevation reference lines",
    SettingRange{0, 20}};
inline constexpr Setting kPrfRng{
    "Profile",          "Prf_Rng", SettingType::kInt16, "3", "", "number of range reference lines",
    SettingRange{0, 20}};
// Both defaults choose the preset 1.333; the window keeps the stored 1.33 until the preset is clicked.
inline constexpr Setting kPrfCrv{"Profile",
                                 "Prf_Crv",
                                 SettingType::kReal32,
                                 "1.33",
                                 "",
                                 "effective-earth-radius factor k (E-Curve)",
                                 SettingRange{0.01, 50},
                                 {},
                                 ReaderDefault{SettingsUser::kDialog, "1.333"}};
inline constexpr Setting kPrfFreq{"Profile",
                                  "Prf_Freq",
                                  SettingType::kReal32,
                                  "950",
                                  "MHz",
                                  "frequency",
                                  SettingRange{20, 20000},
                                  {},
                                  ReaderDefault{SettingsUser::kWindowless, "100"}};
inline constexpr Setting kPrfFrez{"Profile",
                                  "Prf_Frez",
                                  SettingType::kInt16,
                                  "100",
                                  "%",
                                  "part of the first Fresnel zone that is drawn and tested",
                                  SettingRange{0, 100}};
inline constexpr Setting kPrintDescription{
    "Profile", "PrintDescription", SettingType::kText, "", "", "description that was last printed"};

inline constexpr Setting kDispUnits{
    "Settings", "DispUnits", SettingType::kInt32, "0", "", "display units: 0 meters/kilometers, 1 feet/miles",
    {},         "0,1"};
inline constexpr Setting kCalcMethod{
    "Settings", "CalcMethod", SettingType::kInt32,
    "0",        "",           "elevation interpolation: 0 FCC 4-Point, 1 Bivariate  Interpolation",
    {},         "0,1"};
inline constexpr Setting kGnuPlotExe{"Settings", "gnuPlotEXE", SettingType::kText,
                                     "",         "",           "the gnuplot program"};
inline constexpr Setting kCoordFormat{"Settings",
                                      "CoordFormat",
                                      SettingType::kText,
                                      "DMS",
                                      "",
                                      "positions as degrees, minutes, seconds (DMS) or decimal degrees (DD)",
                                      {},
                                      "DMS,DD"};

inline constexpr Setting kFlatEarth{
    "AMMap", "FlatEarth", SettingType::kBoolean,
    "True",  "",          "map projection: True Flat Earth (73.206), False Spherical Earth"};

inline constexpr Setting kConTRes{
    "Contour", "Con_TRes",  SettingType::kInt16,
    "3",       "",          "terrain source code of a window opened for a contour",
    {},        kSourceCodes};

inline constexpr SettingRange kColourRange{0, 0xFFFFFF};
inline constexpr Setting kColourFresnel{"Colors",    "cFresnel",   SettingType::kColour,
                                        "255",       "0x00BBGGRR", "Fresnel line and antenna masts",
                                        kColourRange};
inline constexpr Setting kColourLos{"Colors",     "cLOS",          SettingType::kColour, "16711680",
                                    "0x00BBGGRR", "line of sight", kColourRange};
inline constexpr Setting kColourMarker{"Colors",    "cLRMarker",  SettingType::kColour,
                                       "16776960",  "0x00BBGGRR", "left and right markers",
                                       kColourRange};
inline constexpr Setting kColourElevation{"Colors",    "cElevation", SettingType::kColour,
                                          "65280",     "0x00BBGGRR", "elevation reference lines and labels",
                                          kColourRange};
inline constexpr Setting kColourRangeLines{"Colors",    "cRange",     SettingType::kColour,
                                           "16711935",  "0x00BBGGRR", "range reference lines and labels",
                                           kColourRange};
inline constexpr Setting kColourStrobe{"Colors",    "cStrobe",    SettingType::kColour,
                                       "16776960",  "0x00BBGGRR", "strobe that follows the pointer",
                                       kColourRange};

inline constexpr Setting kItmPolarization{"ITM",
                                          "iHor",
                                          SettingType::kInt16,
                                          "0",
                                          "",
                                          "antenna polarization: 0 horizontal, anything else vertical",
                                          SettingRange{-32768, 32767}};
inline constexpr Setting kItmClimate{"ITM", "iRadioClimate",      SettingType::kInt16, "5",
                                     "",    "radio climate code", SettingRange{1, 7}};
inline constexpr Setting kItmPermittivity{"ITM",
                                          "dDielectric",
                                          SettingType::kReal64,
                                          "15",
                                          "",
                                          "relative permittivity of the ground",
                                          SettingRange{1, 1e5}};
inline constexpr Setting kItmConductivity{
    "ITM", "dCond", SettingType::kReal64, "0.005", "S/m", "conductivity of the ground", SettingRange{0, 1e9}};
inline constexpr Setting kItmRefractivity{"ITM",
                                          "dSurfRef",
                                          SettingType::kReal64,
                                          "301",
                                          "N-units",
                                          "surface refractivity; the model is meant for 250 to 400",
                                          SettingRange{0, 540}};
inline constexpr Setting kItmConfidence{"ITM",
                                        "dConfidence",
                                        SettingType::kReal64,
                                        "0.5",
                                        "",
                                        "confidence, as a fraction from 0.01 to 1 or in percent",
                                        SettingRange{0.01, 100}};
inline constexpr Setting kItmReliability{"ITM",
                                         "dReliability",
                                         SettingType::kReal64,
                                         "0.5",
                                         "",
                                         "reliability, as a fraction from 0.01 to 1 or in percent",
                                         SettingRange{0.01, 100}};

inline constexpr Setting kTerrainSource1{
    "Terrain", "Source1", SettingType::kPaths,
    "",        "",        "rasters and folders of rasters of source 1 (30 second)"};
inline constexpr Setting kTerrainSource2{
    "Terrain", "Source2", SettingType::kPaths,
    "",        "",        "rasters and folders of rasters of source 2 (3 second)"};
inline constexpr Setting kTerrainSource3{
    "Terrain", "Source3", SettingType::kPaths,
    "",        "",        "rasters and folders of rasters of source 3 (1 second)"};
inline constexpr Setting kTerrainSource7{
    "Terrain", "Source7", SettingType::kPaths,
    "",        "",        "rasters and folders of rasters of source 7 (1/3 second)"};
inline constexpr Setting kTerrainSource9{
    "Terrain", "Source9", SettingType::kPaths, "", "", "rasters and folders of rasters of source 9 (Local)"};
inline constexpr Setting kTerrainCacheMB{"Terrain",
                                         "CacheMB",
                                         SettingType::kInt32,
                                         "256",
                                         "MiB",
                                         "memory for decoded terrain",
                                         SettingRange{8, 65536}};

inline constexpr Setting kPtpPolarization{
    "PTP",
    "Polarization",
    SettingType::kInt16,
    "0",
    "",
    "polarization of the point-to-point model: 0 horizontal, 1 vertical",
    {},
    "0,1"};
inline constexpr Setting kPtpPermittivity{"PTP",
                                          "Permittivity",
                                          SettingType::kReal64,
                                          "15",
                                          "",
                                          "relative permittivity of the ground",
                                          SettingRange{1, 100}};
inline constexpr Setting kPtpConductivity{"PTP",
                                          "Conductivity",
                                          SettingType::kReal64,
                                          "0.005",
                                          "S/m",
                                          "conductivity of the ground",
                                          SettingRange{0, 100}};
inline constexpr Setting kPtpClutterCategory{
    "PTP",
    "ClutterCategory",
    SettingType::kInt16,
    "0",
    "",
    "ground cover around the antennas: 0 none, 1 water, 2 open, 3 suburban, "
    "4 urban or forest, 5 dense urban",
    SettingRange{0, 5}};
inline constexpr Setting kPtpClutterHeight{
    "PTP",
    "ClutterHeight",
    SettingType::kReal64,
    "0",
    "m",
    "height of the ground cover above ground, 0 for the category's own",
    SettingRange{0, 100}};

// The link budget's own inputs; it reads and keeps them itself, by these keys and in these ranges.
inline constexpr Setting kBudgetTxPower{"LinkBudget",
                                        "TxPower",
                                        SettingType::kReal64,
                                        "40",
                                        "dBm",
                                        "transmitter power of the link budget",
                                        SettingRange{-60, 100}};
inline constexpr Setting kBudgetTxGain{"LinkBudget",
                                       "TxGain",
                                       SettingType::kReal64,
                                       "0",
                                       "dBi",
                                       "transmitter antenna gain of the link budget",
                                       SettingRange{-50, 100}};
inline constexpr Setting kBudgetTxLosses{
    "LinkBudget",        "TxLosses", SettingType::kReal64, "0", "dB", "transmitter losses of the link budget",
    SettingRange{0, 200}};
inline constexpr Setting kBudgetRxGain{"LinkBudget",
                                       "RxGain",
                                       SettingType::kReal64,
                                       "0",
                                       "dBi",
                                       "receiver antenna gain of the link budget",
                                       SettingRange{-50, 100}};
inline constexpr Setting kBudgetRxLosses{
    "LinkBudget",        "RxLosses", SettingType::kReal64, "0", "dB", "receiver losses of the link budget",
    SettingRange{0, 200}};
inline constexpr Setting kBudgetThreshold{"LinkBudget",
                                          "Threshold",
                                          SettingType::kReal64,
                                          "-100",
                                          "dBm",
                                          "receiver threshold of the link budget",
                                          SettingRange{-200, 100}};

}  // namespace settings

// Every setting, by section, in the order of this header.
std::span<const Setting* const> settingsTable();

// The setting of that name, upper and lower case taken as equal; null when there is none.
const Setting* findSetting(std::string_view section, std::string_view key);

// The setting with the files of a terrain source; null for a code other than 1, 2, 3, 7 and 9.
const Setting* terrainSourceSetting(int code);

// What a valid value is: "a number from 0 to 540 (N-units)", "one of 0,1".
std::string settingExpectation(const Setting& setting);

// Why the text is no valid value of the setting, as a sentence without its full stop; empty when it is one.
std::string settingProblem(const Setting& setting, std::string_view text);

}  // namespace zel
