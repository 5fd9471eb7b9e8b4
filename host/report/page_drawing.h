// The pages of a report, drawn by a painter on paper or on a picture.
#pragma once

#include <QImage>
#include <QString>
#include <optional>
#include <span>
#include <string>

#include "report/link_page.h"
#include "report/page_layout.h"
#include "report/page_text.h"
#include "zel/plot_image.h"

namespace zel::host {

// What is on every page.
struct PageFrame {
  std::string planName;
  std::string date;     // "2026-11-21 20:40"
  std::string program;  // "Terrain Profiler 0.1.0"
  Sheet sheet;
  int page = 1, pages = 1;
};

// Where the pictures of a link's page will be; they are made for these sizes.
LinkPageLayout measureLinkPage(PageText& text, const Sheet& sheet, const LinkPage& page);

// Either may be missing: the place says why.
struct LinkPictures {
  QImage map;
  std::optional<PlotImage> plot;
};
void drawLinkPage(PageText& text, const PageFrame& frame, const LinkPageLayout& layout, const LinkPage& page,
                  const LinkPictures& pictures);

// Rows of the table on a page; the first has the title, too.
std::size_t tableRows(PageText& text, const PageFrame& frame, bool first);
// `all` for the sentence under the title.
void drawTablePage(PageText& text, const PageFrame& frame, std::span<const LinkRow> rows,
                   const std::vector<LinkRow>& all, const ReportUnits& units);

}  // namespace zel::host
