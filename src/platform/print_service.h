// Printers and their dialog.
//
// Lengths are twips, 1/1440 inch.
#pragma once

#include <optional>
#include <string>

namespace zel {

class PrintedPage;  // canvas/qt/printed_page.h

// The classic numbers.
enum class PageOrientation { kPortrait = 1, kLandscape = 2 };

// What a printer cannot print on, at each side of the page.
struct PaperMargins {
  double left = 0, top = 0, right = 0, bottom = 0;
};

// A sheet as it lies before the reader: wider than high in landscape.
struct PaperFormat {
  std::string name = "A4";
  double width = 11906;
  double height = 16838;
  PaperMargins margins;
};

// What was chosen in the printer dialog.
struct PrintRequest {
  std::string printer;  // its name; empty when the page goes into a file
  std::string file;     // of a PDF; empty when the page goes to a printer
  int copies = 1;       // 1 or more
  PageOrientation orientation = PageOrientation::kPortrait;
  PaperFormat paper;
};

// What a document says of itself.
struct PrintedDocument {
  std::string title;
  std::string creator;  // the program's name and version
};

// Failures are RuntimeErrors: 61, 70, 75, 76 as files have them, kNoSuchPrinter, kPrinterFailed.
class PrintService {
 public:
  static constexpr int kNoSuchPrinter = 482;  // also: no printer, and no file either
  static constexpr int kPrinterFailed = 483;

  virtual ~PrintService() = default;

  // The printer dialog: printer or PDF file, copies, orientation, paper. Printer, file and paper begin as
  // they were last chosen in this process. Nothing when the user cancels. Handles events.
  virtual std::optional<PrintRequest> choose(PageOrientation orientation) = 0;

  // The same without the dialog. `printer` is the name of one, a path that ends in ".pdf", or empty: the one
  // that was chosen last, else the system's default.
  virtual PrintRequest request(const std::string& printer, int copies, PageOrientation orientation) = 0;

  // The paper that the dialog would begin with. Without any printer that of the user's locale.
  virtual PaperFormat paper(PageOrientation orientation) = 0;

  // Prints the page so many times. A PDF has a page for each copy; it is on the disk whole or not at all.
  virtual void print(const PrintRequest& request, const PrintedPage& page,
                     const PrintedDocument& document) = 0;
};

}  // namespace zel
