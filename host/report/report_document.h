// The report as a PDF that grows page by page: vectors, embedded fonts, texts that can be searched.
#pragma once

#include <QString>
#include <memory>

#include "report/page_layout.h"
#include "report/page_text.h"

class QIODevice;

namespace zel::host {

class ReportDocument {
 public:
  // Pages go to the device as they are done. It must outlive this.
  ReportDocument(QIODevice& device, const Sheet& sheet, const QString& title, const QString& creator);
  ~ReportDocument();

  // Why there is none, or none that is whole; empty so far as all is well.
  QString problem() const;
  // The page that is drawn on.
  PageText& page();
  void nextPage();
  // The end of the file is written, down to the system. False when the device or the toolkit failed on the
  // way.
  bool finish();

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel::host
