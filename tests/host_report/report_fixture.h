// Reports over the bundled terrain, with settings of their own.
#pragma once

#include <gtest/gtest.h>

#include <QBuffer>
#include <QGuiApplication>
#include <QTest>
#include <memory>
#include <string>

#include "report/link_page.h"
#include "report/report_job.h"
#include "support/environment_variable.h"
#include "support/offscreen.h"
#include "support/temporary_folder.h"
#include "zel/profile_control.h"
#include "zel/terrain_map.h"

namespace zel::host {

class ReportTest : public test::OffscreenTest<QGuiApplication> {
 protected:
  void SetUp() override {
    OffscreenTest::SetUp();
    static int run = 0;
    component_.SetClientApp(
        makePropertyBag({{"Title", "Report " + std::to_string(++run)}, {"Path", folder_.path().string()}}));
    component_.let_StaDatum(1);
    plan_.stations[1] = {"North ridge", {36.40, -84.35}, 30};
    plan_.stations[2] = {"South hill", {36.22, -84.12}, 30};
    plan_.stations[3] = {"Far post", {36.30, -84.04}, 30};
    plan_.links[1] = {1, 2, std::nullopt};
  }

  ReportRequest request(const Sheet& sheet = kSheetA4) {
    ReportRequest request;
    request.plan = plan_;
    for (const auto& entry : plan_.links) request.links.push_back(entry.first);
    request.planName = "Valley network";
    request.sheet = sheet;
    request.terrain = TerrainMap::open(3);
    request.date = "2026-11-21 20:40";
    request.program = "Terrain Profiler 9.8.7";
    return request;
  }

  struct Made {
    Report report;
    std::string bytes;
  };
  static Made make(ReportRequest request, const std::function<void(ReportJob&)>& prepare = {}) {
    constexpr int kPatience = 60'000;  // ms; a machine may be busy
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    Made made;
    {
      ReportJob job(std::move(request), buffer);
      bool ended = false;
      job.onEnd = [&] { ended = true; };
      if (prepare) prepare(job);
      job.start();
      EXPECT_TRUE(QTest::qWaitFor([&] { return ended; }, kPatience));
      made.report = job.report();
    }
    made.bytes = bytes.toStdString();
    return made;
  }

  test::TemporaryFolder folder_;
  test::EnvironmentVariable config_{"XDG_CONFIG_HOME", (folder_ / "config").string()};
  ProfileControl component_;
  Plan plan_;
};

}  // namespace zel::host
