#include "desktop/shown_profile.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <exception>

#include "analysis/link_computation.h"
#include "desktop/shown_values.h"
#include "zel/plot_image.h"
#include "zel/profile_control.h"

namespace zel::host {

// A link with all that the window was shown of it.
struct ShownPath {
  Station from, to;
  std::optional<double> frequencyMhz;
  PlanDatum datum = PlanDatum::kNad83;

  friend bool operator==(const ShownPath&, const ShownPath&) = default;
};

namespace {

constexpr int kCalmMs = 250;  // without another change, before the window is made anew

std::optional<ShownPath> pathOf(const Plan& plan, LinkId id) {
  const auto link = plan.links.find(id);
  if (link == plan.links.end()) return std::nullopt;
  const auto from = plan.stations.find(link->second.from);
  const auto to = plan.stations.find(link->second.to);
  if (from == plan.stations.end() || to == plan.stations.end()) return std::nullopt;
  return ShownPath{from->second, to->second, link->second.frequencyMhz, plan.datum};
}

StationProfile_Type stationOf(const Station& station) {
  return {station.position.latitude, station.position.longitude, static_cast<float>(station.antennaM)};
}

// The component takes the frequency of the settings; a link's own is typed into the window's box, as its user
// would.
void typeFrequency(ProfileControl& component, double frequencyMhz) {
  const auto handle = static_cast<std::uint32_t>(component.get_hWnd());
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (!window->isVisible() || static_cast<std::uint32_t>(window->winId()) != handle) continue;
    auto* box = window->findChild<QLineEdit*>(QStringLiteral("tbxFreq"));
    if (box == nullptr) continue;
    box->setText(plainNumber(frequencyMhz, 6));
    Q_EMIT box->textEdited(box->text());
    Q_EMIT box->editingFinished();
    return;
  }
}

}  // namespace

struct ShownProfile::Self {
  Self(ProfileControl& theComponent, const PlanDocument& theDocument, QWidget* theWindow)
      : component(theComponent), document(theDocument), window(theWindow) {}

  ProfileControl& component;
  const PlanDocument& document;
  QWidget* window;
  std::optional<LinkId> link;
  ShownPath path;      // as it is shown
  bool stale = false;  // a setting is different from what it was when it was shown
  QTimer calm;
  QElapsedTimer sinceKept;  // since a window that the user did not ask for was shown
  std::function<void(const std::string&)>* onProblem = nullptr;
  std::function<void()>* onShowing = nullptr;
  std::function<bool()>* mayShow = nullptr;

  // The desktop gives the keyboard to the new window a moment later, away from the map that is worked on.
  void focusMoved(const QWindow* focus) {
    constexpr int kSettledMs = 1000;
    if (focus == nullptr || focus == window->windowHandle()) return;
    if (!sinceKept.isValid() || sinceKept.elapsed() > kSettledMs) return;
    sinceKept.invalidate();
    window->activateWindow();
  }

  bool open() const { return link && component.get_PFrmLoaded(); }

  std::string show(LinkId id, bool keepFocus) {
    const auto wanted = pathOf(document.plan(), id);
    if (!wanted) return "the link is not in the plan";
    calm.stop();
    stale = false;
    if (std::string problem = antennaProblem(wanted->from, wanted->to); !problem.empty()) return problem;
    try {
      PlotImageRequest request;
      request.from = wanted->from.position;
      request.to = wanted->to.position;
      request.fromHeight = wanted->from.antennaM;
      request.toHeight = wanted->to.antennaM;
      request.frequencyMhz = wanted->frequencyMhz;
      const PlotImage checked = checkPlotPath(request);
      if (checked.status != 0) return checked.error;
    } catch (const std::exception& error) {
      return error.what();
    }
    if (*onShowing) (*onShowing)();
    if (keepFocus) sinceKept.start();
    component.ShowMainForm(stationOf(wanted->from), stationOf(wanted->to));
    if (!component.get_PFrmLoaded()) {
      link.reset();
      return "the profile cannot be shown";
    }
    link = id;
    path = *wanted;
    if (path.frequencyMhz) typeFrequency(component, *path.frequencyMhz);
    if (keepFocus) window->activateWindow();
    return {};
  }

  void showAnew() {
    if (!open()) return;
    if (*mayShow && !(*mayShow)()) {
      calm.start();
      return;
    }
    const std::string problem = show(*link, window->isActiveWindow());
    if (problem.empty()) return;
    // What is open would read the ground anew at its next drawing, and the ground is refused.
    link.reset();
    component.UnloadMainForm();
    if (*onProblem) (*onProblem)(problem);
  }
};

ShownProfile::ShownProfile(ProfileControl& component, const PlanDocument& document, QWidget* window)
    : self_(std::make_unique<Self>(component, document, window)) {
  self_->onProblem = &onProblem;
  self_->onShowing = &onShowing;
  self_->mayShow = &mayShow;
  QObject::connect(qApp, &QGuiApplication::focusWindowChanged, &self_->calm,
                   [this](const QWindow* focus) { self_->focusMoved(focus); });
  self_->calm.setSingleShot(true);
  self_->calm.setInterval(kCalmMs);
  QObject::connect(&self_->calm, &QTimer::timeout, &self_->calm, [this] { self_->showAnew(); });
}

ShownProfile::~ShownProfile() = default;

std::string ShownProfile::show(LinkId link) { return self_->show(link, false); }

std::optional<LinkId> ShownProfile::link() const { return self_->open() ? self_->link : std::nullopt; }

void ShownProfile::planChanged() {
  if (!self_->open()) return;
  const auto now = pathOf(self_->document.plan(), *self_->link);
  if (!now) {
    close();
  } else if (*now != self_->path) {
    self_->calm.start();
  } else if (!self_->stale) {
    self_->calm.stop();  // changed and changed back
  }
}

void ShownProfile::refresh() {
  if (!self_->open()) return;
  self_->stale = true;
  self_->calm.start();
}

void ShownProfile::close() {
  self_->calm.stop();
  self_->link.reset();
  self_->component.UnloadMainForm();
}

}  // namespace zel::host
