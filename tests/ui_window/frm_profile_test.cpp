// The window as a host opens it: load, read-outs, layout, life.
#include "window_fixture.h"

namespace zel {
namespace {

class FrmProfileTest : public test::WindowTest {};

TEST_F(FrmProfileTest, OpensWithThePathDrawnAndItsFiguresShown) {
  FrmProfile& window = open();
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(control_.get_PFrmLoaded());
  EXPECT_NE(control_.get_hWnd(), 0);
  EXPECT_EQ(window.windowTitle().toStdString(), "Terrain Profile");
  EXPECT_EQ(text("lblDist"), "28.7");
  EXPECT_FALSE(text("lblFSLoss").empty());
  EXPECT_FALSE(text("lblMLoss").empty());
  EXPECT_FALSE(text("lblSAMSL").empty());
  EXPECT_TRUE(dialogs_->messages.empty());
}

TEST_F(FrmProfileTest, UnloadsOnTheHostsWordAndLeavesNothing) {
  open();
  control_.UnloadMainForm();
  EXPECT_FALSE(control_.get_PFrmLoaded());
  EXPECT_EQ(control_.get_hWnd(), 0);
  settle();
  EXPECT_EQ(windows_->profileWindow(), nullptr);
}

}  // namespace
}  // namespace zel
