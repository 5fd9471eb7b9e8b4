#include "ui/profile_window/window_placement.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <algorithm>
#include <cstdint>
#include <limits>

namespace zel {
namespace {

// Of the window's top edge, so that it can be taken hold of.
constexpr int kGrip = 48;  // logical pixels

bool canBeGrabbed(QRect window) {
  const QRect top(window.left(), window.top(), window.width(), kGrip);
  const auto screens = QGuiApplication::screens();
  return std::any_of(screens.begin(), screens.end(), [&top](const QScreen* screen) {
    const QRect shown = screen->availableGeometry().intersected(top);
    return shown.width() >= kGrip && shown.height() >= kGrip / 2;
  });
}

QPoint broughtBack(QRect window) {
  const QScreen* screen = QGuiApplication::screenAt(window.center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return window.topLeft();
  const QRect room = screen->availableGeometry();
  return {std::max(room.left(), std::min(window.left(), room.right() + 1 - window.width())),
          std::max(room.top(), std::min(window.top(), room.bottom() + 1 - window.height()))};
}

}  // namespace

void restorePlacement(QWidget& window, std::string_view name, WindowPlacement& placement) {
  constexpr std::int32_t kNone = std::numeric_limits<std::int32_t>::min();
  std::int32_t left = kNone;
  std::int32_t top = kNone;
  placement.Restore(name, left, top);
  if (left == kNone || top == kNone) return;
  const QRect wanted(QPoint(left, top), window.size());
  window.move(canBeGrabbed(wanted) ? wanted.topLeft() : broughtBack(wanted));
}

void storePlacement(const QWidget& window, std::string_view name, WindowPlacement& placement) {
  QPoint at = window.pos();
  // It comes up in its normal state: where it was before, its frame included.
  if (window.isMaximized() || window.isFullScreen())
    at = window.normalGeometry().topLeft() - (window.geometry().topLeft() - at);
  std::int32_t left = at.x();
  std::int32_t top = at.y();
  placement.Store(name, left, top);
}

}  // namespace zel
