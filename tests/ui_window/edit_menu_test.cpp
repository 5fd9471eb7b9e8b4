// The menu "Edit": the plot and its values on the clipboard.
#include <QClipboard>
#include <QMimeData>

#include "exporting.h"

namespace zel {
namespace {

class EditMenuTest : public test::ExportingTest {
 protected:
  void SetUp() override {
    ExportingTest::SetUp();
    QApplication::clipboard()->clear();
  }
  static std::string copied() { return QApplication::clipboard()->text().toStdString(); }
  static QStringList lines() {
    QStringList all = QApplication::clipboard()->text().split(u'\n');
    EXPECT_EQ(all.takeLast(), QString()) << "every line is ended";
    return all;
  }
};

TEST_F(EditMenuTest, CopyPictureTakesThePlotAsItIsShown) {
  open();
  clickPlot(5);
  pointAt(12);
  item("mnuEditCopyPicture").trigger();
  const QImage copy = QApplication::clipboard()->image();
  EXPECT_EQ(copy.size(), image().size());
  EXPECT_EQ(copy.convertToFormat(QImage::Format_RGB32), image().convertToFormat(QImage::Format_RGB32));
  EXPECT_FALSE(QApplication::clipboard()->mimeData()->hasText());
}

TEST_F(EditMenuTest, CopyPictureTakesDevicePixels) {
  open();
  window()->picture().canvas().resize(window()->picture().size(), 2);
  item("mnuEditCopyPicture").trigger();
  EXPECT_EQ(QApplication::clipboard()->image().size(), window()->picture().size() * 2);
  EXPECT_EQ(QApplication::clipboard()->image().devicePixelRatio(), 1);
}

TEST_F(EditMenuTest, CopyValuesTakesALineOfTitlesAndOneForEachSample) {
  open();
  item("mnuEditCopyValues").trigger();
  const QStringList rows = lines();
  EXPECT_EQ(rows.front().toStdString(),
            "Point\tDistance (km)\tLatitude\tLongitude\tGround AMSL (m)\tFresnel AMSL (m)\tLOS AMSL (m)\t"
            "Earth Rise (m)");
  EXPECT_EQ(rows.size(), state().path.intervals + 2) << "N + 1 samples from station to station";
  for (const QString& row : rows) EXPECT_EQ(row.count(u'\t'), 7) << row.toStdString();
  EXPECT_TRUE(rows[1].startsWith(QStringLiteral("1\t0\t36."))) << rows[1].toStdString();
}

TEST_F(EditMenuTest, TheValuesAreThoseOfTheHeightProfile) {
  open();
  clickPlot(5);
  clickPlot(20);
  item("mnuProfileExpand").trigger();
  item("mnuEditCopyValues").trigger();
  save("a.csv");
  item("mnuExportProfile").trigger();
  QStringList rows = QString::fromStdString(bytes("a.csv")).split(QStringLiteral("\r\n")).mid(6);
  rows.removeLast();
  const QStringList values = lines().mid(1);
  ASSERT_EQ(values.size(), rows.size());
  for (qsizetype i = 0; i < rows.size(); ++i)
    EXPECT_EQ(values[i].split(u'\t'), rows[i].split(QStringLiteral(", ")));
}

TEST_F(EditMenuTest, ValuesAreInTheUsersUnitsAndDecimalSeparator) {
  set("Settings", "DispUnits", "1");
  open();
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  item("mnuEditCopyValues").trigger();
  const QStringList rows = lines();
  EXPECT_TRUE(rows.front().contains(QStringLiteral("Distance (mi)"))) << rows.front().toStdString();
  EXPECT_TRUE(rows.front().contains(QStringLiteral("Ground AMSL (ft)"))) << rows.front().toStdString();
  EXPECT_TRUE(rows[1].startsWith(QStringLiteral("1\t0\t36,"))) << rows[1].toStdString();
  EXPECT_FALSE(rows[2].contains(u'.')) << rows[2].toStdString();
}

TEST_F(EditMenuTest, TheKeysCopyFromThePlot) {
  open();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
  QTest::keyClick(&window()->picture(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(QApplication::clipboard()->mimeData()->hasImage());
  QTest::keyClick(&window()->picture(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(copied().substr(0, 6), "Point\t");
}

TEST_F(EditMenuTest, InABoxWithASelectionTheKeysCopyTheSelection) {
  open();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
  box("tbxFreq").setFocus();
  box("tbxFreq").selectAll();
  QTest::keyClick(&box("tbxFreq"), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(copied(), "950");
  EXPECT_FALSE(QApplication::clipboard()->mimeData()->hasImage());
  box("tbxFreq").deselect();
  QTest::keyClick(&box("tbxFreq"), Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(QApplication::clipboard()->mimeData()->hasImage()) << "with nothing selected it is the plot's";
  EXPECT_EQ(boxText("tbxFreq"), "950");
}

TEST_F(EditMenuTest, ASelectedReadOutIsCopiedAsText) {
  open();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
  auto& label = control<QLabel>("lblClearance");
  label.setFocus();
  label.setSelection(0, 5);
  QTest::keyClick(&label, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(copied(), label.text().left(5).toStdString());
}

TEST_F(EditMenuTest, ThereIsNothingToCopyWithoutAProfile) {
  open();
  EXPECT_TRUE(item("mnuEditCopyPicture").isEnabled());
  set("Terrain", "Source3", (folder_ / "nothing-here").string());
  component_.refreshTerrainSources();
  window()->reload();
  EXPECT_FALSE(item("mnuEditCopyPicture").isEnabled());
  EXPECT_FALSE(item("mnuEditCopyValues").isEnabled());
  dialogs_->messages.clear();
  window()->mnuEditCopyPicture_Click();
  window()->mnuEditCopyValues_Click();
  EXPECT_EQ(copied(), "");
  EXPECT_TRUE(QApplication::clipboard()->image().isNull());
  EXPECT_TRUE(boxes().empty());
}

TEST_F(EditMenuTest, WhatWasTypedIsInTheValues) {
  open();
  item("mnuEditCopyValues").trigger();
  const std::string before = copied();
  type("tbxAnt1AGL", "90");
  item("mnuEditCopyValues").trigger();
  EXPECT_NE(copied(), before) << "the line of sight begins higher";
}

}  // namespace
}  // namespace zel
