// Makes a report into a file, with a window that shows how far it is and can cancel.
#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "report/report_job.h"

class QWidget;

namespace zel::host {

class ReportSaver {
 public:
  // `ended` comes once, between events: with why there is no file (empty when there is one) and what was
  // made. Cancelled, there is no file and no reason. It may end this object. What stood in the file stays
  // until the report is complete.
  using Ended = std::function<void(const QString& problem, const Report& report)>;
  ReportSaver(ReportRequest request, const QString& path, QWidget* parent, Ended ended);
  ~ReportSaver();
  ReportSaver(const ReportSaver&) = delete;
  ReportSaver& operator=(const ReportSaver&) = delete;

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel::host
