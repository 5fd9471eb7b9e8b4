#include <gtest/gtest.h>

#include <QObject>
#include <QSize>
#include <QTimer>
#include <QVariant>
#include <array>
#include <memory>

#include "zel/qobject.h"

namespace zel {
namespace {

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

class QObjectDispatchTest : public testing::Test {
 protected:
  QTimer object_;
  DispatchPtr dispatch_ = dispatchFromQObject(&object_);
};

TEST_F(QObjectDispatchTest, ReadsAndWritesDeclaredPropertiesWithoutRegardToCase) {
  object_.setInterval(250);
  EXPECT_EQ(dispatch_->get("Interval"), AutomationValue(250));
  dispatch_->let("INTERVAL", 300.0);
  EXPECT_EQ(object_.interval(), 300);
  dispatch_->let("objectname", "H\u00f6he");
  EXPECT_EQ(object_.objectName(), QString::fromUtf8("H\u00f6he"));
  EXPECT_EQ(dispatch_->get("objectName").toText(), "H\u00f6he");
  dispatch_->let("singleShot", true);
  EXPECT_EQ(dispatch_->get("singleShot"), AutomationValue(true));
}

TEST_F(QObjectDispatchTest, ReadsDynamicPropertiesAsTheHostSetsThem) {
  object_.setProperty("Title", QStringLiteral("Host Planner"));
  object_.setProperty("Major", 4);
  object_.setProperty("Small", QVariant::fromValue<short>(5));
  object_.setProperty("Real", 1.5F);
  object_.setProperty("Big", QVariant::fromValue<qlonglong>(5'000'000'000));
  object_.setProperty("Bytes", QByteArray("abc"));
  EXPECT_EQ(dispatch_->get("title"), AutomationValue("Host Planner"));
  EXPECT_EQ(dispatch_->get("major"), AutomationValue(4));
  EXPECT_EQ(dispatch_->get("small"), AutomationValue(std::int16_t{5}));
  EXPECT_EQ(dispatch_->get("real"), AutomationValue(1.5F));
  EXPECT_EQ(dispatch_->get("big"), AutomationValue(5e9));
  EXPECT_EQ(dispatch_->get("bytes"), AutomationValue("abc"));
  object_.setProperty("Title", QStringLiteral("Renamed"));
  EXPECT_EQ(dispatch_->get("Title").toText(), "Renamed");
}

TEST_F(QObjectDispatchTest, NeverWrapsAValueThatThePropertyCannotHold) {
  object_.setProperty("Small", QVariant::fromValue<short>(5));
  object_.setProperty("Count", QVariant::fromValue<unsigned int>(5));
  object_.setProperty("Big", QVariant::fromValue<qlonglong>(5));
  EXPECT_EQ(codeOf([&] { dispatch_->let("Small", 70000); }), AutomationErrorCode::kOverflow);
  EXPECT_EQ(codeOf([&] { dispatch_->let("Count", -1); }), AutomationErrorCode::kOverflow);
  EXPECT_EQ(codeOf([&] { dispatch_->let("interval", 3e9); }), AutomationErrorCode::kOverflow);
  EXPECT_EQ(codeOf([&] { dispatch_->let("Big", 1e18); }), AutomationErrorCode::kOverflow);
  EXPECT_EQ(object_.property("Small").toInt(), 5);
  dispatch_->let("Count", 3e9);
  EXPECT_EQ(object_.property("Count").toUInt(), 3'000'000'000U);
  dispatch_->let("Big", 5e9);
  EXPECT_EQ(dispatch_->get("Big"), AutomationValue(5e9));
}

TEST_F(QObjectDispatchTest, KeepsThePropertysOwnType) {
  object_.setProperty("Small", QVariant::fromValue<short>(5));
  dispatch_->let("Small", 6.5);
  EXPECT_EQ(object_.property("Small").metaType().id(), QMetaType::Short);
  EXPECT_EQ(object_.property("Small").toInt(), 6);
}

TEST_F(QObjectDispatchTest, RefusesWrongKindsNamesAndUses) {
  const std::array<AutomationValue, 1> one{1};
  EXPECT_EQ(codeOf([&] { dispatch_->let("interval", "250"); }), AutomationErrorCode::kTypeMismatch);
  EXPECT_EQ(codeOf([&] { dispatch_->let("objectName", 3); }), AutomationErrorCode::kTypeMismatch);
  EXPECT_EQ(codeOf([&] { dispatch_->let("active", true); }), AutomationErrorCode::kWrongAccess);
  EXPECT_EQ(codeOf([&] { dispatch_->get("Title"); }), AutomationErrorCode::kMemberNotFound);
  EXPECT_EQ(codeOf([&] { dispatch_->call("interval"); }), AutomationErrorCode::kWrongAccess);
  EXPECT_EQ(codeOf([&] { dispatch_->invoke(99, Access::kGet, {}); }), AutomationErrorCode::kMemberNotFound);
  const std::int32_t interval = dispatch_->dispatchId("interval");
  EXPECT_EQ(codeOf([&] { dispatch_->invoke(interval, Access::kGet, one); }),
            AutomationErrorCode::kWrongArgumentCount);
  object_.setProperty("Size", QVariant::fromValue(QSize(1, 2)));
  EXPECT_EQ(codeOf([&] { dispatch_->get("Size"); }), AutomationErrorCode::kTypeMismatch);
  EXPECT_EQ(codeOf([&] { dispatch_->let("Size", 1); }), AutomationErrorCode::kTypeMismatch);
}

TEST_F(QObjectDispatchTest, KeepsAnIdWhileDynamicPropertiesComeAndGo) {
  object_.setProperty("First", 1);
  object_.setProperty("Second", 2);
  const std::int32_t second = dispatch_->dispatchId("Second");
  object_.setProperty("First", QVariant());
  EXPECT_EQ(dispatch_->invoke(second, Access::kGet, {}), AutomationValue(2));
}

TEST_F(QObjectDispatchTest, CarriesAnObjectThatAPropertyHolds) {
  QObject child;
  child.setObjectName(QStringLiteral("child"));
  object_.setProperty("Child", QVariant::fromValue(&child));
  EXPECT_EQ(dispatch_->get("Child").toObject()->get("objectName").toText(), "child");
}

TEST(QObjectDispatch, FailsClearlyWhenTheObjectIsGone) {
  auto object = std::make_unique<QTimer>();
  const DispatchPtr dispatch = dispatchFromQObject(object.get());
  const std::int32_t id = dispatch->dispatchId("interval");
  object.reset();
  EXPECT_EQ(codeOf([&] { dispatch->get("interval"); }), AutomationErrorCode::kFailed);
  EXPECT_EQ(codeOf([&] { dispatch->invoke(id, Access::kGet, {}); }), AutomationErrorCode::kFailed);
}

TEST(QObjectDispatch, IsNullForNull) { EXPECT_EQ(dispatchFromQObject(nullptr), nullptr); }

}  // namespace
}  // namespace zel
