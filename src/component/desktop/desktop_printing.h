// Printers and their dialog, as the desktop has them.
//
// Copies begin at 1 each time, and what else a printer can do stays as the system has it set. Without a
// QApplication, and away from its thread, the dialog counts as cancelled.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/print_service.h"

class QPrinter;

namespace zel {

class DesktopPrinting final : public PrintService {
 public:
  std::optional<PrintRequest> choose(PageOrientation orientation,
                                     const std::optional<PaperFormat>& paper) override;
  PrintRequest request(const std::string& printer, int copies, PageOrientation orientation) override;
  PaperFormat paper(PageOrientation orientation) override;
  void print(const PrintRequest& request, const PrintedPage& page, const PrintedDocument& document) override;

 private:
  std::unique_ptr<QPrinter> startingPrinter(PageOrientation orientation) const;
  const PrintRequest* chosenPrinter() const;

  std::optional<PrintRequest> chosen_;  // in the dialog, last
};

// What a printer that is set up in the dialog is to do.
PrintRequest requestOf(const QPrinter& printer);

// Prints on a printer that is there, in its own resolution: the page's twips are twips of the paper, whose
// corner is the page's. Throws RuntimeError PrintService::kPrinterFailed.
void printOn(QPrinter& printer, const PrintRequest& request, const PrintedPage& page,
             const PrintedDocument& document);

// Why the print system did not take a job, by the status of its last answer (RFC 8011) and its own words,
// which may be null; empty when it did take it.
std::string refusalIn(int status, const char* text);

}  // namespace zel
