// The outlines of a source's rasters on a small map, and the rasters that cannot be used, with why.
#pragma once

#include <QWidget>
#include <string>

#include "preferences/coverage_search.h"

class QCheckBox;
class QLabel;
class QListWidget;

namespace zel::host {

class CoverageView : public QWidget {
 public:
  explicit CoverageView(QWidget* parent);
  ~CoverageView() override;

  // Looks the source up as it is stored; an edit that is not stored yet is said to be missing.
  void showSource(int code);
  void setUnstoredEdits(bool unstored);

 private:
  class Canvas;
  void showCoverage(const Coverage& coverage);
  void tell();

  Canvas* canvas_ = nullptr;
  QLabel* words_ = nullptr;
  QCheckBox* world_ = nullptr;
  QLabel* problemsLabel_ = nullptr;
  QListWidget* problems_ = nullptr;
  bool unstored_ = false, looking_ = false;
  QString failure_;
  CoverageSearch search_;
};

}  // namespace zel::host
