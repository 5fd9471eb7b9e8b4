// The same class by the names of its members, and what late binding throws.
#include <zel/profile_control.h>

#include <cstdio>

int main() {
  zel::ProfileControl control;
  zel::Dispatch& profiler = control;  // all that a late-bound caller needs to know
  profiler.call("SetClientApp", {zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}})});
  profiler.let("StaDatum", 1);
  std::printf("StaDatum is %s\n", profiler.get("stadatum").display().c_str());  // in any case

  const zel::AutomationValue loss = profiler.call(
      "GetPathLoss", {zel::makeStation({36.40, -84.35, 30}), zel::makeStation({36.22, -84.12, 30})});
  std::printf("Modeled loss: %.1f dB\n", loss.toFloat64());

  for (const char* wrong : {"Colour", "RangeLines", "PFrmLoaded"}) {
    try {
      profiler.let(wrong, 70000);
    } catch (const zel::AutomationError& error) {
      std::printf("%d: %s\n", static_cast<int>(error.code()), error.what());
    }
  }
}
