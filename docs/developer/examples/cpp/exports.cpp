// The window's files and its printed page, made without the window.
#include <zel/path_export.h>
#include <zel/path_page.h>
#include <zel/profile_control.h>

#include <cstdio>

int main() {
  zel::ProfileControl profiler;
  profiler.SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));

  zel::PathExportRequest request;
  request.from = {36.40, -84.35};
  request.to = {36.22, -84.12};
  request.fromHeight = request.toHeight = 30;
  request.kind = zel::PathExportKind::kSignalProfile;
  request.file = "signal.csv";
  request.erpKw = 2.5;
  int steps = 0;
  request.progress = [&steps](std::int32_t, std::int32_t) { return ++steps > 0; };  // false would cancel
  const zel::PathExport exported = zel::exportPath(request);
  if (exported.status != 0) return std::printf("%s\n", exported.error.c_str()), 1;
  for (const std::string& file : exported.files) std::printf("%s\n", file.c_str());
  std::printf("%d samples, progress %s\n", exported.samples, steps > 0 ? "told" : "not told");

  zel::PathPageRequest page;
  page.from = request.from;
  page.to = request.to;
  page.fromHeight = page.toHeight = 30;
  page.file = "path.pdf";
  page.description = "North ridge";
  const zel::PathPage printed = zel::printPath(page);
  if (printed.status != 0) return std::printf("%s\n", printed.error.c_str()), 1;
  std::printf("%s, %.0f x %.0f mm, free space %s dB, modeled %s dB\n", page.file.c_str(), printed.widthMm,
              printed.heightMm, printed.freeSpaceLoss.c_str(), printed.modeledLoss.c_str());
}
