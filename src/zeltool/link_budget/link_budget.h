// The link budget of a modeled loss: one window for the process's tool, made when it is first asked for.
#pragma once

#include <QPointer>
#include <functional>
#include <memory>
#include <string>

#include "platform/host_tools.h"
#include "platform/settings_store.h"

namespace zel {

class LinkBudgetDialog;

// The window lives as long as the tool, but never longer than the QApplication that it was made under.
class LinkBudget final : public LinkBudgetTool {
 public:
  // `canShowWidgets` says, at each Open, whether there is a desktop to show a window on.
  LinkBudget(std::shared_ptr<SettingsStore> settings, std::function<bool()> canShowWidgets);
  LinkBudget(const LinkBudget&) = delete;
  LinkBudget& operator=(const LinkBudget&) = delete;
  ~LinkBudget() override;

  void SetClientApp(const DispatchPtr& client) override { client_ = client; }
  // Keeps the loss text (dB) and shows it in the window. Throws RuntimeError 445 without a desktop, what
  // clientTitle throws, and what the store throws when it cannot be read.
  void Open(std::string_view modeledLossText) override;

  const DispatchPtr& client() const { return client_; }
  // Of the last Open; empty before.
  const std::string& modeledLossText() const { return modeledLossText_; }
  // The window; null before the first Open and after the end of the QApplication.
  LinkBudgetDialog* dialog() const;

 private:
  std::shared_ptr<SettingsStore> settings_;
  std::function<bool()> canShowWidgets_;
  DispatchPtr client_;
  std::string modeledLossText_;
  QPointer<LinkBudgetDialog> dialog_;
};

}  // namespace zel
