// A profile window that exports: answers for its dialogs, and something that happens in the midst of a long
// export, when it handles the events of a sample.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "component/desktop/user_numbers.h"
#include "export/export_procedures.h"
#include "plot_probe.h"
#include "ui/profile_window/progress_row.h"

namespace zel::test {

class ExportingTest : public PlotWindowTest {
 protected:
  // Answers the boxes with 2 kW, 3 dB and 4 dB, and takes what else is offered.
  void answerSignalBoxes() {
    dialogs_->onInput = [this](const InputBoxRequest& request) {
      dialogs_->inputAnswer.reset();
      if (request.prompt.find("power") != std::string::npos) dialogs_->inputAnswer = "2";
      if (request.prompt.find("Longley-Rice") != std::string::npos) dialogs_->inputAnswer = "3";
      if (request.prompt.find("Point-to-Point") != std::string::npos) dialogs_->inputAnswer = "4";
    };
  }
  std::string save(const std::string& name) {
    dialogs_->savePath = (folder_ / name).string();
    return *dialogs_->savePath;
  }
  std::string bytes(const std::string& name) const { return fileBytes(folder_ / name); }
  // Of files that an export has written; settings and log stand there as well.
  std::vector<std::string> exported() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
      if (entry.is_regular_file() && entry.path().filename() != "zelErrorLog.txt")
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }
  std::vector<std::string> boxes() const {
    std::vector<std::string> texts;
    for (const MessageBoxRequest& message : dialogs_->messages) texts.push_back(message.text);
    return texts;
  }

  // Runs the body once, when the events of the sample so many are handled.
  void atSample(int sample, std::function<void()> body) {
    auto* timer = new QTimer(qApp);
    timer->callOnTimeout([this, timer, sample, body = std::move(body), seen = 0]() mutable {
      if (!isExporting()) return;
      if (++seen < sample) return;
      timer->stop();
      timer->deleteLater();
      reached_ = true;
      body();
    });
    timer->start(0);
  }
  // Since the last atSample.
  bool reached() { return std::exchange(reached_, false); }
  bool isExporting() const { return window() != nullptr && !control<ProgressRow>("progressRow").isHidden(); }

  // The component's exports of the window's state, without the window.
  ExportProcedures plainExports(TrappedModule& trapped, EventLoop& events, Dialogs& dialogs) {
    ExportProcedures::Services services;
    services.geodesy = &component_.geodesy();
    services.dialogs = &dialogs;
    services.pointer = &component_.pointer();
    services.eventLoop = &events;
    services.module = &component_.state();
    services.trapped = &trapped;
    services.normalTable = &component_.normalTable();
    services.host = &component_.host();
    services.errorLog = &component_.log();
    services.numbers = userNumberStyle();
    return {std::move(services), component_.settingsReader(), state()};
  }

 private:
  bool reached_ = false;
};

}  // namespace zel::test
