// A host with a loop of its own and no toolkit: shows the profile window and serves its events now and then.
#include <zel/c_api.h>
#include <zel/profile_control.h>
#include <zel/windows.h>

#include <cstdio>

int main() {
  zel::ProfileControl profiler;
  profiler.SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));

  const std::string problem = zel::windowsProblem();
  if (!problem.empty()) return std::printf("%s.\n", problem.c_str()), 1;

  profiler.ShowMainForm({36.40, -84.35, 30}, {36.22, -84.12, 30});  // returns when it is drawn
  if (!profiler.get_PFrmLoaded()) return 1;                         // a box has said why
  std::printf("The window is open.\n");

  for (int work = 0; work < 10; ++work) {
    // ... a piece of the host's own work ...
    if (zelProfilerProcessEvents(20) == ZEL_QUIT) {  // at most 20 ms
      int code = 0;
      zelProfilerRun(&code);  // gives the exit code that belongs to it
      return code;
    }
    if (!profiler.get_PFrmLoaded()) break;  // the user has closed it
  }
  profiler.UnloadMainForm();
  std::printf("The window is closed.\n");
}
