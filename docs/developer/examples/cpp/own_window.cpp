// A profile window of the host's own: its controls are read and set by name.
#include <zel/c_api.h>
#include <zel/profile_control.h>

#include <cstdio>

int main() {
  zel::ProfileControl profiler;
  profiler.SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));
  profiler.GetPathLoss({36.40, -84.35, 30}, {36.22, -84.12, 30});  // gives the stations

  const zel::DispatchPtr window = profiler.get_PForm();
  if (window == nullptr) return 1;  // no window can be shown; standard error says why
  window->call("Show");
  zelProfilerProcessEvents(50);
  std::printf("Distance: %s\n", window->get("lblDist").toObject()->get("Caption").toText().c_str());
  std::printf("Modeled loss: %s\n", window->get("lblMLoss").toObject()->get("Caption").toText().c_str());

  // As if the user had typed it and left the box. The window waits a moment for more before it computes anew.
  window->get("tbxFreq").toObject()->let("Text", "450");
  window->call("drawLine");
  window->call("UpdateModeledLoss");
  std::printf("At 450 MHz: %s\n", window->get("lblMLoss").toObject()->get("Caption").toText().c_str());
}
