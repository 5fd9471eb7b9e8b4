// Asks what a report is to have: which links, on which paper.
#pragma once

#include <QDialog>
#include <cstddef>

#include "report/page_layout.h"

class QComboBox;
class QRadioButton;

namespace zel::host {

class ReportDialog final : public QDialog {
 public:
  // `chosen` links of `all`; without any there is no choice. What was asked for last is chosen again.
  ReportDialog(std::size_t all, std::size_t chosen, QWidget* parent = nullptr);

  bool onlyChosen() const;
  Sheet sheet() const;

  void accept() override;

 private:
  QRadioButton* all_;
  QRadioButton* chosen_;
  QComboBox* paper_;
  QComboBox* orientation_;
};

}  // namespace zel::host
