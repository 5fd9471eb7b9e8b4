// The texts that exported files share: how numbers are written, and the column titles with their units.
//
// The blanks inside and around the titles belong to the format. Files that people open in a spreadsheet take
// the user's decimal separator; the separator of fields is ", " whatever that is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "component/services/display_units.h"
#include "foundation/number_text.h"

namespace zel {

// Takes a file's text in order: whole lines without their ends, or pieces as they come.
using LineSink = std::function<void(std::string_view line)>;
using PieceSink = std::function<void(std::string_view piece)>;

inline constexpr std::string_view kFieldEnd = ", ";

// Of what programs read, whatever the user's locale.
const NumberStyle& withPoint();

// One line, put together piece by piece. Throws RuntimeError 6 for a number that is not finite.
class ExportLine {
 public:
  static constexpr std::size_t kUsualLength = 256;

  // The style outlives the line. A line may become longer than expected.
  explicit ExportLine(const NumberStyle& numbers, std::size_t expectedLength = kUsualLength)
      : numbers_(numbers) {
    text_.reserve(expectedLength);
  }
  explicit ExportLine(NumberStyle&&, std::size_t = kUsualLength) = delete;

  ExportLine& text(std::string_view piece);
  // The general conversion: at most 15 significant digits of a double, 7 of a float.
  ExportLine& number(double value);
  ExportLine& number(float value);
  ExportLine& number(std::int32_t value);
  ExportLine& number(double value, std::string_view pattern);

  // The same, followed by ", ".
  template <typename Value>
  ExportLine& field(Value value) {
    return number(value).text(kFieldEnd);
  }
  ExportLine& field(double value, std::string_view pattern) { return number(value, pattern).text(kFieldEnd); }

  const std::string& str() const { return text_; }

 private:
  const NumberStyle& numbers_;
  std::string text_;
};

// Of a path's summary, up to the datum with nothing after it.
std::string summaryTitles(const DisplayUnits& units);
// Of a marker's values.
std::string markerTitles(const DisplayUnits& units);
// Of a sample's values.
std::string pointTitles(const DisplayUnits& units);
// Those two with what a signal profile adds.
std::string signalSummaryTitles(const DisplayUnits& units);
std::string signalPointTitles(const DisplayUnits& units);

// Of the irregular terrain model's parameters.
inline constexpr std::string_view kModelTitles =
    ", 'Ant Polarization', 'Radio Climate', 'Dielectric', 'Conductivity', 'Surf Refractivity'";
// "'horizontal', " for 0, "'vertical', " for any other code.
std::string_view polarizationField(std::int16_t code);
// " 'Continental Temperate', " for 5; nothing for a code outside 1 to 7, so that what follows moves to the
// left.
std::string climateField(std::int16_t code);

}  // namespace zel
