#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

#include "foundation/rounding.h"
#include "zel/automation.h"

namespace zel {
namespace {

using Kind = AutomationValue::Kind;

const char* kindName(Kind kind) {
  switch (kind) {
    case Kind::kEmpty:
      return "nothing";
    case Kind::kBoolean:
      return "a boolean";
    case Kind::kInt16:
      return "a 16-bit integer";
    case Kind::kInt32:
      return "a 32-bit integer";
    case Kind::kFloat32:
      return "a 32-bit float";
    case Kind::kFloat64:
      return "a 64-bit float";
    case Kind::kText:
      return "a text";
    case Kind::kObject:
      return "an object";
  }
  return "a value";
}

[[noreturn]] void throwMismatch(Kind from, Kind to) {
  throw AutomationError(AutomationErrorCode::kTypeMismatch,
                        std::string(kindName(from)) + " cannot stand for " + kindName(to));
}

[[noreturn]] void throwOverflow(const AutomationValue& value, Kind to) {
  throw AutomationError(AutomationErrorCode::kOverflow,
                        value.display() + " does not fit into " + kindName(to));
}

// Every numeric kind is exact in a 64-bit float.
template <typename Variant>
double number(const Variant& held, Kind from, Kind to) {
  return std::visit(
      [&](const auto& value) -> double {
        using Held = std::decay_t<decltype(value)>;
        if constexpr (std::is_arithmetic_v<Held> && !std::is_same_v<Held, bool>) {
          return static_cast<double>(value);
        } else {
          throwMismatch(from, to);
        }
      },
      held);
}

template <typename Float>
std::string floatText(Float value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-Infinity" : "Infinity";
  char digits[64];
  const auto end = std::to_chars(digits, digits + sizeof digits, value);
  return std::string(digits, end.ptr);
}

}  // namespace

AutomationError::AutomationError(AutomationErrorCode code, const std::string& what)
    : std::runtime_error(what), code_(code) {}
AutomationError::~AutomationError() = default;

AutomationValue::AutomationValue() = default;
AutomationValue::AutomationValue(bool value) : value_(value) {}
AutomationValue::AutomationValue(std::int16_t value) : value_(value) {}
AutomationValue::AutomationValue(std::int32_t value) : value_(value) {}
AutomationValue::AutomationValue(float value) : value_(value) {}
AutomationValue::AutomationValue(double value) : value_(value) {}
AutomationValue::AutomationValue(std::string value) : value_(std::move(value)) {}
AutomationValue::AutomationValue(std::string_view value) : value_(std::string(value)) {}
AutomationValue::AutomationValue(const char* value) : value_(std::string(value == nullptr ? "" : value)) {}
AutomationValue::AutomationValue(DispatchPtr value) : value_(std::move(value)) {}
AutomationValue::AutomationValue(std::nullptr_t) : value_(DispatchPtr()) {}

void AutomationValue::refuseInteger(const std::string& digits) {
  throw AutomationError(AutomationErrorCode::kOverflow,
                        digits + " does not fit into " + kindName(Kind::kInt32));
}

// The kinds are declared in the order of the variant's alternatives.
AutomationValue::Kind AutomationValue::kind() const noexcept { return static_cast<Kind>(value_.index()); }

bool AutomationValue::toBoolean() const {
  if (const bool* held = std::get_if<bool>(&value_)) return *held;
  const double value = number(value_, kind(), Kind::kBoolean);
  if (std::isnan(value)) throwOverflow(*this, Kind::kBoolean);
  return value != 0;
}

std::int16_t AutomationValue::toInt16() const {
  const double value = number(value_, kind(), Kind::kInt16);
  try {
    return zel::toInt16(value);
  } catch (const RuntimeError&) {
    throwOverflow(*this, Kind::kInt16);
  }
}

std::int32_t AutomationValue::toInt32() const {
  const double value = number(value_, kind(), Kind::kInt32);
  try {
    return zel::toInt32(value);
  } catch (const RuntimeError&) {
    throwOverflow(*this, Kind::kInt32);
  }
}

float AutomationValue::toFloat32() const {
  const double value = number(value_, kind(), Kind::kFloat32);
  // What is not finite already is carried over as it is; only a finite value can fail to fit.
  if (!std::isfinite(value)) return static_cast<float>(value);
  if (std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max()))
    throwOverflow(*this, Kind::kFloat32);
  return static_cast<float>(value);
}

double AutomationValue::toFloat64() const { return number(value_, kind(), Kind::kFloat64); }

const std::string& AutomationValue::toText() const {
  if (const auto* held = std::get_if<std::string>(&value_)) return *held;
  throwMismatch(kind(), Kind::kText);
}

DispatchPtr AutomationValue::toObject() const {
  if (isEmpty()) return nullptr;
  if (const auto* held = std::get_if<DispatchPtr>(&value_)) return *held;
  throwMismatch(kind(), Kind::kObject);
}

AutomationValue AutomationValue::as(Kind wanted) const {
  switch (wanted) {
    case Kind::kEmpty:
      if (!isEmpty()) throwMismatch(kind(), wanted);
      return {};
    case Kind::kBoolean:
      return toBoolean();
    case Kind::kInt16:
      return toInt16();
    case Kind::kInt32:
      return toInt32();
    case Kind::kFloat32:
      return toFloat32();
    case Kind::kFloat64:
      return toFloat64();
    case Kind::kText:
      return toText();
    case Kind::kObject:
      return toObject();
  }
  throwMismatch(kind(), wanted);
}

std::string AutomationValue::display() const {
  switch (kind()) {
    case Kind::kEmpty:
      return {};
    case Kind::kBoolean:
      return std::get<bool>(value_) ? "True" : "False";
    case Kind::kInt16:
      return std::to_string(std::get<std::int16_t>(value_));
    case Kind::kInt32:
      return std::to_string(std::get<std::int32_t>(value_));
    case Kind::kFloat32:
      return floatText(std::get<float>(value_));
    case Kind::kFloat64:
      return floatText(std::get<double>(value_));
    case Kind::kText:
      return std::get<std::string>(value_);
    case Kind::kObject:
      return "(object)";
  }
  return {};
}

bool operator==(const AutomationValue& a, const AutomationValue& b) { return a.value_ == b.value_; }

}  // namespace zel
