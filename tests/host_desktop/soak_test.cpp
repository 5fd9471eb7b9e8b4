// Random actions of a planner on the main window, for as many steps as ZEL_SOAK_ACTIONS says (600 without
// it), from a seed that is logged and can be given as ZEL_SOAK_SEED. Nothing may fail, trap, warn or leave a
// box open, the plan stays whole, undoing everything gives the plan that was opened, and memory may not grow.
#include <malloc.h>

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QClipboard>
#include <QColorDialog>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialog>
#include <QDropEvent>
#include <QFileDialog>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QProgressDialog>
#include <QSortFilterProxyModel>
#include <QUrl>
#include <QWheelEvent>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "desktop_fixture.h"
#include "planning/plan_file.h"
#include "support/chance.h"

namespace zel::host {
namespace {

constexpr int kActionsToCheck = 50;        // between two looks at everything
constexpr std::size_t kMostStations = 80;  // before an empty plan is begun: the run is to stay quick
constexpr int kMostTries = 50;             // to leave a dialog

class HostSoakTest : public DesktopTest, protected test::Chance {
 protected:
  void SetUp() override {
    DesktopTest::SetUp();
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    makeFiles();
    // What comes up in a loop of its own is worked from a fresh event: a dialog may open another one.
    watcher_.setInterval(1);
    watcher_.callOnTimeout([this] {
      if (QApplication::activePopupWidget() != nullptr && !inPopup_) {
        QTimer::singleShot(0, &home_, [this] { workPopups(); });
        return;
      }
      QWidget* modal = QApplication::activeModalWidget();
      if (modal == nullptr || std::find(worked_.begin(), worked_.end(), modal) != worked_.end()) return;
      QTimer::singleShot(0, &home_, [this] { workModal(); });
    });
    watcher_.start();
  }
  void TearDown() override {
    watcher_.stop();
    DesktopTest::TearDown();
  }

  // ---- Files, good and bad ----

  std::string file(const std::string& name) const { return (folder_ / name).string(); }

  void makeFiles() {
    const std::string sample = std::string(ZEL_SOURCE_DIR) + "/data/terrain/jacksboro_3s.tif";
    raster_ = test::fileBytes(sample);
    Plan plan = samplePlan();
    plan.stations[3] = {"Caf\xC3\xA9 \"3\"", {36.31, -84.25}, 0};
    plan.links[2] = {3, 1, 450.0};
    writePlanFile(file("plan.json"), {plan, std::nullopt});
    plan.datum = PlanDatum::kNad27;
    writePlanFile(file("other.json"), {plan, PlanView{{36.3, -84.2}, 80}});
    const std::string whole = test::fileBytes(folder_ / "plan.json");
    test::writeBytes(folder_ / "torn.json", whole.substr(0, whole.size() / 2));
    test::writeBytes(folder_ / "deep.json", std::string(200'000, '['));
    test::writeBytes(folder_ / "sites.csv",
                     "name,lat,lon,height\nA,36.3,-84.2,20\nB,96,-84.2,20\nC,36.25,-84.3,10\n");
    test::writeBytes(folder_ / "huge.csv", "name,lat,lon\nA,1e999,-84\n\"open,36,-84\n");
    test::writeBytes(folder_ / "binary.csv", std::string("\0\1\2\xFF\xFE", 5));
    test::writeBytes(folder_ / "sites.geojson",
                     R"({"type":"FeatureCollection","features":[{"type":"Feature","properties":{"name":"G"},)"
                     R"("geometry":{"type":"Point","coordinates":[-84.31,36.33,400]}}]})");
    test::writeBytes(folder_ / "sites.kml",
                     "<kml><Document><Placemark><name>K</name><Point><coordinates>-84.3,36.3</coordinates>"
                     "</Point></Placemark></Document></kml>");
    test::writeBytes(folder_ / "torn.kml", "<!DOCTYPE a [<!ENTITY b \"&b;&b;\">]><kml>&b;<Placemark>");
    test::writeBytes(folder_ / "torn.kmz", "PK\3\4 and nothing after it");
    test::writeBytes(folder_ / "sites.gpx",
                     "<gpx><wpt lat=\"36.28\" lon=\"-84.22\"><name>W</name></wpt></gpx>");
    test::writeBytes(folder_ / "empty.txt", "");
    test::writeBytes(folder_ / "torn.tif", raster_.substr(0, 3000));
    std::filesystem::create_directories(folder_ / "tiles");
    rasterComesOrGoes();
  }

  void rasterComesOrGoes() {
    const std::filesystem::path raster = folder_ / "tiles" / "ground.tif";
    std::error_code none;
    if (std::filesystem::exists(raster, none)) {
      std::filesystem::remove(raster, none);
    } else {
      test::writeBytes(raster, oneIn(4) ? raster_.substr(0, raster_.size() / 2) : raster_);
    }
  }

  std::string someFile() {
    static const char* const names[] = {
        "plan.json",  "other.json",    "torn.json", "deep.json",        "sites.csv",  "huge.csv",
        "binary.csv", "sites.geojson", "sites.kml", "torn.kml",         "torn.kmz",   "sites.gpx",
        "empty.txt",  "torn.tif",      "tiles",     "tiles/ground.tif", "saved.json", "gone/plan.json"};
    return file(oneOf(names));
  }

  // ---- A person's hands ----

  static const char* someText(int at) {
    static const char* const texts[] = {
        "36.3", "36-18-00 N", "84-12-00 W",   "96", "-84.2",        "",         "1e999", "abc",
        "30",   "100 ft",     "751",          "-1", "North ridge",  "1900",     "19",    "3,5",
        " ",    "nan",        "36.3, -84.25", "0",  "2\t3\"<b>&x;", "179.9999", "90",    "99999999",
        "450",  "1.333"};
    return texts[static_cast<std::size_t>(at) % std::size(texts)];
  }
  void typeInto(QWidget& widget) { QTest::keyClicks(&widget, QLatin1String(someText(upTo(1000)))); }

  void key(QWidget& widget) {
    static const Qt::Key keys[] = {Qt::Key_Left,     Qt::Key_Right,  Qt::Key_Up,       Qt::Key_Down,
                                   Qt::Key_Home,     Qt::Key_Space,  Qt::Key_Return,   Qt::Key_Escape,
                                   Qt::Key_Plus,     Qt::Key_Minus,  Qt::Key_Tab,      Qt::Key_Backtab,
                                   Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_Delete,   Qt::Key_F2,
                                   Qt::Key_Left,     Qt::Key_Enter,  Qt::Key_Backspace};
    static const Qt::KeyboardModifiers modifiers[] = {Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier,
                                                      Qt::AltModifier};
    const Qt::Key pressed = oneOf(keys);
    QTest::keyClick(&widget, pressed, oneOf(modifiers));
  }

  QWidget* someControl(QWidget& parent) {
    QList<QWidget*> controls;
    for (QWidget* child : parent.findChildren<QWidget*>())
      if (child->isVisible() && child->isEnabled() && qobject_cast<QMenu*>(child) == nullptr &&
          child->focusPolicy() != Qt::NoFocus)
        controls.append(child);
    return controls.isEmpty() ? nullptr : oneOf(controls);
  }

  void workControl(QWidget& control) {
    if (qobject_cast<QLineEdit*>(&control) != nullptr ||
        qobject_cast<QAbstractSpinBox*>(&control) != nullptr) {
      const QPointer<QWidget> there(&control);
      control.setFocus();
      if (oneIn(2)) QTest::keyClick(&control, Qt::Key_A, Qt::ControlModifier);
      typeInto(control);
      if (oneIn(3) && !there.isNull()) key(control);
    } else if (oneIn(3)) {
      key(control);
    } else if (auto* view = qobject_cast<QAbstractItemView*>(&control)) {
      QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, somewhereIn(*view->viewport()));
    } else {
      QTest::mouseClick(&control, Qt::LeftButton, {}, somewhereIn(control));
    }
  }

  // Through a menu that is open and out of it.
  void workPopups() {
    if (inPopup_) return;
    inPopup_ = true;
    static const Qt::Key ways[] = {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Right};
    for (int i = upTo(8); i > 0 && QApplication::activePopupWidget() != nullptr; --i)
      QTest::keyClick(QApplication::activePopupWidget(), oneOf(ways));
    inPopup_ = false;  // what is chosen may open another
    if (QWidget* popup = QApplication::activePopupWidget())
      QTest::keyClick(popup, oneIn(3) ? Qt::Key_Return : Qt::Key_Escape);
    for (int i = 0; i < kMostTries && QApplication::activePopupWidget() != nullptr; ++i)
      QApplication::activePopupWidget()->close();
  }

  // ---- Dialogs ----

  void workModal() {
    const QPointer<QWidget> modal(QApplication::activeModalWidget());
    if (modal.isNull() || std::find(worked_.begin(), worked_.end(), modal.data()) != worked_.end()) return;
    worked_.push_back(modal.data());
    QWidget* const address = modal.data();
    ++dialogs_;
    if (auto* progress = qobject_cast<QProgressDialog*>(modal.data())) {
      if (oneIn(10)) progress->cancel();
    } else if (auto* box = qobject_cast<QMessageBox*>(modal.data())) {
      workBox(*box);
    } else if (auto* files = qobject_cast<QFileDialog*>(modal.data())) {
      workFiles(*files);
    } else if (auto* dialog = qobject_cast<QDialog*>(modal.data())) {
      workDialog(*dialog);
    } else {
      modal->close();
    }
    std::erase(worked_, address);
  }

  void workBox(QMessageBox& box) {
    QList<QAbstractButton*> buttons = box.buttons();
    if (!box.text().contains(QLatin1String("Attempt to Continue?"))) {
      oneOf(buttons)->click();
      return;
    }
    trapped_ += box.text();  // "No" would end the process
    QAbstractButton* yes = box.button(QMessageBox::Yes);
    (yes != nullptr ? yes : buttons.front())->click();
  }

  void workFiles(QFileDialog& dialog) {
    const QPointer<QFileDialog> open(&dialog);
    auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    const bool saves = dialog.acceptMode() == QFileDialog::AcceptSave;
    if (!oneIn(4) && name != nullptr) {
      name->setText(
          QString::fromStdString(saves ? file(oneIn(3) ? "gone/plan.json" : "saved.json") : someFile()));
      static_cast<QDialog&>(dialog).accept();
    }
    leave(open.data());
  }

  void workDialog(QDialog& dialog) {
    const QPointer<QDialog> open(&dialog);
    const auto isOpen = [&open] { return !open.isNull() && open->isVisible(); };
    for (int i = upTo(12); i > 0 && isOpen(); --i) {
      QWidget* child = someControl(dialog);
      if (child == nullptr) break;
      workControl(*child);
    }
    if (!isOpen()) return;
    const int way = upTo(3);
    if (way == 0) QTest::keyClick(&dialog, Qt::Key_Escape);
    if (way == 1) QTest::keyClick(&dialog, Qt::Key_Return);
    // Only of the dialog itself.
    const QList<QPushButton*> buttons = dialog.findChildren<QPushButton*>();
    if (way == 2 && isOpen()) {
      for (QPushButton* button : buttons)
        if (isOpen() && button->isDefault() && button->isEnabled()) {
          button->click();
          break;
        }
    }
    leave(open.data());
  }

  // A refused entry keeps it open, and so may the answer to a question about unsaved edits.
  static void leave(QDialog* dialog) {
    const QPointer<QDialog> open(dialog);
    for (int i = 0; i < kMostTries && !open.isNull() && open->isVisible(); ++i) open->reject();
  }

  // ---- Actions ----

  void menuAction() {
    QList<QAction*> items;
    for (QAction* item : window().findChildren<QAction*>())
      if (item->objectName().startsWith(QLatin1String("mnu")) && item->menu() == nullptr &&
          item->isEnabled() && item->objectName() != QLatin1String("mnuFileQuit"))
        items.append(item);
    last_ = "menu";
    QAction* item = oneOf(items);
    last_ = item->objectName().toStdString();
    item->trigger();
  }

  void shortcut() {
    static const QKeySequence keys[] = {
        QKeySequence(Qt::CTRL | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z),
        QKeySequence(Qt::CTRL | Qt::Key_A), QKeySequence(Qt::CTRL | Qt::Key_L),
        QKeySequence(Qt::CTRL | Qt::Key_C), QKeySequence(Qt::CTRL | Qt::Key_V),
        QKeySequence(Qt::CTRL | Qt::Key_R), QKeySequence(Qt::Key_F5),
        QKeySequence(Qt::Key_F6),           QKeySequence(Qt::Key_F7),
        QKeySequence(Qt::Key_Delete)};
    QWidget* target = window().focusWidget() == nullptr ? &window() : window().focusWidget();
    QTest::keySequence(target, oneOf(keys));
  }

  // A place on the map, often one where there is something.
  QPoint mapPlace() {
    MapView& map = window().map();
    const auto& stations = window().document().plan().stations;
    if (stations.empty() || oneIn(3)) return somewhereIn(map);
    const auto& station = *std::next(stations.begin(), upTo(static_cast<int>(stations.size()) - 1));
    const MapPoint at = map.frame().pixelOf(station.second.position);
    const QPoint place(static_cast<int>(at.x), static_cast<int>(at.y));
    return map.rect().contains(place) ? place : somewhereIn(map);
  }

  void wheel() {
    MapView& map = window().map();
    const QPoint at = mapPlace();
    static const int angles[] = {120, -120, 40, -40, 1200, -1200, 12000};
    const QPoint angle(oneIn(4) ? oneOf(angles) : 0, oneOf(angles));
    const QPoint pixels = oneIn(3) ? QPoint(upTo(60) - 30, upTo(60) - 30) : QPoint();
    QWheelEvent event(at, map.mapToGlobal(at), pixels, angle, Qt::NoButton,
                      oneIn(4) ? Qt::ControlModifier : Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&map, &event);
  }

  void drag() {
    MapView& map = window().map();
    const Qt::MouseButton button = oneIn(4) ? Qt::MiddleButton : Qt::LeftButton;
    const Qt::KeyboardModifiers modifiers = oneIn(3) ? Qt::ShiftModifier : Qt::NoModifier;
    QTest::mousePress(&map, button, modifiers, mapPlace());
    for (int i = 1 + upTo(4); i > 0; --i) {
      const QPoint at = somewhereIn(map);
      QMouseEvent move(QEvent::MouseMove, QPointF(at), QPointF(map.mapToGlobal(at)), Qt::NoButton, button,
                       modifiers);
      QApplication::sendEvent(&map, &move);
      if (oneIn(8)) QTest::keyClick(&map, Qt::Key_Escape);
      if (oneIn(8)) action("mnuEditUndo")->trigger();
      if (oneIn(8)) QCoreApplication::processEvents();
    }
    QTest::mouseRelease(&map, button, modifiers, oneIn(2) ? mapPlace() : somewhereIn(map));
  }

  void mapMenu() {
    MapView& map = window().map();
    const QPoint at = mapPlace();
    QContextMenuEvent event(oneIn(3) ? QContextMenuEvent::Keyboard : QContextMenuEvent::Mouse, at,
                            map.mapToGlobal(at));
    QApplication::sendEvent(&map, &event);
  }

  void editTable() {
    QTableView* view = table(oneIn(2) ? "stationsTable" : "linksTable");
    QAbstractItemModel* model = view->model();
    if (model->rowCount() == 0) return;
    const QModelIndex cell = model->index(upTo(model->rowCount() - 1), upTo(model->columnCount() - 1));
    switch (upTo(3)) {
      case 0:
        if (model->flags(cell).testFlag(Qt::ItemIsEditable))
          model->setData(cell, QLatin1String(someText(upTo(1000))));
        break;
      case 1:
        if (model->flags(cell).testFlag(Qt::ItemIsEditable)) {
          view->setCurrentIndex(cell);
          QTest::keyClick(view, Qt::Key_F2);  // a view may be unable to edit just now
          // One that was left before may still wait to be deleted.
          auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
          if (editor != nullptr && view->viewport()->isAncestorOf(editor)) {
            typeInto(*editor);
            QTest::keyClick(editor, oneIn(3) ? Qt::Key_Escape : Qt::Key_Return);
          }
        }
        break;
      case 2:
        view->sortByColumn(upTo(model->columnCount() - 1),
                           oneIn(2) ? Qt::AscendingOrder : Qt::DescendingOrder);
        break;
      default:
        view->selectRow(cell.row());
    }
  }

  void drop() {
    QList<QUrl> urls;
    for (int i = 1 + upTo(2); i > 0; --i)
      urls.append(QUrl::fromLocalFile(QString::fromStdString(someFile())));
    if (oneIn(8)) urls = {QUrl(QStringLiteral("https://terrain.invalid/a.tif"))};
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window(), &enter);
    QDropEvent dropped(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window(), &dropped);
  }

  void paste() {
    static const char* const texts[] = {"36.3,-84.2\n\nnonsense\n36-15-00 N,84-15-00 W,100 ft,A, B\n",
                                        "",
                                        "1e999,1\n",
                                        "36.2,-84.1,20,P",
                                        "-89.9,179.99,0,Far\n89.9,-179.99,0,Farther\n",
                                        "\t\t\n,,,,\n\"\"\""};
    QApplication::clipboard()->setText(QLatin1String(oneOf(texts)));
    action("mnuEditPaste")->trigger();
  }

  // The component's window, as far as the plan has to do with it; it has a soak of its own.
  void workProfile() {
    const auto& links = window().document().plan().links;
    if (!component_->get_PFrmLoaded()) {
      if (!links.empty())
        window().showProfile(std::next(links.begin(), upTo(static_cast<int>(links.size()) - 1))->first);
      return;
    }
    if (oneIn(3)) {
      component_->UnloadMainForm();
      return;
    }
    for (QWidget* each : QApplication::topLevelWidgets()) {
      auto* frequency = each->findChild<QLineEdit*>(QStringLiteral("tbxFreq"));
      if (!each->isVisible() || frequency == nullptr) continue;
      if (oneIn(2)) {
        each->move(upTo(400), upTo(300));
      } else {
        frequency->setFocus();
        typeInto(*frequency);
      }
      return;
    }
  }

  void undoFlood() {
    QAction* one = action(oneIn(2) ? "mnuEditUndo" : "mnuEditRedo");
    for (int i = upTo(40); i > 0; --i) one->trigger();
  }

  void changeLinks() {
    PlanDocument& document = window().document();
    const auto& stations = document.plan().stations;
    if (stations.size() < 2) return;
    const auto some = [&] {
      return std::next(stations.begin(), upTo(static_cast<int>(stations.size()) - 1))->first;
    };
    const StationId from = some(), to = some();
    window().map().onLinkStations(from, to);
    if (oneIn(3))
      document.apply(moveStation(document.plan(), from, {around(36.3, 0.1), around(-84.25, 0.2)}));
  }

  void closeAndStart() {
    last_ = "close";
    if (!window().close() && !oneIn(4)) return;
    dropWindow();
    firstPlan_.reset();
    begin();
  }

  void begin() {
    window();
    follow();
    window().start(oneIn(4) ? file("plan.json") : std::string());
  }
  // The plan that each undo leads back to is that which was opened.
  void follow() {
    firstPlan_ = window().document().plan();
    window().document().onChanged([this](const PlanChange& change) {
      PlanDocument& document = window_->document();
      if (change.everything && !document.canUndo() && !document.canRedo()) firstPlan_ = document.plan();
    });
  }

  void act() {
    if (window().document().plan().stations.size() > kMostStations) {
      last_ = "new";
      action("mnuFileNew")->trigger();
      return;
    }
    MapView& map = window().map();
    const int what = upTo(27);
    last_ = "action " + std::to_string(what);
    switch (what) {
      case 0:
      case 1:
      case 2:
      case 3:
        menuAction();
        break;
      case 4:
      case 5:
        QTest::mouseClick(&map, Qt::LeftButton, oneIn(4) ? Qt::ControlModifier : Qt::NoModifier, mapPlace());
        break;
      case 6:
        QTest::mouseDClick(&map, Qt::LeftButton, {}, mapPlace());
        break;
      case 7:
      case 8:
        drag();
        break;
      case 9:
        wheel();
        break;
      case 10:
      case 11:
        key(map);
        break;
      case 12:
        mapMenu();
        break;
      case 13:
      case 14:
        editTable();
        break;
      case 15:
        shortcut();
        break;
      case 16:
        drop();
        break;
      case 17:
        paste();
        break;
      case 18:
        workProfile();
        break;
      case 19:
        undoFlood();
        break;
      case 20:
      case 21:
        changeLinks();
        break;
      case 22:
        window().resize(800 + upTo(800), 600 + upTo(500));
        break;
      case 23:
        if (QWidget* child = someControl(window()); child != nullptr) workControl(*child);
        break;
      case 24:
        rasterComesOrGoes();
        break;
      case 25:
        map.setTool(static_cast<MapTool>(upTo(2)));
        break;
      case 26:
        window().takeFiles({someFile()});
        break;
      default:
        if (oneIn(4)) closeAndStart();
    }
  }

  // ---- What holds ----

  bool quiet() const {
    return QApplication::activeModalWidget() == nullptr && QApplication::activePopupWidget() == nullptr;
  }

  void expectNothingOpen(const std::string& when) {
    QCoreApplication::processEvents();
    ASSERT_TRUE(waitFor([this] { return quiet(); }))
        << when << ": "
        << (QApplication::activeModalWidget() == nullptr
                ? std::string("a menu")
                : QApplication::activeModalWidget()->objectName().toStdString());
    ASSERT_EQ(trapped_.toStdString(), "") << when;
    ASSERT_EQ(test::fileBytes(folder_ / "zelErrorLog.txt"), "") << when;
    ASSERT_EQ(QApplication::overrideCursor(), nullptr) << when;
  }

  template <typename Values>
  void expectShown(const char* name, const Values& values) {
    auto* proxy = qobject_cast<QSortFilterProxyModel*>(table(name)->model());
    ASSERT_NE(proxy, nullptr);
    ASSERT_EQ(proxy->sourceModel()->rowCount(), static_cast<int>(values.size())) << name;
  }

  void expectWhole(const std::string& when) {
    SCOPED_TRACE(when);
    PlanDocument& document = window().document();
    const Plan now = document.plan();
    for (const auto& [id, link] : now.links) {
      ASSERT_TRUE(now.stations.contains(link.from)) << "link " << id;
      ASSERT_TRUE(now.stations.contains(link.to)) << "link " << id;
    }
    expectShown("linksTable", now.links);
    expectShown("stationsTable", now.stations);
    auto* names = qobject_cast<QSortFilterProxyModel*>(table("stationsTable")->model())->sourceModel();
    int row = 0;
    for (const auto& entry : now.stations)
      ASSERT_EQ(names->index(row++, 0).data().toString().toStdString(), entry.second.name);
    for (const StationId id : window().map().selection().stations) ASSERT_TRUE(now.stations.contains(id));
    for (const LinkId id : window().map().selection().links) ASSERT_TRUE(now.links.contains(id));

    std::size_t steps = 0;
    while (document.canUndo()) {
      document.undo();
      ++steps;
    }
    if (steps < PlanDocument::kMostSteps) {
      ASSERT_EQ(document.plan(), *firstPlan_);
    }
    for (; steps > 0; --steps) document.redo();
    ASSERT_EQ(document.plan(), now);
  }

  // With an empty plan and no profile.
  std::size_t heapInUse() {
    component_->UnloadMainForm();
    dropWindow();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    const std::size_t bytes = mallinfo2().uordblks;
    begin();
    return bytes;
  }

  std::string raster_;
  std::optional<Plan> firstPlan_;
  QObject home_;  // of what is done in dialogs
  QTimer watcher_;
  std::vector<QWidget*> worked_;
  bool inPopup_ = false;
  int dialogs_ = 0;
  QString trapped_;
  std::string last_;
};

TEST_F(HostSoakTest, TheMainWindowSurvivesRandomActions) {
  const auto [actions, seed] = beginSoak(600);
  const bool loud = std::getenv("ZEL_SOAK_LOUD") != nullptr;
  SCOPED_TRACE("ZEL_SOAK_SEED=" + std::to_string(seed));
  begin();

  std::size_t early = 0;
  for (int i = 0; i < actions; ++i) {
    act();
    const std::string when = "after action " + std::to_string(i) + ", " + last_;
    if (loud) std::printf("%s\n", when.c_str()), std::fflush(stdout);
    ASSERT_NO_FATAL_FAILURE(expectNothingOpen(when));
    if (i % kActionsToCheck == kActionsToCheck - 1) {
      ASSERT_NO_FATAL_FAILURE(expectWhole(when));
    }
    if (i == actions / 2) early = heapInUse();
  }
  const std::size_t late = heapInUse();
  EXPECT_GT(dialogs_, actions / 50) << "dialogs came up";
  test::expectLittleGrowth(early, late, 24);
}

}  // namespace
}  // namespace zel::host
