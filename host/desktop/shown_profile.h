// The component's profile window as the plan's: which link it shows, and that it follows changes.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "planning/plan_document.h"

class QWidget;

namespace zel {
class ProfileControl;
}

namespace zel::host {

class ShownProfile {
 public:
  // All must outlive this.
  ShownProfile(ProfileControl& component, const PlanDocument& document, QWidget* window);
  ~ShownProfile();

  // Why the ground along the link cannot be shown, with its place; empty when it is shown. Ground that the
  // component refuses to carry never reaches it.
  std::string show(LinkId link);
  // The link that the open window shows.
  std::optional<LinkId> link() const;
  // The plan has changed: the window is closed when its link is gone, and shown anew, a moment later, when
  // something in it is different.
  void planChanged();
  void refresh();  // settings have changed: shown anew a moment later
  void close();

  // Whether terrain can be read without a long wait; while it cannot, what is open is not shown anew.
  std::function<bool()> mayShow;
  std::function<void()> onShowing;                    // the component is about to show the window
  std::function<void(const std::string&)> onProblem;  // the window was closed, since the ground is refused

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel::host
