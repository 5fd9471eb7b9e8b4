#include "desktop/notice_line.h"

#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIconEngine>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QToolButton>
#include <utility>

namespace zel::host {
namespace {

class CrossEngine final : public QIconEngine {
 public:
  explicit CrossEngine(QPalette::ColorRole role) : role_(role) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    constexpr double kArm = 0.28, kWidth = 0.1;  // of the icon's side
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const double side = std::min(rect.width(), rect.height());
    const QPointF middle = QRectF(rect).center(), down(kArm * side, kArm * side), up(down.x(), -down.y());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(QGuiApplication::palette().color(group, role_), kWidth * side));
    painter->drawLine(middle - down, middle + down);
    painter->drawLine(middle - up, middle + up);
    painter->restore();
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }
  QIconEngine* clone() const override { return new CrossEngine(*this); }

 private:
  QPalette::ColorRole role_;
};

}  // namespace

QIcon crossIcon(QPalette::ColorRole role) { return QIcon(new CrossEngine(role)); }

NoticeLine::NoticeLine(const QString& name, const QString& accessibleName, const QString& text,
                       const std::vector<NoticeButton>& buttons, QWidget* parent)
    : QFrame(parent) {
  setObjectName(name);
  setAccessibleName(accessibleName);
  setFrameShape(QFrame::StyledPanel);
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::ToolTipBase);
  auto* label = new QLabel(text, this);
  label->setObjectName(name + QStringLiteral("Text"));
  label->setForegroundRole(QPalette::ToolTipText);
  label->setWordWrap(true);
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  label->setSizePolicy(policy);

  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(8, 4, 4, 4);
  layout->addWidget(label, 1);
  for (const NoticeButton& each : buttons) {
    auto* button = new QPushButton(each.text, this);
    button->setObjectName(each.name);
    button->setToolTip(each.tip);
    connect(button, &QPushButton::clicked, this, [action = each.action] { action(); });
    layout->addWidget(button);
  }
  auto* dismiss = new QToolButton(this);
  dismiss->setObjectName(name + QStringLiteral("Dismiss"));
  dismiss->setAccessibleName(QStringLiteral("Dismiss"));
  dismiss->setToolTip(QStringLiteral("Hide this line until the next start"));
  dismiss->setIcon(crossIcon(QPalette::ToolTipText));
  dismiss->setAutoRaise(true);
  dismiss->setFocusPolicy(Qt::StrongFocus);
  layout->addWidget(dismiss);
  connect(dismiss, &QToolButton::clicked, this, [this] {
    dismissed_ = true;
    hide();
  });
}

bool NoticeLine::event(QEvent* event) {
  const bool handled = QFrame::event(event);
  if (event->type() == QEvent::LayoutRequest) fitHeight();  // another font
  return handled;
}

void NoticeLine::resizeEvent(QResizeEvent* event) {
  QFrame::resizeEvent(event);
  fitHeight();
}

// Wrapped words are never cut, however narrow and low the window is.
void NoticeLine::fitHeight() {
  if (!layout()->hasHeightForWidth()) return;
  const int needed = layout()->totalHeightForWidth(width());
  if (needed != minimumHeight()) setFixedHeight(needed);
}

NoticeLine* makeSampleNotice(std::function<void()> preferences, std::function<void()> guide,
                             QWidget* parent) {
  return new NoticeLine(
      QStringLiteral("sampleNotice"), QStringLiteral("Sample terrain"),
      QStringLiteral("This is sample terrain of one small area. Add your own in Preferences, Terrain; where "
                     "free data comes from is in the guide."),
      {{QStringLiteral("sampleNoticePreferences"), QStringLiteral("A&dd Terrain..."),
        QStringLiteral("Open the preferences at the terrain sources"), std::move(preferences)},
       {QStringLiteral("sampleNoticeGuide"), QStringLiteral("&Guide"),
        QStringLiteral("Open the guide where it tells of free terrain data"), std::move(guide)}},
      parent);
}

NoticeLine* makeEmptyViewNotice(std::function<void()> fitTerrain, QWidget* parent) {
  return new NoticeLine(QStringLiteral("emptyViewNotice"), QStringLiteral("No terrain in view"),
                        QStringLiteral("None of the terrain is in view."),
                        {{QStringLiteral("emptyViewNoticeFit"), QStringLiteral("F&it Terrain"),
                          QStringLiteral("Show all terrain of the source"), std::move(fitTerrain)}},
                        parent);
}

}  // namespace zel::host
