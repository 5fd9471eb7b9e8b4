#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <type_traits>

#include "zel/automation.h"

namespace zel {
namespace {

using Kind = AutomationValue::Kind;

template <typename Body>
AutomationErrorCode codeOf(Body&& body) {
  try {
    body();
  } catch (const AutomationError& error) {
    EXPECT_STRNE(error.what(), "");
    return error.code();
  }
  ADD_FAILURE() << "nothing was thrown";
  return AutomationErrorCode::kFailed;
}

TEST(AutomationValue, KeepsTheKindItWasMadeOf) {
  EXPECT_EQ(AutomationValue().kind(), Kind::kEmpty);
  EXPECT_EQ(AutomationValue(true).kind(), Kind::kBoolean);
  EXPECT_EQ(AutomationValue(std::int16_t{1}).kind(), Kind::kInt16);
  EXPECT_EQ(AutomationValue(1).kind(), Kind::kInt32);
  EXPECT_EQ(AutomationValue(1.5F).kind(), Kind::kFloat32);
  EXPECT_EQ(AutomationValue(1.5).kind(), Kind::kFloat64);
  EXPECT_EQ(AutomationValue("text").kind(), Kind::kText);
  EXPECT_EQ(AutomationValue(std::string_view("text")).kind(), Kind::kText);
  EXPECT_EQ(AutomationValue(DispatchPtr{}).kind(), Kind::kObject);
  EXPECT_TRUE(AutomationValue().isEmpty());
  EXPECT_FALSE(AutomationValue(0).isEmpty());
}

enum Plain { kThree = 3 };

TEST(AutomationValue, TakesAnyOtherIntegerForA32BitOne) {
  for (const AutomationValue& value :
       {AutomationValue(3L), AutomationValue(3LL), AutomationValue(3U), AutomationValue(3UL),
        AutomationValue(std::uint16_t{3}), AutomationValue(std::int8_t{3}), AutomationValue(std::uint8_t{3}),
        AutomationValue(std::size_t{3}), AutomationValue(kThree)})
    EXPECT_EQ(value, AutomationValue(std::int32_t{3}));
  EXPECT_EQ(AutomationValue(-2147483648LL).toInt32(), -2147483647 - 1);
  EXPECT_EQ(AutomationValue(2147483647U).toInt32(), 2147483647);
}

TEST(AutomationValue, RefusesAnIntegerBeyond32Bits) {
  EXPECT_EQ(codeOf([] { (void)AutomationValue(2147483648U); }), AutomationErrorCode::kOverflow);
  EXPECT_EQ(codeOf([] { (void)AutomationValue(-2147483649LL); }), AutomationErrorCode::kOverflow);
  EXPECT_EQ(codeOf([] { (void)AutomationValue(std::numeric_limits<std::uint64_t>::max()); }),
            AutomationErrorCode::kOverflow);
  try {
    (void)AutomationValue(5'000'000'000L);
    FAIL();
  } catch (const AutomationError& error) {
    EXPECT_STREQ(error.what(), "5000000000 does not fit into a 32-bit integer");
  }
}

TEST(AutomationValue, TakesNoCharacterAndNoPointerToAnythingElse) {
  static_assert(!std::is_constructible_v<AutomationValue, char>);
  static_assert(!std::is_constructible_v<AutomationValue, wchar_t>);
  static_assert(!std::is_constructible_v<AutomationValue, char8_t>);
  static_assert(!std::is_constructible_v<AutomationValue, char16_t>);
  static_assert(!std::is_constructible_v<AutomationValue, char32_t>);
  static_assert(!std::is_constructible_v<AutomationValue, int*>);
  static_assert(!std::is_constructible_v<AutomationValue, std::shared_ptr<int>>);
  static_assert(std::is_convertible_v<unsigned long, AutomationValue>);
}

class Derived : public Dispatch {
 public:
  std::int32_t dispatchId(std::string_view) const override { return 1; }
  AutomationValue invoke(std::int32_t, Access, std::span<const AutomationValue>) override { return nullptr; }
};

TEST(AutomationValue, TakesAnObjectByThePointerThatTheHostHas) {
  const auto object = std::make_shared<Derived>();
  const AutomationValue value = object;
  EXPECT_EQ(value.kind(), Kind::kObject);
  EXPECT_EQ(value.toObject(), object);
  EXPECT_EQ(makePropertyBag({{"Child", object}})->get("Child").toObject(), object);
  EXPECT_EQ(object->call("Anything", {object, 3U, nullptr}).kind(), Kind::kObject);
}

TEST(AutomationValue, TakesANullPointerForTheNullObject) {
  EXPECT_EQ(AutomationValue(nullptr).kind(), Kind::kObject);
  EXPECT_EQ(AutomationValue(nullptr).toObject(), nullptr);
  EXPECT_EQ(AutomationValue(std::shared_ptr<Derived>()), AutomationValue(nullptr));
}

TEST(AutomationValue, TakesANullTextPointerForAnEmptyText) {
  EXPECT_EQ(AutomationValue(static_cast<const char*>(nullptr)).toText(), "");
}

TEST(AutomationValue, TakesAnyNumericKindForAnother) {
  EXPECT_EQ(AutomationValue(7.0).toInt16(), 7);
  EXPECT_EQ(AutomationValue(std::int16_t{7}).toFloat64(), 7.0);
  EXPECT_EQ(AutomationValue(7).toFloat32(), 7.0F);
  EXPECT_EQ(AutomationValue(7.0F).toInt32(), 7);
}

TEST(AutomationValue, RoundsHalvesToTheEvenInteger) {
  EXPECT_EQ(AutomationValue(10.5).toInt16(), 10);
  EXPECT_EQ(AutomationValue(11.5).toInt16(), 12);
  EXPECT_EQ(AutomationValue(-0.5F).toInt32(), 0);
  EXPECT_EQ(AutomationValue(-1.5F).toInt32(), -2);
}

TEST(AutomationValue, RefusesAnIntegerThatDoesNotFitAndNeverWraps) {
  EXPECT_EQ(AutomationValue(32767).toInt16(), 32767);
  EXPECT_EQ(AutomationValue(-32768).toInt16(), -32768);
  EXPECT_EQ(AutomationValue(32767.5 - 0.1).toInt16(), 32767);
  for (const AutomationValue& value :
       {AutomationValue(32768), AutomationValue(-32769), AutomationValue(70000), AutomationValue(32767.5),
        AutomationValue(1e300), AutomationValue(-1e30F)})
    EXPECT_EQ(codeOf([&] { value.toInt16(); }), AutomationErrorCode::kOverflow) << value.display();
  EXPECT_EQ(AutomationValue(2147483647.0).toInt32(), 2147483647);
  EXPECT_EQ(codeOf([] { AutomationValue(2147483648.0).toInt32(); }), AutomationErrorCode::kOverflow);
}

TEST(AutomationValue, RefusesWhatIsNotANumberAsAnInteger) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(codeOf([&] { AutomationValue(nan).toInt16(); }), AutomationErrorCode::kOverflow);
  EXPECT_EQ(codeOf([&] { AutomationValue(nan).toBoolean(); }), AutomationErrorCode::kOverflow);
  EXPECT_EQ(codeOf([&] { AutomationValue(infinity).toInt32(); }), AutomationErrorCode::kOverflow);
  EXPECT_TRUE(std::isnan(AutomationValue(nan).toFloat32()));
}

TEST(AutomationValue, RefusesADoubleBeyondA32BitFloat) {
  EXPECT_EQ(codeOf([] { AutomationValue(1e39).toFloat32(); }), AutomationErrorCode::kOverflow);
  EXPECT_EQ(codeOf([] { AutomationValue(-1e39).toFloat32(); }), AutomationErrorCode::kOverflow);
  EXPECT_EQ(AutomationValue(1e-60).toFloat32(), 0.0F);
}

TEST(AutomationValue, TakesANumberForTrueUnlessItIsZero) {
  EXPECT_TRUE(AutomationValue(-1).toBoolean());
  EXPECT_TRUE(AutomationValue(0.25).toBoolean());
  EXPECT_FALSE(AutomationValue(0).toBoolean());
  EXPECT_FALSE(AutomationValue(-0.0).toBoolean());
}

TEST(AutomationValue, NeverTakesATextABooleanOrNothingForANumber) {
  for (const AutomationValue& value :
       {AutomationValue("12"), AutomationValue(true), AutomationValue(), AutomationValue(DispatchPtr{})}) {
    EXPECT_EQ(codeOf([&] { value.toInt16(); }), AutomationErrorCode::kTypeMismatch);
    EXPECT_EQ(codeOf([&] { value.toInt32(); }), AutomationErrorCode::kTypeMismatch);
    EXPECT_EQ(codeOf([&] { value.toFloat32(); }), AutomationErrorCode::kTypeMismatch);
    EXPECT_EQ(codeOf([&] { value.toFloat64(); }), AutomationErrorCode::kTypeMismatch);
  }
  EXPECT_EQ(codeOf([] { AutomationValue("True").toBoolean(); }), AutomationErrorCode::kTypeMismatch);
}

TEST(AutomationValue, GivesATextOnlyForAText) {
  EXPECT_EQ(AutomationValue("abc").toText(), "abc");
  EXPECT_EQ(codeOf([] { AutomationValue(12).toText(); }), AutomationErrorCode::kTypeMismatch);
  EXPECT_EQ(codeOf([] { AutomationValue().toText(); }), AutomationErrorCode::kTypeMismatch);
}

TEST(AutomationValue, GivesTheNullObjectForNothing) {
  EXPECT_EQ(AutomationValue().toObject(), nullptr);
  const DispatchPtr object = makePropertyBag({});
  EXPECT_EQ(AutomationValue(object).toObject(), object);
  EXPECT_EQ(codeOf([] { AutomationValue("abc").toObject(); }), AutomationErrorCode::kTypeMismatch);
}

TEST(AutomationValue, ConvertsToAKindByTheSameRules) {
  EXPECT_EQ(AutomationValue(2.5).as(Kind::kInt16), AutomationValue(std::int16_t{2}));
  EXPECT_EQ(AutomationValue(2).as(Kind::kBoolean), AutomationValue(true));
  EXPECT_EQ(AutomationValue(2).as(Kind::kInt32), AutomationValue(2));
  EXPECT_EQ(AutomationValue(2).as(Kind::kFloat32), AutomationValue(2.0F));
  EXPECT_EQ(AutomationValue(2).as(Kind::kFloat64), AutomationValue(2.0));
  EXPECT_EQ(AutomationValue("a").as(Kind::kText), AutomationValue("a"));
  EXPECT_EQ(AutomationValue().as(Kind::kObject), AutomationValue(DispatchPtr{}));
  EXPECT_EQ(AutomationValue().as(Kind::kEmpty), AutomationValue());
  EXPECT_EQ(codeOf([] { AutomationValue(1).as(Kind::kEmpty); }), AutomationErrorCode::kTypeMismatch);
  EXPECT_EQ(codeOf([] { AutomationValue(1e9).as(Kind::kInt16); }), AutomationErrorCode::kOverflow);
}

TEST(AutomationValue, ShowsItselfToAPerson) {
  EXPECT_EQ(AutomationValue(true).display(), "True");
  EXPECT_EQ(AutomationValue(false).display(), "False");
  EXPECT_EQ(AutomationValue(std::int16_t{-3}).display(), "-3");
  EXPECT_EQ(AutomationValue(12).display(), "12");
  EXPECT_EQ(AutomationValue(0.5).display(), "0.5");
  EXPECT_EQ(AutomationValue(1.333F).display(), "1.333");
  EXPECT_EQ(AutomationValue("the text").display(), "the text");
  EXPECT_EQ(AutomationValue(DispatchPtr{}).display(), "(object)");
  EXPECT_EQ(AutomationValue().display(), "");
  EXPECT_EQ(AutomationValue(std::numeric_limits<double>::quiet_NaN()).display(), "NaN");
  EXPECT_EQ(AutomationValue(-std::numeric_limits<float>::infinity()).display(), "-Infinity");
}

TEST(AutomationValue, EqualsOnlyTheSameKindAndValue) {
  EXPECT_EQ(AutomationValue(1), AutomationValue(1));
  EXPECT_FALSE(AutomationValue(1) == AutomationValue(std::int16_t{1}));
  EXPECT_FALSE(AutomationValue(1) == AutomationValue(true));
  EXPECT_FALSE(AutomationValue("a") == AutomationValue("A"));
  EXPECT_FALSE(AutomationValue(makePropertyBag({})) == AutomationValue(makePropertyBag({})));
}

TEST(AutomationError, NamesBothKindsInAMismatch) {
  try {
    AutomationValue("12").toInt16();
    FAIL();
  } catch (const AutomationError& error) {
    EXPECT_STREQ(error.what(), "a text cannot stand for a 16-bit integer");
  }
}

}  // namespace
}  // namespace zel
