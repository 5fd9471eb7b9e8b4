// The error log "zelErrorLog.txt" in the host application's folder.
#pragma once

#include <functional>
#include <string>

#include "platform/dialogs.h"
#include "platform/process_services.h"

namespace zel {

class ErrorLog {
 public:
  // `folder` gives the host application's Path each time an entry is written; it may throw.
  ErrorLog(std::function<std::string()> folder, Clock& clock, Dialogs& dialogs);

  // Appends one entry: "mm/dd/yy hh:mm:ss ", the message, CR LF. The file is opened and closed for the entry.
  // A failure shows the box "Unable to write to Error Log!" and is not passed on.
  void write(const std::string& message) noexcept;

 private:
  std::function<std::string()> folder_;
  Clock& clock_;
  Dialogs& dialogs_;
};

}  // namespace zel
