// What a text was read as, or what is wrong with it and where.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

namespace zel {

enum class TextError {
  kNone,
  kEmpty,             // nothing to read
  kUnreadable,        // a character or word that has no meaning here
  kMissingLongitude,  // one coordinate only
  kTooManyParts,      // more coordinates, or more parts of one, than there can be
  kLatitudeRange,     // beyond 90 degrees
  kLongitudeRange,    // beyond 360 degrees
  kMinutesRange,      // 60 or more
  kSecondsRange,      // 60 or more
  kFraction,          // a fraction before the last part
  kTwoSigns,          // a sign and a letter, two signs, or two letters
  kWrongLetter,       // E or W for a latitude, N or S for a longitude, or both coordinates of one kind
  kAmbiguous,         // more than one meaning
  kHeight,            // no height in metres or feet
};

template <typename T>
struct Parsed {
  T value{};  // sensible without an error only
  TextError error = TextError::kNone;
  std::string text;        // what is wrong, as a sentence without its full stop
  std::size_t column = 0;  // of the first character that is wrong, counted from 1; 0 without an error

  bool ok() const { return error == TextError::kNone; }

  static Parsed good(T value) { return {std::move(value), TextError::kNone, {}, 0}; }
  static Parsed bad(TextError error, std::string text, std::size_t column) {
    return {T{}, error, std::move(text), column};
  }
  // The same error of a value of another type.
  template <typename Other>
  static Parsed bad(const Parsed<Other>& other) {
    return bad(other.error, other.text, other.column);
  }
};

}  // namespace zel
