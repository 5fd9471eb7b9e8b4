#include "zeltool/link_budget/link_budget.h"

#include <QCoreApplication>
#include <algorithm>
#include <utility>
#include <vector>

#include "foundation/runtime_error.h"
#include "zeltool/host_tools/client_title.h"
#include "zeltool/link_budget/link_budget_dialog.h"

namespace zel {
namespace {

// The windows that exist. A widget that outlives its QApplication brings the process down when it is deleted,
// and hosts end theirs when they like; so the windows go at the start of that end.
std::vector<LinkBudgetDialog*>& windows() {
  // Never destroyed: a tool that lives to the end of the process may still ask for it.
  static auto* const list = new std::vector<LinkBudgetDialog*>;
  return *list;
}

void deleteWindows() {
  for (const LinkBudgetDialog* window : std::exchange(windows(), {})) delete window;
}

LinkBudgetDialog* makeWindow(const std::shared_ptr<SettingsStore>& settings) {
  if (windows().empty()) qAddPostRoutine(deleteWindows);
  windows().push_back(new LinkBudgetDialog(settings));
  return windows().back();
}

void deleteWindow(LinkBudgetDialog* window) {
  if (window == nullptr) return;
  windows().erase(std::remove(windows().begin(), windows().end(), window), windows().end());
  // The routine must not outlive a library that is unloaded.
  if (windows().empty()) qRemovePostRoutine(deleteWindows);
  delete window;
}

}  // namespace

LinkBudget::LinkBudget(std::shared_ptr<SettingsStore> settings, std::function<bool()> canShowWidgets)
    : settings_(std::move(settings)), canShowWidgets_(std::move(canShowWidgets)) {}

LinkBudget::~LinkBudget() { deleteWindow(dialog_.data()); }

LinkBudgetDialog* LinkBudget::dialog() const { return dialog_.data(); }

void LinkBudget::Open(std::string_view modeledLossText) {
  modeledLossText_ = modeledLossText;
  if (!canShowWidgets_ || !canShowWidgets_()) throw RuntimeError::actionNotSupported();
  const std::string title = clientTitle(client_);
  if (dialog_.isNull()) dialog_ = makeWindow(settings_);
  dialog_->openFor(title, modeledLossText_);
}

}  // namespace zel
