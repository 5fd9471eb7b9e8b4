// Many paths at once: one calculator, four threads.
#include <zel/path_calculator.h>
#include <zel/profile_control.h>

#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

int main() {
  zel::ProfileControl profiler;
  profiler.SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));

  // Opened here, on the component's thread; used from any.
  const std::shared_ptr<const zel::PathCalculator> calculator = zel::PathCalculator::open();

  std::vector<zel::PathLossRequest> requests;
  for (int i = 0; i < 40; ++i) {
    zel::PathLossRequest& request = requests.emplace_back();
    request.from = {36.40, -84.35};
    request.to = {36.22, -84.12 - 0.005 * i};
    request.fromHeight = request.toHeight = 30;
    request.frequencyMhz = 450;
    request.wantReverse = false;  // half of the work
  }
  std::vector<zel::PathLoss> losses(requests.size());
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (std::size_t i = next++; i < requests.size(); i = next++) losses[i] = calculator->loss(requests[i]);
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back(work);
  for (std::thread& thread : threads) thread.join();

  for (std::size_t i = 0; i < losses.size(); i += 13) {
    if (losses[i].status != 0)
      std::printf("path %zu: %s\n", i, losses[i].error.c_str());
    else
      std::printf("path %zu: %.3f km, %.2f dB\n", i, losses[i].distanceKm, losses[i].modeledDb.value_or(0));
  }
}
