#include "report/report_job.h"

#include <QTimer>
#include <algorithm>
#include <cmath>
#include <exception>
#include <new>
#include <optional>
#include <span>
#include <stdexcept>
#include <utility>

#include "report/link_plot.h"
#include "report/page_drawing.h"
#include "report/page_figures.h"
#include "report/report_document.h"

namespace zel::host {
struct ReportJob::Self {
  Self(ReportRequest wanted, QIODevice& device)
      : request(std::move(wanted)),
        document(device, request.sheet, QString::fromStdString(request.planName),
                 QString::fromStdString(request.program)),
        map(request.terrain) {
    timer.setSingleShot(true);
    timer.setInterval(0);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { step(); });
    map.onGround = [this] {
      if (next == Step::kMap) timer.start();
    };
  }

  enum class Step { kFigures, kTable, kPage, kMap, kDraw, kEnd };

  ReportRequest request;
  ReportDocument document;
  LinkMap map;
  Report report;
  Step next = Step::kFigures;
  std::size_t link = 0;  // whose turn it is
  int tablePages = 0;
  PageFigures figures;
  LinkPage page;
  LinkPageLayout layout;
  QTimer timer;
  ReportJob* owner = nullptr;

  const Link& linkOf(std::size_t i) const { return request.plan.links.at(request.links[i]); }
  int pageCount() const { return tablePages + static_cast<int>(request.links.size()); }

  PageFrame frameOf(int number) const {
    return {request.planName, request.date, request.program, request.sheet, number, pageCount()};
  }

  void end() {
    next = Step::kEnd;
    timer.stop();
    map.end();
    if (const auto tell = owner->onEnd) tell();
  }

  void fail(const std::string& why) {
    report.error = why;
    end();
  }

  void tellProgress() {
    const std::size_t count = request.links.size();
    const std::size_t done = next == Step::kFigures ? link : count + link;
    if (owner->onProgress) owner->onProgress(static_cast<int>(done), static_cast<int>(2 * count));
  }

  // One of them, then events. Each tells what comes next.
  void step() {
    if (report.cancelled) return end();
    try {
      switch (next) {
        case Step::kFigures:
          computeRow();
          break;
        case Step::kTable:
          drawTable();
          break;
        case Step::kPage:
          beginPage();
          break;
        case Step::kMap:
          if (!map.ready()) return;  // onGround comes back to it
          next = Step::kDraw;
          break;
        case Step::kDraw:
          drawPage();
          break;
        case Step::kEnd:
          return;
      }
    } catch (const std::bad_alloc&) {
      return fail("there is not enough memory");
    } catch (const std::exception& error) {  // settings that cannot be read
      return fail(error.what());
    }
    if (next == Step::kEnd) return finish();
    tellProgress();
    if (next != Step::kEnd) timer.start();
  }

  void computeRow() {
    if (link < request.links.size()) {
      const LinkId id = request.links[link];
      report.rows.push_back(linkRow(request.plan, id, pageFigures(request.plan, linkOf(link))));
      ++link;
    }
    if (link < request.links.size()) return;
    link = 0;
    next = Step::kTable;
  }

  // How many rows each page of the table has.
  std::vector<std::size_t> rowsOfPages() {
    std::vector<std::size_t> pages;
    std::size_t left = report.rows.size();
    const std::size_t later = tableRows(document.page(), frameOf(2), false);
    do {
      const std::size_t room = pages.empty() ? tableRows(document.page(), frameOf(1), true) : later;
      pages.push_back(std::min(left, room));
      left -= pages.back();
    } while (left > 0);
    return pages;
  }

  void drawTable() {
    const std::vector<std::size_t> pages = rowsOfPages();
    tablePages = static_cast<int>(pages.size());
    for (std::size_t i = 0; i < report.rows.size(); ++i)
      report.rows[i].page = tablePages + static_cast<int>(i) + 1;
    std::span<const LinkRow> rows = report.rows;
    for (std::size_t i = 0; i < pages.size(); ++i) {
      if (i > 0) document.nextPage();
      drawTablePage(document.page(), frameOf(static_cast<int>(i) + 1), rows.first(pages[i]), report.rows,
                    request.units);
      rows = rows.subspan(pages[i]);
    }
    next = request.links.empty() ? Step::kEnd : Step::kPage;
  }

  void beginPage() {
    figures = pageFigures(request.plan, linkOf(link));
    takeRow();
    page = linkPage(request.plan, linkOf(link), figures, request.units);
    layout = measureLinkPage(document.page(), request.sheet, page);
    map.begin(request.plan, request.links[link], figures,
              lookOnPaper(layout.map, request.units.imperial, request.angles));
    next = Step::kMap;
  }

  // The row is what the page says, also where the terrain or the settings changed after the table was drawn.
  void takeRow() {
    LinkRow& row = report.rows[link];
    LinkRow now = linkRow(request.plan, request.links[link], figures);
    now.page = row.page;
    if (row.error.empty() && !now.error.empty())
      now.error += "; when the table in front was made, there were figures";
    row = std::move(now);
  }

  void drawPage() {
    LinkPictures pictures;
    pictures.map = map.picture();
    if (page.plotProblem.empty()) {
      pictures.plot =
          linkPlot(request.plan, linkOf(link), figures.result, layout.plot, request.units.imperial);
      if (pictures.plot->status != 0) {
        page.plotProblem = report.rows[link].plotProblem = pictures.plot->error;
        pictures.plot.reset();
      }
    }
    document.nextPage();
    drawLinkPage(document.page(), frameOf(tablePages + static_cast<int>(link) + 1), layout, page, pictures);
    if (const QString problem = document.problem(); !problem.isEmpty())
      throw std::runtime_error(problem.toStdString());
    ++link;
    next = link < request.links.size() ? Step::kPage : Step::kEnd;
  }

  void finish() {
    report.pages = pageCount();
    report.finished = document.finish();
    if (!report.finished) {
      report.error = document.problem().toStdString();
      if (report.error.empty()) report.error = "the document cannot be written";
    }
    tellProgress();
    end();
  }
};

ReportJob::ReportJob(ReportRequest request, QIODevice& device)
    : self_(std::make_unique<Self>(std::move(request), device)) {
  self_->owner = this;
}

ReportJob::~ReportJob() = default;

void ReportJob::start() {
  if (!self_->document.problem().isEmpty()) return self_->fail(self_->document.problem().toStdString());
  self_->timer.start();
}

void ReportJob::cancel() {
  self_->report.cancelled = true;
  if (self_->next != Self::Step::kEnd) self_->timer.start();
}

const Report& ReportJob::report() const { return self_->report; }

}  // namespace zel::host
