#include "export/export_texts.h"

#include "models/longrice/radio_climate.h"

namespace zel {
namespace {

// " 'Ground AMSL (m)', 'Fresnel AMSL (m)', 'LOS AMSL (m)'"
std::string heightTitles(const std::string& unit) {
  return " 'Ground AMSL (" + unit + ")', 'Fresnel AMSL (" + unit + ")', 'LOS AMSL (" + unit + ")'";
}

}  // namespace

const NumberStyle& withPoint() {
  // Never destroyed: an export may run while the process ends.
  static const NumberStyle* const style = new NumberStyle;
  return *style;
}

ExportLine& ExportLine::text(std::string_view piece) {
  text_ += piece;
  return *this;
}

ExportLine& ExportLine::number(double value) {
  appendGeneralNumber(text_, value, numbers_);
  return *this;
}

ExportLine& ExportLine::number(float value) {
  appendGeneralNumber(text_, value, numbers_);
  return *this;
}

ExportLine& ExportLine::number(std::int32_t value) { return text(std::to_string(value)); }

ExportLine& ExportLine::number(double value, std::string_view pattern) {
  appendNumber(text_, value, pattern, numbers_);
  return *this;
}

std::string summaryTitles(const DisplayUnits& units) {
  const std::string& height = units.height.abbreviation;
  return ", 'Start Latitude', 'Start Longitude', 'End Latitude', 'End Longitude', 'Range (" +
         units.distance.abbreviation + ")', 'Bearing', 'Max Ht (" + height + ")', 'Min Ht (" + height +
         ")', 'Average Ht (" + height + ")', 'Earth Curve', '% Fresnel', 'Freq', 'Datum'";
}

// The two blanks before the ground's title and the one at the end are meant.
std::string markerTitles(const DisplayUnits& units) {
  return ", 'Latitude', 'Longitude', 'Distance from Start (" + units.distance.abbreviation + ")', " +
         heightTitles(units.height.abbreviation) + " ";
}

std::string pointTitles(const DisplayUnits& units) {
  const std::string& height = units.height.abbreviation;
  return "'Point', 'Distance (" + units.distance.abbreviation + ")', 'Latitude', 'Longitude'," +
         heightTitles(height) + ", 'Earth Rise (" + height + ")'";
}

// The two blanks after each antenna's title are meant.
std::string signalSummaryTitles(const DisplayUnits& units) {
  const std::string& height = units.height.abbreviation;
  return summaryTitles(units) + ", 'Xmit Ant Ht AGL (" + height + ")',  'Rec Ant Ht AGL (" + height +
         ")',  'ERP (kW)'";
}

std::string signalPointTitles(const DisplayUnits& units) {
  return pointTitles(units) +
         ", 'LR Path Loss (dB)', 'LR Signal Level (dBuV/m)', 'PTP Diffraction Loss (dB)', 'PTP Clutter Loss "
         "(dB)', 'PTP Signal Level (dBuV/m)', 'Free Space Loss (dB)', 'Free Space Signal Level (dBuV/m)'";
}

std::string_view polarizationField(std::int16_t code) {
  return code == 0 ? "'horizontal', " : "'vertical', ";
}

std::string climateField(std::int16_t code) {
  const std::string_view name = longrice::radioClimateName(code);
  return name.empty() ? std::string() : " '" + std::string(name) + "'" + std::string(kFieldEnd);
}

}  // namespace zel
