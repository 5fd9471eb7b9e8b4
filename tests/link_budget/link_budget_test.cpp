#include "zeltool/link_budget/link_budget.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <functional>

#include "foundation/runtime_error.h"
#include "support/offscreen.h"
#include "support/recording_settings_store.h"
#include "zeltool/link_budget/link_budget_dialog.h"

namespace zel {
namespace {

DispatchPtr planner(const char* title = "Host Planner") { return makePropertyBag({{"Title", title}}); }

int numberRaisedBy(const std::function<void()>& action) {
  try {
    action();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(LinkBudget, KeepsTheClientAndTheLossAndSaysThatItCannotOpenWithoutADesktop) {
  const auto store = std::make_shared<test::RecordingSettingsStore>();
  LinkBudget tool(store, [] { return false; });
  EXPECT_EQ(tool.modeledLossText(), "");
  const DispatchPtr client = planner();
  tool.SetClientApp(client);
  EXPECT_EQ(tool.client(), client);
  try {
    tool.Open("137.65");
    ADD_FAILURE() << "raised nothing";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 445);
    EXPECT_EQ(error.description(), "Object doesn't support this action");
  }
  EXPECT_EQ(tool.modeledLossText(), "137.65");
  EXPECT_EQ(tool.dialog(), nullptr);
  EXPECT_TRUE(store->reads.empty());
}

TEST(LinkBudget, WithoutAQuestionForTheDesktopItHasNone) {
  LinkBudget tool(std::make_shared<test::MemorySettingsStore>(), {});
  tool.SetClientApp(planner());
  EXPECT_EQ(numberRaisedBy([&] { tool.Open("1"); }), 445);
}

// Without the fixture, because the application is what comes and goes.
class Desktop {
 public:
  Desktop() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    application_ = std::make_unique<QApplication>(count_, arguments_);
  }
  void end() { application_.reset(); }

 private:
  inline static char name_[] = "test";
  inline static char* arguments_[] = {name_, nullptr};
  inline static int count_ = 1;
  std::unique_ptr<QApplication> application_;
};

bool desktopIsThere() { return QCoreApplication::instance() != nullptr; }

TEST(LinkBudget, TheWindowGoesWithTheApplicationAndTheToolOutlivesBoth) {
  const auto store = std::make_shared<test::MemorySettingsStore>();
  LinkBudget tool(store, desktopIsThere);
  tool.SetClientApp(planner());
  {
    Desktop desktop;
    tool.Open("137.65");
    ASSERT_NE(tool.dialog(), nullptr);
    tool.dialog()->findChild<QLineEdit*>(QStringLiteral("tbxTxPower"))->setText(QStringLiteral("33"));
  }
  EXPECT_EQ(tool.dialog(), nullptr);
  EXPECT_EQ(store->ReadSetting("Host Planner", "LinkBudget", "TxPower", ""), "33");
  EXPECT_EQ(numberRaisedBy([&] { tool.Open("137.65"); }), 445);
}

TEST(LinkBudget, OpensAgainUnderTheNextApplication) {
  LinkBudget tool(std::make_shared<test::MemorySettingsStore>(), desktopIsThere);
  tool.SetClientApp(planner());
  for (int i = 0; i < 3; ++i) {
    Desktop desktop;
    tool.Open("137.65");
    ASSERT_NE(tool.dialog(), nullptr);
    EXPECT_TRUE(tool.dialog()->isVisible());
    desktop.end();
    EXPECT_EQ(tool.dialog(), nullptr);
  }
}

TEST(LinkBudget, TheWindowGoesWithItsToolAndLeavesAnothersAlone) {
  Desktop desktop;
  const auto store = std::make_shared<test::MemorySettingsStore>();
  auto first = std::make_unique<LinkBudget>(store, desktopIsThere);
  LinkBudget second(store, desktopIsThere);
  first->SetClientApp(planner());
  second.SetClientApp(planner());
  first->Open("1");
  second.Open("2");
  const QPointer<LinkBudgetDialog> gone = first->dialog();
  ASSERT_FALSE(gone.isNull());
  first.reset();
  EXPECT_TRUE(gone.isNull());
  ASSERT_NE(second.dialog(), nullptr);
  desktop.end();
  EXPECT_EQ(second.dialog(), nullptr);
}

using LinkBudgetWindow = test::OffscreenTest<QApplication>;

TEST_F(LinkBudgetWindow, IsOneWindowThatIsUpdatedWhenItIsOpenedAgain) {
  LinkBudget tool(std::make_shared<test::MemorySettingsStore>(), [] { return true; });
  tool.SetClientApp(planner());
  tool.Open("137.65");
  const LinkBudgetDialog* const dialog = tool.dialog();
  const auto* loss = dialog->findChild<QLineEdit*>(QStringLiteral("tbxPathLoss"));
  EXPECT_EQ(loss->text(), QStringLiteral("137.65"));
  tool.Open("120.5");
  EXPECT_EQ(tool.dialog(), dialog);
  EXPECT_EQ(loss->text(), QStringLiteral("120.5"));
  EXPECT_EQ(tool.modeledLossText(), "120.5");
}

TEST_F(LinkBudgetWindow, RaisesWhatAClientWithoutATitleRaises) {
  LinkBudget tool(std::make_shared<test::MemorySettingsStore>(), [] { return true; });
  EXPECT_EQ(numberRaisedBy([&] { tool.Open("1"); }), 91);
  tool.SetClientApp(makePropertyBag({{"Path", "/"}}));
  EXPECT_EQ(numberRaisedBy([&] { tool.Open("1"); }), 438);
  EXPECT_EQ(tool.dialog(), nullptr);
}

TEST_F(LinkBudgetWindow, RaisesWhatTheStoreRaisesAndShowsNoWindow) {
  const auto store = std::make_shared<test::MemorySettingsStore>();
  LinkBudget tool(store, [] { return true; });
  tool.SetClientApp(planner());
  store->failing = true;
  EXPECT_EQ(numberRaisedBy([&] { tool.Open("1"); }), 70);
  EXPECT_TRUE(tool.dialog() == nullptr || !tool.dialog()->isVisible());
  store->failing = false;
  tool.Open("1");
  EXPECT_TRUE(tool.dialog()->isVisible());
}

TEST_F(LinkBudgetWindow, NeitherEndsTheHostNorGoesWithTheWindowInFrontOfWhichItStands) {
  LinkBudget tool(std::make_shared<test::MemorySettingsStore>(), [] { return true; });
  tool.SetClientApp(planner());
  auto host = std::make_unique<QWidget>();
  host->show();
  host->activateWindow();
  QApplication::setActiveWindow(host.get());
  tool.Open("1");
  EXPECT_FALSE(tool.dialog()->testAttribute(Qt::WA_QuitOnClose));
  EXPECT_EQ(tool.dialog()->parentWidget(), nullptr);
  host.reset();
  ASSERT_NE(tool.dialog(), nullptr);
  tool.Open("2");
  EXPECT_TRUE(tool.dialog()->isVisible());
}

}  // namespace
}  // namespace zel
