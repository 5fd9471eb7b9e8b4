// The preview of the printed page, "Print Preview": the page on the screen, with the paper, the orientation
// and the description to choose, and the ways to paper and into a PDF file.
//
// The page is made anew at every choice and at every key in the description, not when it is painted. What
// makes and prints it is the window's; a failure of either has been told by then.
//
// Its size is kept for the process.
#pragma once

#include <QDialog>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "canvas/qt/printed_page.h"
#include "platform/print_service.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace zel {

class PageView;

struct PreviewedPage {
  std::unique_ptr<PrintedPage> page;
  bool descriptionCut = false;  // it had no room and ends in an ellipsis
};

class PrintPreview final : public QDialog {
 public:
  struct Services {
    // Nothing when it failed, or when there is no profile.
    std::function<std::optional<PreviewedPage>(const PaperFormat&, const std::string& description)> makePage;
    // What there is to choose from, never empty.
    std::function<std::vector<PaperFormat>(PageOrientation)> papers;
    // By the printer dialog, which begins with them; whether it was printed.
    std::function<bool(const PaperFormat&, PageOrientation, const std::string& description)> print;
    // Asks for the file; its path, empty when nothing was written.
    std::function<std::string(const PaperFormat&, const std::string& description)> savePdf;
  };
  struct Start {
    PageOrientation orientation = PageOrientation::kPortrait;
    std::size_t paper = 0;  // of the papers
    std::string description;
  };

  PrintPreview(Services services, const Start& start, QWidget* parent = nullptr);

  // Not shown at all when there is no page to be seen.
  int exec() override;
  void done(int result) override;

  PageView& view() { return *view_; }

 private:
  void makeControls(const Start& start);
  void layOutControls();
  void connectControls();
  PageOrientation orientation() const;
  std::string description() const;
  PaperFormat paper() const;
  void fillPapers(std::size_t chosen);
  bool showPage();
  void showZoom();
  void showStatus(const QString& what, const QString& tip = {});
  void cmdPrint_Click();
  void cmdSavePdf_Click();

  Services services_;
  std::vector<PaperFormat> papers_;  // in the chosen orientation
  bool descriptionCut_ = false;

  PageView* view_;
  QLineEdit* txtDescription_;
  QComboBox* cboPaper_;
  QComboBox* cboOrientation_;
  QPushButton* cmdZoomOut_;
  QPushButton* cmdZoomIn_;
  QPushButton* cmdActualSize_;
  QPushButton* cmdFit_;
  QLabel* lblZoomValue_;
  QLabel* lblStatus_;
  QPushButton* cmdPrint_;
  QPushButton* cmdSavePdf_;
  QPushButton* cmdClose_;
};

}  // namespace zel
