// A report of a plan's links, made in steps of some milliseconds between events: a table of all of them, then
// a page for each.
//
// Runs on the component's thread, which is the user-interface thread. What it holds of a link between its
// page and the end is its row of the table.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "planning/plan.h"
#include "report/link_map.h"
#include "report/link_page.h"
#include "report/page_layout.h"

class QIODevice;

namespace zel::host {

struct ReportRequest {
  Plan plan;
  std::vector<LinkId> links;  // in the order of the pages; those of the plan
  std::string planName;
  Sheet sheet;
  ReportUnits units;
  AngleFormat angles = AngleFormat::kDegreesMinutesSeconds;
  std::shared_ptr<const TerrainMap> terrain;  // of the maps; null: they have no ground
  std::string date, program;                  // of the foot
};

struct Report {
  bool finished = false;  // all of it is written
  bool cancelled = false;
  std::string error;  // why it is neither
  int pages = 0;
  std::vector<LinkRow> rows;  // of the links, with their pages
};

class ReportJob {
 public:
  // The document goes to the device, which must outlive this.
  ReportJob(ReportRequest request, QIODevice& device);
  ~ReportJob();
  ReportJob(const ReportJob&) = delete;
  ReportJob& operator=(const ReportJob&) = delete;

  void start();
  // Ends before the next step; onEnd is called.
  void cancel();
  const Report& report() const;

  // Called between steps: so many of all steps are done, each link having two.
  std::function<void(int done, int all)> onProgress;
  std::function<void()> onEnd;  // once; may end this job

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

inline constexpr Sheet kSheetA4{210, 297}, kSheetLetter{215.9, 279.4};
inline Sheet lying(const Sheet& sheet) { return {sheet.height, sheet.width}; }

}  // namespace zel::host
