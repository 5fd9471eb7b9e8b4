#include "links/link_input.h"

#include <cmath>
#include <string_view>
#include <utility>

#include "import/place_text.h"
#include "import/station_collector.h"
#include "planning/plan.h"

namespace zel::host {
namespace {

constexpr double kHighestMast = 32767;   // metres; what the component can hold
constexpr double kHighestCarrier = 1e6;  // MHz

class RowParser {
 public:
  RowParser(const Row& row, const LinkLayout& layout) : row_(row), layout_(layout) {}

  LinkInput parse() {
    input_.line = row_.line;
    if (!row_.problem.empty()) {
      fail(row_.problem);
      return std::move(input_);
    }
    input_.name = std::string(withoutBlanks(field(LinkField::kName)));
    checkShape();
    std::optional<double> height1, height2;
    const bool from =
        place({LinkField::kLatitude1, LinkField::kLongitude1, LinkField::kPosition1}, input_.from, height1);
    const bool to =
        place({LinkField::kLatitude2, LinkField::kLongitude2, LinkField::kPosition2}, input_.to, height2);
    input_.placed = from && to;
    input_.mapFrom = input_.from;
    input_.mapTo = input_.to;
    input_.fromHeight = height(LinkField::kHeight1, layout_.heightUnits[0], height1);
    input_.toHeight = height(LinkField::kHeight2, layout_.heightUnits[1], height2);
    input_.frequencyMhz = frequency();
    return std::move(input_);
  }

 private:
  struct PlaceFields {
    LinkField latitude, longitude, position;
  };

  // The first thing that is wrong is told.
  void fail(const std::string& problem) {
    if (input_.error.empty()) input_.error = problem;
  }
  void fail(LinkField at, const std::string& problem) { fail(layout_.nameOf(at) + ": " + problem); }

  std::string_view field(LinkField wanted) const {
    const auto column = layout_.columnOf(wanted);
    return column ? withoutBlanks(row_.field(*column)) : std::string_view();
  }

  void checkShape() {
    if (row_.text.find('\0') != std::string::npos) fail("there is a zero byte in the row");
    for (std::size_t i = layout_.names.size(); i < row_.size(); ++i)
      if (!withoutBlanks(row_.field(i)).empty())
        return fail("the row has " + std::to_string(row_.size()) + " fields, the first line names " +
                    std::to_string(layout_.names.size()) + " columns");
  }

  // What a number with the wrong mark is refused with; empty for any other text.
  std::string markProblem(std::string_view text) const {
    const bool comma = layout_.decimal == DecimalMark::kComma;
    if (text.find(comma ? '.' : ',') == std::string_view::npos || !lengthText(text, 1)) return {};
    return shownText(text) +
           (comma ? " has a point, and the decimal mark of this list is the comma; write 12,5, or say "
                    "--decimal point"
                  : " has a comma, and the decimal mark of this list is the point; write 1200 or 12.5, "
                    "or say --decimal comma");
  }

  bool place(const PlaceFields& fields, Position& position, std::optional<double>& height) {
    const Place found = layout_.columnOf(fields.position) ? inOne(fields) : inTwo(fields);
    if (!found.error.empty()) {
      fail(found.error);
      return false;
    }
    position = {found.latitude, found.longitude};
    height = found.height;
    const std::string problem = positionProblem(position);
    if (problem.empty()) return true;
    const LinkField wrong = layout_.columnOf(fields.position) ? fields.position
                            : std::abs(found.latitude) > 90   ? fields.latitude
                                                              : fields.longitude;
    fail(wrong, problem);
    return false;
  }

  Place inOne(const PlaceFields& fields) const {
    Place found = placeOfOne(field(fields.position));
    if (!found.error.empty()) found.error = layout_.nameOf(fields.position) + ": " + found.error;
    return found;
  }

  Place inTwo(const PlaceFields& fields) const {
    const std::string_view latitude = field(fields.latitude), longitude = field(fields.longitude);
    for (const auto& [at, text] :
         {std::pair(fields.latitude, latitude), std::pair(fields.longitude, longitude)}) {
      if (text.empty()) return {0, 0, std::nullopt, layout_.nameOf(at) + ": there is no value"};
      if (const std::string problem = markProblem(text); !problem.empty())
        return {0, 0, std::nullopt, layout_.nameOf(at) + ": " + problem};
    }
    Place found = placeOfTwo(latitude, longitude);
    if (found.error.empty()) return found;
    const bool goodLatitude = decimalNumber(latitude).has_value(),
               goodLongitude = decimalNumber(longitude).has_value();
    if (goodLatitude != goodLongitude)
      found.error = layout_.nameOf(goodLatitude ? fields.longitude : fields.latitude) + ": " +
                    shownText(goodLatitude ? longitude : latitude) + " is no " +
                    (goodLatitude ? "longitude" : "latitude");
    else
      found.error =
          layout_.nameOf(fields.latitude) + ", " + layout_.nameOf(fields.longitude) + ": " + found.error;
    return found;
  }

  std::optional<double> height(LinkField at, double unit, std::optional<double> ofPosition) {
    const std::string_view text = field(at);
    std::optional<double> metres = ofPosition;
    if (!text.empty()) {
      if (const std::string problem = markProblem(text); !problem.empty()) {
        fail(at, problem);
        return std::nullopt;
      }
      metres = lengthText(text, unit);
      if (!metres) fail(at, shownText(text) + " is no height");
    }
    if (metres && !(*metres >= 0 && *metres <= kHighestMast)) {
      fail(at, shownNumber(*metres) + " m is not from 0 to " + shownNumber(kHighestMast) + " m above ground");
      return std::nullopt;
    }
    return metres;
  }

  std::optional<double> frequency() {
    const std::string_view text = field(LinkField::kFrequency);
    if (text.empty()) return std::nullopt;
    if (const std::string problem = markProblem(text); !problem.empty()) {
      fail(LinkField::kFrequency, problem);
      return std::nullopt;
    }
    const double megahertz = frequencyText(text, layout_.frequencyUnit).value_or(std::nan(""));
    if (megahertz > 0 && megahertz <= kHighestCarrier) return megahertz;
    fail(LinkField::kFrequency, std::isnan(megahertz)
                                    ? shownText(text) + " is no frequency"
                                    : shownNumber(megahertz) + " MHz is not above 0 and at most 1000000 MHz");
    return std::nullopt;
  }

  const Row& row_;
  const LinkLayout& layout_;
  LinkInput input_;
};

}  // namespace

LinkInput linkInput(const Row& row, const LinkLayout& layout) { return RowParser(row, layout).parse(); }

}  // namespace zel::host
