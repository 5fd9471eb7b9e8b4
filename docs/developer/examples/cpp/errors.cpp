// What a host sees of a failure: a result of 0, a line on standard error, an entry in the log.
#include <zel/path_loss.h>
#include <zel/profile_control.h>

#include <cstdio>
#include <fstream>
#include <string>

int main() {
  zel::ProfileControl profiler;
  profiler.SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));

  // The class reports and goes on.
  const float loss = profiler.GetPathLoss({50, 10, 30}, {50.1, 10, 30});
  std::printf("GetPathLoss: %g\n", static_cast<double>(loss));
  std::ifstream log("zelErrorLog.txt");
  std::string line;
  while (std::getline(log, line)) {
    if (line.size() > 18 && line[2] == '/') line.erase(0, 18);  // the time
    std::printf("  log: %s\n", line.c_str());
  }

  // The functions beside the class give the reason to the host, and to nobody else.
  const zel::PathLoss result = zel::computePathLoss({{50, 10}, {50.1, 10}, 30, 30, {}});
  std::printf("computePathLoss: status %d\n  %s\n", result.status, result.error.c_str());
}
