#include "desktop/sample_notice.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

namespace zel::host {

// Wrapped words are never cut, however narrow and low the window is.
void SampleNotice::resizeEvent(QResizeEvent* event) {
  QFrame::resizeEvent(event);
  if (!layout()->hasHeightForWidth()) return;
  const int needed = layout()->totalHeightForWidth(width());
  if (needed != minimumHeight()) setFixedHeight(needed);
}

SampleNotice::SampleNotice(QWidget* parent) : QFrame(parent) {
  setObjectName(QStringLiteral("sampleNotice"));
  setAccessibleName(QStringLiteral("Sample terrain"));
  setFrameShape(QFrame::StyledPanel);
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::ToolTipBase);
  auto* label = new QLabel(
      QStringLiteral("This is sample terrain of one small area. Add your own in Preferences, Terrain; where "
                     "free data comes from is in the guide."),
      this);
  label->setObjectName(QStringLiteral("sampleNoticeText"));
  label->setForegroundRole(QPalette::ToolTipText);
  label->setWordWrap(true);
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  label->setSizePolicy(policy);

  auto* preferences = new QPushButton(QStringLiteral("A&dd Terrain..."), this);
  preferences->setObjectName(QStringLiteral("sampleNoticePreferences"));
  preferences->setToolTip(QStringLiteral("Open the preferences at the terrain sources"));
  auto* guide = new QPushButton(QStringLiteral("&Guide"), this);
  guide->setObjectName(QStringLiteral("sampleNoticeGuide"));
  guide->setToolTip(QStringLiteral("Open the guide where it tells of free terrain data"));
  auto* dismiss = new QToolButton(this);
  dismiss->setObjectName(QStringLiteral("sampleNoticeDismiss"));
  dismiss->setAccessibleName(QStringLiteral("Dismiss"));
  dismiss->setToolTip(QStringLiteral("Hide this line until the next start"));
  dismiss->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
  dismiss->setAutoRaise(true);
  dismiss->setFocusPolicy(Qt::StrongFocus);

  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(8, 4, 4, 4);
  layout->addWidget(label, 1);
  layout->addWidget(preferences);
  layout->addWidget(guide);
  layout->addWidget(dismiss);
  connect(preferences, &QPushButton::clicked, this, [this] {
    if (onPreferences) onPreferences();
  });
  connect(guide, &QPushButton::clicked, this, [this] {
    if (onGuide) onGuide();
  });
  connect(dismiss, &QToolButton::clicked, this, [this] {
    hide();
    if (onDismissed) onDismissed();
  });
}

}  // namespace zel::host
