// Reads a list of stations in a thread of its own, with a window that shows how far it is and can cancel.
#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "import/station_list.h"

class QWidget;

namespace zel::host {

class ImportJob {
 public:
  // `done` comes on the user-interface thread, unless it was cancelled.
  ImportJob(const std::string& path, QWidget* parent, std::function<void(const ImportedStations&)> done,
            std::function<void()> cancelled);
  ~ImportJob();  // cancels, and waits for the thread
  ImportJob(const ImportJob&) = delete;
  ImportJob& operator=(const ImportJob&) = delete;

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel::host
