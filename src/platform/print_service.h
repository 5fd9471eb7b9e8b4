// Printers and their dialog.
#pragma once

#include <optional>
#include <string>

#include "platform/paper.h"

namespace zel {

class PrintedPage;  // canvas/qt/printed_page.h

// What was chosen in the printer dialog.
struct PrintRequest {
  std::string printer;  // its name; empty when the page goes into a file
  std::string file;     // of a PDF; empty when the page goes to a printer
  int copies = 1;       // to PrintService::kMostCopies
  PaperFormat paper;    // as the page lies
};

// What a document says of itself.
struct PrintedDocument {
  std::string title;
  std::string creator;  // the program's name and version
};

// Failures are RuntimeErrors: 61, 70, 75, 76 as files have them, and those that are named here.
class PrintService {
 public:
  static constexpr int kMostCopies = 999;     // the printer dialog's own limit
  static constexpr int kInvalidCall = 5;      // no such number of copies
  static constexpr int kNoSuchPrinter = 482;  // also: no printer, and no file either
  static constexpr int kPrinterFailed = 483;

  virtual ~PrintService() = default;

  // The printer dialog: printer or PDF file, copies, orientation, paper. Printer and file begin as they were
  // last chosen in this process, and so does the paper unless one is passed that the printer has. Nothing
  // when the user cancels. Handles events.
  virtual std::optional<PrintRequest> choose(PageOrientation orientation,
                                             const std::optional<PaperFormat>& paper) = 0;

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
