// The link budget's window, frmLinkBudget: seven inputs, and the margin that follows every key. It is
// modeless. Escape and Close hide it; what was typed is remembered for the next time.
//
// An input that is no number or out of range has a mark beside its box, is named where the verdict stands,
// and is not remembered. There is no result then.
#pragma once

#include <QDialog>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/settings_store.h"
#include "zeltool/link_budget/link_budget_calculation.h"

class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace zel {

class LinkBudgetDialog final : public QDialog {
 public:
  explicit LinkBudgetDialog(std::shared_ptr<SettingsStore> settings);
  ~LinkBudgetDialog() override;

  // Shows the window, or brings it to the front, for the loss (dB) that the profile window shows; a text that
  // is no number leaves the path loss empty. A window that is open for the same title keeps what is typed.
  // Throws what the store throws when it cannot be read; the window is as before then.
  void openFor(const std::string& title, std::string_view modeledLossText);

  void reject() override;

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  struct Row {
    QLineEdit* box = nullptr;
    QLabel* mark = nullptr;  // "!" beside an input that is not accepted
  };

  Row& row(LinkBudgetTerm term) { return rows_[static_cast<std::size_t>(term)]; }
  const Row& row(LinkBudgetTerm term) const { return rows_[static_cast<std::size_t>(term)]; }
  void build();
  QWidget* inputGroup(const QString& caption, std::initializer_list<LinkBudgetTerm> terms);
  void addRow(QGridLayout& grid, LinkBudgetTerm term);
  void addPathLossTools(QGridLayout& grid);
  QWidget* resultGroup();
  QLabel* addResult(QGridLayout& grid, const char* name, const QString& caption, const QString& tip);
  QWidget* buttons();
  QPushButton* addButton(QWidget* parent, const char* name, const QString& text, const QString& tip,
                         void (LinkBudgetDialog::*clicked)());

  std::optional<double> value(LinkBudgetTerm term) const;
  std::optional<LinkBudgetInputs> inputs() const;  // nothing while one is not accepted
  void stayInFrontOf(const QWidget* window);
  void showInputs(const LinkBudgetInputs& inputs);
  void showModeledLoss();
  void refresh();
  void showMarks();
  void showResult(const std::optional<LinkBudgetInputs>& inputs);
  std::string firstRequirement() const;
  bool remember();  // false, and a notice, when the store refuses
  void copy();
  void restoreDefaults();

  std::shared_ptr<SettingsStore> settings_;
  std::string title_;
  std::optional<double> modeledLoss_;                               // dB
  std::array<std::optional<double>, kLinkBudgetTerms> remembered_;  // as the store has them
  std::array<Row, kLinkBudgetTerms> rows_;
  QLabel* watts_ = nullptr;
  QLabel* source_ = nullptr;
  QLabel* radiated_ = nullptr;
  QLabel* received_ = nullptr;
  QLabel* margin_ = nullptr;
  QLabel* verdict_ = nullptr;
  QLabel* notice_ = nullptr;  // why inputs could not be remembered; hidden otherwise
  QPushButton* modeled_ = nullptr;
  QPushButton* copy_ = nullptr;
};

}  // namespace zel
