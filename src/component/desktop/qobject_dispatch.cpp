#include <QMetaProperty>
#include <QMetaType>
#include <QObject>
#include <QPointer>
#include <QVariant>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

#include "foundation/rounding.h"
#include "foundation/text.h"
#include "zel/qobject.h"

namespace zel {
namespace {

using Kind = AutomationValue::Kind;

[[noreturn]] void throwError(AutomationErrorCode code, const std::string& text) {
  throw AutomationError(code, text);
}

AutomationValue wholeNumber(const QVariant& value) {
  const double number = value.toDouble();
  if (number >= std::numeric_limits<std::int32_t>::min() &&
      number <= std::numeric_limits<std::int32_t>::max())
    return static_cast<std::int32_t>(number);
  return number;
}

AutomationValue valueOf(const QVariant& value, const std::string& name) {
  if (!value.isValid() || value.isNull()) return {};
  switch (value.metaType().id()) {
    case QMetaType::Bool:
      return value.toBool();
    case QMetaType::Short:
      return static_cast<std::int16_t>(value.toInt());
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::UShort:
    case QMetaType::Int:
      return static_cast<std::int32_t>(value.toInt());
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
      return wholeNumber(value);
    case QMetaType::Float:
      return value.toFloat();
    case QMetaType::Double:
      return value.toDouble();
    case QMetaType::QString:
      return value.toString().toStdString();
    case QMetaType::QByteArray:
      return value.toByteArray().toStdString();
    default:
      break;
  }
  if (value.canConvert<QObject*>()) return dispatchFromQObject(value.value<QObject*>());
  throwError(AutomationErrorCode::kTypeMismatch,
             name + " has the type " + value.metaType().name() + ", which late binding does not carry");
}

template <typename Integer>
QVariant integerVariant(const AutomationValue& value, const char* type) {
  constexpr double kExact = 9007199254740992.0;  // 2^53: up to here a 64-bit float holds every integer
  const double rounded = roundHalfEven(value.toFloat64());
  if (!(rounded >= -kExact && rounded <= kExact) ||
      !std::in_range<Integer>(static_cast<std::int64_t>(rounded)))
    throwError(AutomationErrorCode::kOverflow, value.display() + " does not fit into " + type);
  return QVariant::fromValue(static_cast<Integer>(rounded));
}

// The value in the property's own type; QVariant's own conversions would wrap what does not fit.
QVariant variantFor(const AutomationValue& value, QMetaType type, const std::string& name) {
  switch (type.id()) {
    case QMetaType::Bool:
      return value.toBoolean();
    case QMetaType::SChar:
      return integerVariant<signed char>(value, type.name());
    case QMetaType::UChar:
      return integerVariant<unsigned char>(value, type.name());
    case QMetaType::Short:
      return integerVariant<short>(value, type.name());
    case QMetaType::UShort:
      return integerVariant<unsigned short>(value, type.name());
    case QMetaType::Int:
      return integerVariant<int>(value, type.name());
    case QMetaType::UInt:
      return integerVariant<unsigned int>(value, type.name());
    case QMetaType::Long:
      return integerVariant<long>(value, type.name());
    case QMetaType::ULong:
      return integerVariant<unsigned long>(value, type.name());
    case QMetaType::LongLong:
      return integerVariant<qlonglong>(value, type.name());
    case QMetaType::ULongLong:
      return integerVariant<qulonglong>(value, type.name());
    case QMetaType::Float:
      return value.toFloat32();
    case QMetaType::Double:
      return value.toFloat64();
    case QMetaType::QString:
      return QString::fromStdString(value.toText());
    case QMetaType::QByteArray:
      return QByteArray::fromStdString(value.toText());
    default:
      break;
  }
  throwError(
      AutomationErrorCode::kTypeMismatch,
      name + " has the type " + (type.name() == nullptr ? "unknown" : type.name()) + ", which cannot be set");
}

class QObjectDispatch final : public Dispatch {
 public:
  explicit QObjectDispatch(QObject* object) : object_(object) {}

  std::int32_t dispatchId(std::string_view name) const override {
    for (const QByteArray& candidate : propertyNames())
      if (equalIgnoringCase(candidate.toStdString(), name)) return idOf(candidate.toStdString());
    throwError(AutomationErrorCode::kMemberNotFound, "there is no property " + std::string(name));
  }

  AutomationValue invoke(std::int32_t id, Access access,
                         std::span<const AutomationValue> arguments) override {
    const std::string name = nameOf(id);
    if (access == Access::kMethod)
      throwError(AutomationErrorCode::kWrongAccess, name + " is a property, not a method");
    if (arguments.size() != (access == Access::kLet ? 1U : 0U))
      throwError(AutomationErrorCode::kWrongArgumentCount,
                 name + " was given " + std::to_string(arguments.size()) + " arguments");
    const QVariant current = object().property(name.c_str());
    if (access == Access::kGet) return valueOf(current, name);
    const int declared = object().metaObject()->indexOfProperty(name.c_str());
    if (declared >= 0 && !object().metaObject()->property(declared).isWritable())
      throwError(AutomationErrorCode::kWrongAccess, name + " cannot be set");
    object().setProperty(name.c_str(), variantFor(arguments.front(), current.metaType(), name));
    return {};
  }

 private:
  QObject& object() const {
    if (object_.isNull()) throwError(AutomationErrorCode::kFailed, "the object behind it is gone");
    return *object_;
  }

  std::vector<QByteArray> propertyNames() const {
    std::vector<QByteArray> names;
    const QMetaObject* meta = object().metaObject();
    names.reserve(static_cast<std::size_t>(meta->propertyCount()));
    for (int i = 0; i < meta->propertyCount(); ++i) names.emplace_back(meta->property(i).name());
    for (const QByteArray& name : object().dynamicPropertyNames()) names.push_back(name);
    return names;
  }

  // Ids are given in the order of asking, because dynamic properties come and go.
  std::int32_t idOf(const std::string& name) const {
    for (std::size_t i = 0; i < names_.size(); ++i)
      if (names_[i] == name) return static_cast<std::int32_t>(i + 1);
    names_.push_back(name);
    return static_cast<std::int32_t>(names_.size());
  }

  std::string nameOf(std::int32_t id) const {
    if (id < 1 || static_cast<std::size_t>(id) > names_.size())
      throwError(AutomationErrorCode::kMemberNotFound, "there is no member " + std::to_string(id));
    return names_[static_cast<std::size_t>(id - 1)];
  }

  QPointer<QObject> object_;
  mutable std::vector<std::string> names_;
};

}  // namespace

DispatchPtr dispatchFromQObject(QObject* object) {
  return object == nullptr ? nullptr : std::make_shared<QObjectDispatch>(object);
}

}  // namespace zel
