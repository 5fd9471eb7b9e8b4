#include "ui/profile_window/frm_profile.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStyle>
#include <algorithm>

#include "ui/plot/plot_readouts.h"
#include "ui/profile_window/clearance_row.h"
#include "ui/profile_window/control_panel.h"
#include "ui/profile_window/panel_inputs.h"
#include "ui/profile_window/picture_box.h"
#include "ui/profile_window/progress_row.h"
#include "ui/profile_window/window_placement.h"

namespace zel {
namespace {

constexpr std::string_view kName = "frmProfile";
constexpr int kTypingDelay = 750;  // ms

// The window is laid out in twips, fifteen to a logical pixel.
constexpr int pixels(int twips) { return (twips + 7) / 15; }
constexpr int kWidth = pixels(9315);        // of the picture at load, and the least of the window
constexpr int kLeastHeight = pixels(6480);  // of the window
constexpr int kLoadHeight = pixels(6200);   // without caption and menu bar
constexpr int kSliderRow = pixels(540);
constexpr int kPanelRoom = pixels(3190);
constexpr int kPanelWidth = pixels(9135);  // at load
constexpr int kPanelHeight = pixels(2970);
constexpr int kPanelNarrower = pixels(40);  // than the window
constexpr int kMargin = 4;

constexpr int kSteepest = 500;      // %, of Slider1
constexpr int kExaggeration = 100;  // %, at load

bool isNormalOrMaximised(Qt::WindowStates state) { return !state.testFlag(Qt::WindowMinimized); }

// What the parts lie on. It also changes its size without the window's: with the menu bar's font.
class Surface final : public QWidget {
 public:
  using QWidget::QWidget;
  std::function<void()> onResize;

 protected:
  void resizeEvent(QResizeEvent*) override {
    if (onResize) onResize();
  }
};

}  // namespace

void FrmProfile::Readouts::show(std::string_view control, const std::string& text) {
  texts_.insert_or_assign(std::string(control), text);
  const auto found = setters_.find(control);
  if (found != setters_.end()) found->second(QString::fromStdString(text));
}

std::string FrmProfile::Readouts::text(std::string_view control) const {
  const auto found = texts_.find(control);
  return found == texts_.end() ? std::string() : found->second;
}

const DatumShift& FrmProfile::DeferredDatumShift::made() const {
  if (shift_ == nullptr) shift_ = make_();
  return *shift_;
}

FrmProfile::Running::~Running() {
  if (--window_.running_ == 0 && window_.unloaded_ && window_.services_.idle) window_.services_.idle();
}

FrmProfile::FrmProfile(ProfileWindowServices services, const SettingsReader& settings,
                       std::optional<Path> path)
    : services_(std::move(services)),
      settings_(settings),
      ownModule_(*services_.module),
      module_(services_.shared ? services_.module : &ownModule_),
      trapped_(std::string(kName), *services_.trap),
      datumShift_(services_.datumShift) {
  setObjectName(QString::fromUtf8(kName.data()));
  setWindowTitle(tr("Terrain Profile"));
  ownModule_.bProfileFailed = false;
  path_ = path.value_or(Path{module_->station1, module_->station2, module_->antennaHeights});

  auto* surface = new Surface(this);
  surface->onResize = [this] {
    if (opened_) Form_Resize();
  };
  surface->setObjectName(QStringLiteral("surface"));
  picture_ = new PictureBox(surface);
  picture_->setAccessibleName(tr("Plot of the terrain profile"));
  picture_->setToolTip({});
  auto* caption = new QLabel(tr("&Zoom"), surface);
  caption->setObjectName(QStringLiteral("lblZoom"));
  slider_ = new QSlider(Qt::Horizontal, surface);
  slider_->setObjectName(QStringLiteral("Slider1"));
  slider_->setRange(0, kSteepest);
  slider_->setPageStep(50);
  slider_->setSingleStep(5);
  slider_->setValue(kExaggeration);
  slider_->setAccessibleName(tr("Room above the highest point, percent"));
  slider_->setToolTip(tr("How much room the plot leaves above its highest point, in percent of that height"));
  caption->setBuddy(slider_);
  clearance_ = new ClearanceRow(surface);
  clearance_->setObjectName(QStringLiteral("clearanceRow"));
  progress_ = new ProgressRow(surface);
  progress_->setObjectName(QStringLiteral("progressRow"));
  panel_ = new ControlPanel(surface);
  setCentralWidget(surface);
  setMinimumSize(kWidth, kLeastHeight);

  for (QTimer* timer : {&timer1_, &timer2_}) {
    timer->setSingleShot(true);
    timer->setInterval(kTypingDelay);
    timer->setTimerType(Qt::PreciseTimer);
  }
  timer1_.setObjectName(QStringLiteral("Timer1"));
  timer2_.setObjectName(QStringLiteral("Timer2"));
  timer1_.callOnTimeout(this, [this] { Timer1_Timer(); });
  timer2_.callOnTimeout(this, [this] { Timer2_Timer(); });

  buildMenus();
  bindReadouts();
  connectPanel();
  connectPicture();
  QWidget::setTabOrder(picture_, slider_);
  QWidget::setTabOrder(slider_, progress_);
  QWidget::setTabOrder(progress_, panel_->tbxAnt1AGL);
  showWhatCanBeDone();
}

FrmProfile::~FrmProfile() {
  services_.idle = nullptr;
  unload();
}

// An item without an action cannot be chosen.
QAction* FrmProfile::addItem(QMenu* menu, const char* name, const QString& text, const QString& tip,
                             const QKeySequence& keys, std::function<void()> action) {
  QAction* item = menu->addAction(text);
  item->setObjectName(QLatin1String(name));
  item->setStatusTip(tip);
  item->setToolTip(tip);
  item->setShortcut(keys);
  if (action) {
    connect(item, &QAction::triggered, this, [action = std::move(action)] { action(); });
  } else {
    item->setEnabled(false);
  }
  actions_.insert_or_assign(name, item);
  return item;
}

void FrmProfile::buildMenus() {
  QMenu* profile = menuBar()->addMenu(tr("&Profile"));
  profile->setObjectName(QStringLiteral("mnuProfile"));
  profile->setToolTipsVisible(true);
  addItem(profile, "mnuProfileLinkBudget", tr("&Link Budget"), tr("Take the modeled loss into a link budget"),
          QKeySequence(Qt::CTRL | Qt::Key_L), [this] { mnuProfileLinkBudget_Click(); });
  addItem(profile, "mnuProfileExpand", tr("&Expand"), tr("Show the stretch between the two markers"),
          QKeySequence(Qt::CTRL | Qt::Key_E), [this] { mnuProfileExpand_Click(); });
  addItem(profile, "mnuPrint", tr("&Print"), tr("Print the profile on one page"),
          QKeySequence(QKeySequence::Print), [this] { mnuPrint_Click(); });
  addItem(profile, "mnuPrintPreview", tr("Print Pre&view"), tr("Show the printed page"),
          QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P), [this] { mnuPrintPreview_Click(); });
  addItem(profile, "mnuProfileOptions", tr("&Options"), tr("Edit the settings of the profiler"),
          QKeySequence(Qt::CTRL | Qt::Key_Comma), [this] { mnuProfileOptions_Click(); });
  profile->addSeparator();
  addItem(profile, "mnuProfileClose", tr("&Close"), tr("Close this window"),
          QKeySequence(Qt::CTRL | Qt::Key_W), [this] { cmdExit_Click(); });

  buildEditMenu();
  buildExportMenu();

  QMenu* help = menuBar()->addMenu(tr("&Help"));
  help->setObjectName(QStringLiteral("mnuHelp"));
  addItem(help, "mnuHelpGuide", tr("&User's Guide"), tr("Open the guide"),
          QKeySequence(QKeySequence::HelpContents), [this] {
            procedure(":mnuHelpGuide_Click:", [this] {
              if (services_.openHelp) services_.openHelp();
            });
          });
  addItem(help, "mnuHelpAbout", tr("&About"), tr("Show the version"), {}, [this] {
    procedure(":mnuHelpAbout_Click:", [this] {
      services_.dialogs->message({tr("Terrain Profile").toStdString() + "\r\n" + version_,
                                  {},
                                  MessageIcon::kInformation,
                                  MessageButtons::kOk});
    });
  });
}

void FrmProfile::bindReadouts() {
  for (QLabel* label : panel_->findChildren<QLabel*>())
    if (!label->objectName().isEmpty())
      readouts_.bind(label->objectName().toStdString(),
                     [label](const QString& text) { label->setText(text); });
  readouts_.bind(std::string(readout::kExpandCaption), [this](const QString& caption) {
    QAction* item = actions_.at("mnuProfileExpand");
    item->setText(caption == QLatin1String("Expand") ? tr("&Expand") : tr("&Normal"));
    item->setToolTip(caption == QLatin1String("Expand") ? tr("Show the stretch between the two markers")
                                                        : tr("Show the whole path"));
  });
}

// ---- Life ----

void FrmProfile::open(const std::optional<Place>& place) {
  act([this, &place] {
    if (!opened_ && !firstShow(place)) return;
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
  });
}

// Everything that comes before the window is seen, so that a path that cannot be profiled shows none.
bool FrmProfile::firstShow(const std::optional<Place>& place) {
  if (!services_.shared && module_->bProfileFailed) loaded_ = module_->bProfileFailed = false;
  if (!loaded_) Form_Load();
  if (unloaded_ || module_->bProfileFailed) return false;
  if (place) {
    setGeometry(place->rectangle);
    if (place->maximised) setWindowState(Qt::WindowMaximized);
  } else if (services_.shared) {
    trapped_.run(":Form_Load:", [this] {
      if (services_.host->windowPlacement() != nullptr)
        restorePlacement(*this, kName, *services_.host->windowPlacement());
    });
  }
  if (unloaded_) return false;
  if (services_.shared) {
    const auto handle = static_cast<std::int32_t>(static_cast<std::uint32_t>(winId()));
    module_->profileWindowHandle = handle != 0 ? handle : 1;
  }
  opened_ = true;
  Form_Resize();
  if (unloaded_ || module_->bProfileFailed) {
    opened_ = false;
    return false;
  }
  picture_->setFocus(Qt::OtherFocusReason);
  return true;
}

void FrmProfile::reload() {
  act([this] {
    // Not under a drawing, whose samples it would take away.
    reloadWanted_ = state_.flags.drawing;
    if (reloadWanted_) return;
    module_->bProfileFailed = false;
    Form_Load();
    drawLine();
  });
}

FrmProfile::Place FrmProfile::place() const {
  return {isMaximised() ? normalGeometry() : geometry(), isMaximised()};
}

bool FrmProfile::isMaximised() const {
  return (windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen)) != Qt::WindowNoState;
}

bool FrmProfile::samplingChanged() {
  bool changed = false;
  procedure(":mnuProfileOptions_Click:", [&] {
    const CalculationSettings density = readCalculationSettings(settings_);
    const WindowSettings now = readWindowSettings(settings_, {true, true, contour});
    changed = density.pointsPerKm != density_.pointsPerKm || density.maxPoints != density_.maxPoints ||
              now.source != state_.inputs.source || now.calcMethod != state_.inputs.calcMethod;
  });
  return changed;
}

void FrmProfile::Form_Load() {
  const bool loaded = procedure(":Form_Load:", [this] {
    loaded_ = true;
    state_.flags.loading = true;
    if (services_.shared) {
      module_->profileWindowLoaded = true;
      // A native window that is made before the widget has its place comes up higher by its frame each time,
      // so the real handle follows in firstShow. 0 stands for no window.
      module_->profileWindowHandle = 1;
    }
    if (!services_.shared) {
      module_->optionButtonVisible = services_.module->optionButtonVisible;
      module_->datumCode = services_.module->datumCode;
      module_->datumText = services_.module->datumText;
    }
    actions_.at("mnuProfileOptions")->setVisible(module_->optionButtonVisible);
    trapped_.step(1);
    // Once: one of them may be running when a window is loaded anew.
    if (!plot_) makeProcedures();
    trapped_.step(2);
    if (services_.host->linkBudgetTool() != nullptr)
      services_.host->linkBudgetTool()->SetClientApp(services_.host->client());
    trapped_.step(3);
    version_ = services_.host->versionText();
    trapped_.step(4);
    density_ = readCalculationSettings(settings_);
  });
  if (!loaded && !unloaded_) module_->bProfileFailed = true;
  if (unloaded_ || module_->bProfileFailed) return;
  SetStartEndPointLabels();
  cmdClear_Click(0);
  cmdClear_Click(1);
  InitFromRegistry();
  if (unloaded_ || module_->bProfileFailed) return;
  act([this] { profile_->InitITM(state_); });
  SetDistanceLabels();
  DoPreCalc();
  if (unloaded_) return;
  placeInitially();
  slider_->setValue(kExaggeration);
  readouts_.show(readout::kExpandCaption, "Expand");
  state_.flags.resample = true;
  state_.flags.loading = false;
  showWhatCanBeDone();
}

void FrmProfile::makeProcedures() {
  sampler_ = services_.makeSampler();
  formatter_ = services_.makeFormatter();

  profile_ = std::make_unique<ProfileProcedures>(profileServices(), settings_);
  PlotProcedures::Services drawing = plotServices();
  drawing.prepareCanvas = [this] {
    if (picture_->fitCanvas()) plot_->forgetStrokes();
  };
  if (services_.printing != nullptr) drawing.printProfile = [this] { mnuPrint_Click(); };
  plot_ = std::make_unique<PlotProcedures>(std::move(drawing), settings_, state_);
}

ProfileProcedures::Services FrmProfile::profileServices() {
  ProfileProcedures::Services services;
  services.geodesy = services_.geodesy;
  services.sampler = sampler_.get();
  services.terrain = services_.terrain();
  services.dialogs = services_.dialogs;
  services.hardStop = services_.hardStop;
  services.errorLog = services_.errorLog;
  services.readouts = &readouts_;
  services.module = module_;
  services.trapped = &trapped_;
  services.normalTable = services_.normalTable;
  return services;
}

PlotProcedures::Services FrmProfile::plotServices() {
  PlotProcedures::Services services;
  services.canvas = &picture_->canvas();
  services.profile = profile_.get();
  services.panel = [this] { return plotPanel(); };
  services.readouts = &readouts_;
  services.pointer = services_.pointer;
  services.dialogs = services_.dialogs;
  services.geodesy = services_.geodesy;
  services.datumShift = &datumShift_;
  services.formatter = formatter_.get();
  services.module = module_;
  services.trapped = &trapped_;
  return services;
}

PlotPanel FrmProfile::plotPanel() const {
  return {panel_->tbxAnt1AGL->text().trimmed().toStdString(),
          panel_->tbxAnt2AGL->text().trimmed().toStdString(), panel_->tbxFreq->text().trimmed().toStdString(),
          static_cast<double>(slider_->value())};
}

void FrmProfile::unload() {
  if (unloaded_) return;
  const Running running(*this);
  timer1_.stop();
  timer2_.stop();
  trapped_.run(":Form_Unload:", [this] {
    if (opened_ && services_.shared && services_.host->windowPlacement() != nullptr)
      storePlacement(*this, kName, *services_.host->windowPlacement());
  });
  // Under the box of a place that could not be stored it may have been unloaded, and another window shown.
  if (unloaded_) return;
  unloaded_ = true;
  if (services_.shared) {
    module_->profileWindowLoaded = false;
    module_->profileWindowHandle = 0;
  }
  // A dialog of the window's own goes with it.
  for (std::size_t i = dialogs_.size(); i > 0; --i)
    if (!dialogs_[i - 1].isNull()) dialogs_[i - 1]->reject();
  // Closed rather than hidden, so that an application whose last window this was notices.
  close();
}

void FrmProfile::cmdExit_Click() { unload(); }

void FrmProfile::closeEvent(QCloseEvent* event) {
  event->accept();
  unload();
}

// ---- Layout ----

int FrmProfile::MenuHeight() const { return menuBar()->sizeHint().height(); }

int FrmProfile::WindowTitleHeight() const { return style()->pixelMetric(QStyle::PM_TitleBarHeight); }

// The caption is the desktop's own and no part of this widget's size.
void FrmProfile::placeInitially() {
  if (opened_) return;
  resize(kWidth, kLoadHeight + MenuHeight());
  ensurePolished();
  layout()->activate();
  layOutParts();
  panel_->resize(kPanelWidth, panel_->height());
  panel_->fitFont();
}

void FrmProfile::layOutParts() {
  const QRect room(0, 0, centralWidget()->width(), centralWidget()->height());
  const int pictureHeight = std::max(1, room.height() - kSliderRow - kPanelRoom);
  picture_->setGeometry(0, 0, room.width(), pictureHeight);

  auto* caption = centralWidget()->findChild<QLabel*>(QStringLiteral("lblZoom"), Qt::FindDirectChildrenOnly);
  const QSize captionSize = caption->sizeHint();
  const int rowTop = pictureHeight;
  caption->setGeometry(2 * kMargin, rowTop, captionSize.width(), kSliderRow);
  const int sliderLeft = caption->geometry().right() + kMargin;
  const int sliderWidth = std::clamp(room.width() / 4, 120, 320);
  slider_->setGeometry(sliderLeft, rowTop, sliderWidth, kSliderRow);
  const int clearanceLeft = sliderLeft + sliderWidth + 3 * kMargin;
  clearance_->setGeometry(clearanceLeft, rowTop, std::max(1, room.width() - clearanceLeft - kMargin),
                          kSliderRow);
  progress_->setGeometry(0, rowTop, room.width(), kSliderRow);

  const int panelHeight = std::clamp(panel_->minimumSizeHint().height(), kPanelHeight, kPanelRoom);
  panel_->setGeometry(kPanelNarrower / 2, rowTop + kSliderRow, room.width() - kPanelNarrower, panelHeight);
  panel_->fitFont();
}

void FrmProfile::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (!opened_) return;
  layout()->activate();
  Form_Resize();
}

void FrmProfile::Form_Resize() {
  procedure(":Form_Resize:", [this] {
    if (!opened_) return;
    if (state_.flags.resample) {
      layOutParts();
      panel_->tbxFreq->setText(QString::fromStdString(frequencyText(state_.inputs.frequency)));
      drawLine();
      return;
    }
    // The least size is kept by the window's minimum.
    trapped_.step(1);
    if (!isNormalOrMaximised(windowState())) return;
    layOutParts();
    trapped_.step(2);
    if (picture_->canvasFits() || state_.flags.loading) return;
    if (isMaximised()) {
      drawLine();
    } else {
      timer1_.start();
    }
  });
}

void FrmProfile::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if ((event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) && opened_) layOutParts();
}

bool FrmProfile::event(QEvent* event) {
  // A child with a font of its own is not told.
  if (event->type() == QEvent::ApplicationFontChange && opened_) layOutParts();
  if (opened_ && !unloaded_) {
    if (event->type() == QEvent::WindowDeactivate)
      leftForOwnBox_ = QApplication::activeModalWidget() != nullptr;
    // A box that this program has shown and taken away is no return to the window: a failing drawing would
    // show its box again and again.
    if (event->type() == QEvent::WindowActivate && !std::exchange(leftForOwnBox_, false)) Form_GotFocus();
  }
  return QMainWindow::event(event);
}

void FrmProfile::Form_GotFocus() {
  procedure(":Form_GotFocus:", [this] { drawLine(); });
}

// A double click that no control has taken.
void FrmProfile::mouseDoubleClickEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::LeftButton) Form_DblClick();
}

void FrmProfile::Form_DblClick() {
  act([this] {
    if (plot_) plot_->Form_DblClick();
  });
}

// ---- Menu items ----

void FrmProfile::mnuProfileLinkBudget_Click() {
  procedure(":mnuProfileLinkBudget_Click:", [this] {
    module_->linkBudgetLoss = readouts_.text(readout::kModeledLoss);
    trapped_.step(1);
    if (services_.host->linkBudgetTool() == nullptr) throw RuntimeError::objectVariableNotSet();
    services_.host->linkBudgetTool()->Open(module_->linkBudgetLoss);
  });
}

void FrmProfile::mnuProfileOptions_Click() {
  procedure(":mnuProfileOptions_Click:", [this] {
    if (services_.openOptions) services_.openOptions();
  });
}

void FrmProfile::mnuProfileExpand_Click() {
  act([this] {
    if (!plot_) return;
    plot_->mnuProfileExpand_Click();
    afterDrawing();
  });
}

}  // namespace zel
