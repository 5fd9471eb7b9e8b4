// A line over the map that says something of the terrain, with buttons for what can be done about it.
#pragma once

#include <QFrame>
#include <QIcon>
#include <QPalette>
#include <functional>
#include <vector>

namespace zel::host {

struct NoticeButton {
  QString name;  // object name
  QString text, tip;
  std::function<void()> action;
};

class NoticeLine final : public QFrame {
 public:
  // Object names: `name`, and that with "Text" and "Dismiss" behind it for what is in the line.
  NoticeLine(const QString& name, const QString& accessibleName, const QString& text,
             const std::vector<NoticeButton>& buttons, QWidget* parent = nullptr);

  // Hidden by its cross, it stays so until the next start.
  bool dismissed() const { return dismissed_; }

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void fitHeight();

  bool dismissed_ = false;
};

// A cross in the palette's colour for texts of that role; those of the toolkit are dark on dark ground, too.
QIcon crossIcon(QPalette::ColorRole role);

// While only the bundled sample terrain is there: how to add more.
NoticeLine* makeSampleNotice(std::function<void()> preferences, std::function<void()> guide, QWidget* parent);
// None of the terrain is in view.
NoticeLine* makeEmptyViewNotice(std::function<void()> fitTerrain, QWidget* parent);

}  // namespace zel::host
