// A host that keeps its profiler in a global object, which is destroyed after main and after the static
// objects that the component made meanwhile.
#include <cstdio>
#include <memory>

#include "zel/automation.h"
#include "zel/profile_control.h"
#include "zel/terrain.h"

namespace {

struct LastWord {
  ~LastWord() { std::puts("released"); }
};
const LastWord lastWord;  // made before the profiler, gone after it

std::unique_ptr<zel::ProfileControl> profiler;

}  // namespace

int main() {
  profiler = std::make_unique<zel::ProfileControl>();
  profiler->SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));
  profiler->let_StaDatum(0);
  profiler->let_ElevLines(3);
  // Rasters are open and the datum shift is in use when the program ends.
  const zel::SampledTerrain terrain = zel::sampleTerrain({36.30, -84.30}, {36.35, -84.25}, 11, 0, 3);
  return profiler->get_ElevLines() == 3 && terrain.status == 0 ? 0 : 1;
}
