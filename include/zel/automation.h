// Late binding: values and objects that are reached by the names of their members.
//
// A host hands the component its application object as a Dispatch, and may drive the component itself through
// one. Member names are found without regard to (ASCII) case; a property's get and let share one dispatch id.
#ifndef ZEL_AUTOMATION_H_
#define ZEL_AUTOMATION_H_

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "zel/export.h"

namespace zel {

class Dispatch;
using DispatchPtr = std::shared_ptr<Dispatch>;

enum class AutomationErrorCode {
  kMemberNotFound,      // no member of that name or id
  kWrongAccess,         // the member exists, but not as a get, a let or a method as asked
  kWrongArgumentCount,  // more or fewer arguments than the member takes
  kTypeMismatch,        // the value's kind cannot stand for the kind that is wanted
  kOverflow,            // the value does not fit into the kind that is wanted
  kWrongThread,         // the object belongs to another thread
  kFailed,              // the member itself failed; the text says how
};

// What late binding throws. The text names the member and, for an argument, its place.
class ZEL_API AutomationError : public std::runtime_error {
 public:
  AutomationError(AutomationErrorCode code, const std::string& what);
  ~AutomationError() override;
  AutomationErrorCode code() const noexcept { return code_; }

 private:
  AutomationErrorCode code_;
};

// One argument or result. The conversions accept any numeric kind for another: integers round half to even,
// and a number that does not fit (or is not a number) throws kOverflow; neither a text nor a boolean is ever
// taken for a number, and empty stands for nothing but the null object.
class ZEL_API AutomationValue {
 public:
  enum class Kind { kEmpty, kBoolean, kInt16, kInt32, kFloat32, kFloat64, kText, kObject };

  AutomationValue();
  AutomationValue(bool value);
  AutomationValue(std::int16_t value);
  AutomationValue(std::int32_t value);
  AutomationValue(float value);
  AutomationValue(double value);
  AutomationValue(std::string value);
  AutomationValue(std::string_view value);
  AutomationValue(const char* value);
  AutomationValue(DispatchPtr value);
  AutomationValue(std::nullptr_t);  // the null object
  template <std::derived_from<Dispatch> Object>
  AutomationValue(std::shared_ptr<Object> value) : AutomationValue(DispatchPtr(std::move(value))) {}
  // An integer of any other type is a 32-bit one. Throws AutomationError kOverflow when it does not fit.
  template <std::integral Integer>
  AutomationValue(Integer value) : AutomationValue(fitted(value)) {}
  // A character is neither a number nor a text.
  AutomationValue(char) = delete;
  AutomationValue(wchar_t) = delete;
  AutomationValue(char8_t) = delete;
  AutomationValue(char16_t) = delete;
  AutomationValue(char32_t) = delete;
  AutomationValue(const void*) = delete;  // any other pointer would silently become a boolean

  Kind kind() const noexcept;
  bool isEmpty() const noexcept { return kind() == Kind::kEmpty; }

  // Each throws AutomationError kTypeMismatch or kOverflow.
  bool toBoolean() const;  // a number counts as true unless it is zero
  std::int16_t toInt16() const;
  std::int32_t toInt32() const;
  float toFloat32() const;
  double toFloat64() const;
  const std::string& toText() const;
  DispatchPtr toObject() const;  // empty gives null

  // The value as another kind, by the rules above. Throws AutomationError.
  AutomationValue as(Kind kind) const;
  // The value for a person to read: "True", "12", "0.5", the text itself, "(object)", "".
  std::string display() const;

  // Exact: same kind, same value, same object.
  friend ZEL_API bool operator==(const AutomationValue& a, const AutomationValue& b);

 private:
  template <std::integral Integer>
  static std::int32_t fitted(Integer value) {
    if (!std::in_range<std::int32_t>(value)) refuseInteger(std::to_string(value));
    return static_cast<std::int32_t>(value);
  }
  [[noreturn]] static void refuseInteger(const std::string& digits);

  std::variant<std::monostate, bool, std::int16_t, std::int32_t, float, double, std::string, DispatchPtr>
      value_;
};

enum class Access { kGet, kLet, kMethod };

// An object with members reached by name or dispatch id.
class ZEL_API Dispatch {
 public:
  Dispatch();
  virtual ~Dispatch();
  Dispatch(const Dispatch&) = delete;
  Dispatch& operator=(const Dispatch&) = delete;

  // The id of a member. Throws AutomationError kMemberNotFound.
  virtual std::int32_t dispatchId(std::string_view name) const = 0;
  // Reads, writes or calls the member. A let takes its new value as the only argument.
  virtual AutomationValue invoke(std::int32_t id, Access access,
                                 std::span<const AutomationValue> arguments) = 0;

  AutomationValue get(std::string_view name);
  void let(std::string_view name, const AutomationValue& value);
  AutomationValue call(std::string_view name, std::initializer_list<AutomationValue> arguments = {});
};

// An object that is nothing but the given properties, in the given order (ids from 1). They can be read and
// written, with values of any kind. A name given twice has the later value. Serves as a host's application
// object or a station where the host has no object of its own.
ZEL_API DispatchPtr
makePropertyBag(std::initializer_list<std::pair<std::string_view, AutomationValue>> properties);

}  // namespace zel

#endif  // ZEL_AUTOMATION_H_
