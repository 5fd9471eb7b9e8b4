// The line over the map while only the bundled sample terrain is there: how to add more.
#pragma once

#include <QFrame>
#include <functional>

class QLabel;

namespace zel::host {

class SampleNotice final : public QFrame {
 public:
  explicit SampleNotice(QWidget* parent = nullptr);

  std::function<void()> onPreferences, onGuide, onDismissed;

 protected:
  void resizeEvent(QResizeEvent* event) override;
};

}  // namespace zel::host
