// The profile window over the bundled terrain, without a display: opening, drawing anew, pointer and keys,
// each by the events of a person. Strokes alone are canvas_bench.
//
// The measures to hold: the window within 300 ms of ShowMainForm on cached tiles, a redraw of 5,500 samples
// on 1920 x 1080 pixels under 10 ms, a pointer move under 1 ms.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "component/component.h"
#include "component/desktop/desktop_services.h"
#include "component/desktop/desktop_windows.h"
#include "support/temporary_folder.h"
#include "ui/profile_window/picture_box.h"
#include "zel/profile_control.h"
#include "zel/terrain.h"
#include "zeltool/settings_store/ini_settings_store.h"

namespace zel {
namespace {

constexpr StationProfile_Type kStart{36.40, -84.35, 30};
constexpr StationProfile_Type kEnd{36.22, -84.12, 30};  // 28.7 km
constexpr QSize kLargePlot(1920, 1080);

void startApplication() {
  if (QCoreApplication::instance() != nullptr) return;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_SCALE_FACTOR", "1");
  static char name[] = "window_bench";
  static char* arguments[] = {name, nullptr};
  static int count = 1;
  new QApplication(count, arguments);  // to the end of the process
}

void handleEvents() {
  for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
}

// A component of the benchmark's own: the desktop's parts over a settings file in a temporary folder.
class BenchComponent {
 public:
  BenchComponent() {
    control_.SetClientApp(makePropertyBag({{"Title", "Bench"}, {"Path", folder_.path().string()}}));
  }

  // A window of so many samples, shown and painted. At 500 points a kilometre the maximum decides: its
  // intervals and 5 % more at either end.
  FrmProfile& show(std::int64_t samples) {
    store_->WriteSetting("Bench", "Profile", "Prf_Per", "500");
    store_->WriteSetting("Bench", "Profile", "Prf_Max", std::to_string(samples * 10 / 11));
    control_.ShowMainForm(kStart, kEnd);
    handleEvents();
    return *windows_->profileWindow();
  }
  // The same with a plot of 1920 x 1080 pixels.
  FrmProfile& showLarge(std::int64_t samples) {
    FrmProfile& window = show(samples);
    window.resize(window.size() + kLargePlot - window.picture().size());
    handleEvents();
    window.drawLine();
    handleEvents();
    return window;
  }
  void hide() {
    control_.UnloadMainForm();
    handleEvents();
  }

 private:
  ComponentServices services() {
    ComponentServices services = makeDesktopServices();
    services.windows = windows_;
    services.settings = store_;
    services.settingsFile = nullptr;
    services.bundledTerrain = ZEL_SOURCE_DIR "/data/terrain";
    return services;
  }

  test::TemporaryFolder folder_;
  std::shared_ptr<IniSettingsStore> store_ =
      std::make_shared<IniSettingsStore>(folder_.path(), [](const std::string&) {});
  std::shared_ptr<DesktopWindows> windows_ =
      std::make_shared<DesktopWindows>([]() -> Component& { return Component::instance(); });
  Component component_{services()};
  ComponentSubstitute substitute_{component_};
  ProfileControl control_;
};

BenchComponent& bench() {
  startApplication();
  static BenchComponent made;
  return made;
}

class Stopwatch {
 public:
  // Milliseconds since the last time it was asked.
  double lap() {
    const auto now = std::chrono::steady_clock::now();
    const std::chrono::duration<double, std::milli> passed = now - last_;
    last_ = now;
    return passed.count();
  }

 private:
  std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

// Everything for the first time in the process, and what the time is made of, in milliseconds: the toolkit's
// application, the component with its tools, the terrain (libraries, opening, decoding), and then the window
// itself, whose first one also loads style and fonts. Its share of drawing is shown by drawing once more. It
// runs first, and once.
void BM_FirstWindowOfTheProcess(benchmark::State& state) {
  if (QCoreApplication::instance() != nullptr) {
    state.SkipWithError("it is not the first");
    return;
  }
  for ([[maybe_unused]] auto _ : state) {
    Stopwatch watch;
    startApplication();
    state.counters["application"] = watch.lap();
    BenchComponent& component = bench();
    state.counters["component"] = watch.lap();
    if (sampleTerrain({kStart.Lat, kStart.Lon}, {kEnd.Lat, kEnd.Lon}, 1001, 0, 3).status != 0)
      state.SkipWithError("there is no terrain");
    state.counters["terrain"] = watch.lap();
    FrmProfile& window = component.show(1100);
    state.counters["window"] = watch.lap();
    window.drawLine();
    state.counters["drawing"] = watch.lap();
  }
  bench().hide();
}
BENCHMARK(BM_FirstWindowOfTheProcess)->Iterations(1)->Unit(benchmark::kMillisecond);

// ShowMainForm until the window is painted, on cached tiles.
void BM_Window(benchmark::State& state) {
  bench().show(state.range(0));
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    bench().hide();
    state.ResumeTiming();
    bench().show(state.range(0));
  }
  bench().hide();
}
BENCHMARK(BM_Window)->Arg(1100)->Arg(5500)->Unit(benchmark::kMillisecond);

// drawLine: statistics, scale, every stroke and text, losses shown, clearance.
void BM_Redraw(benchmark::State& state) {
  FrmProfile& window = bench().showLarge(state.range(0));
  if (window.picture().size() != kLargePlot || window.state().path.samples != state.range(0))
    state.SkipWithError("the plot has another size");
  for ([[maybe_unused]] auto _ : state) window.drawLine();
  bench().hide();
}
BENCHMARK(BM_Redraw)->Arg(550)->Arg(1100)->Arg(5500)->Unit(benchmark::kMillisecond);

// The same until everything is on the screen.
void BM_RedrawAndPaint(benchmark::State& state) {
  FrmProfile& window = bench().showLarge(state.range(0));
  for ([[maybe_unused]] auto _ : state) {
    window.drawLine();
    QCoreApplication::processEvents();
  }
  bench().hide();
}
BENCHMARK(BM_RedrawAndPaint)->Arg(5500)->Unit(benchmark::kMillisecond);

// drawLine with rise and modeled loss computed anew, as after a click on an E-Curve option.
void BM_RedrawWithNewCurvature(benchmark::State& state) {
  FrmProfile& window = bench().showLarge(state.range(0));
  int option = 0;
  for ([[maybe_unused]] auto _ : state) window.optCurve_Click(option = 1 - option);
  bench().hide();
}
BENCHMARK(BM_RedrawWithNewCurvature)->Arg(5500)->Unit(benchmark::kMillisecond);

// A move of the mouse: position, heights and clearance read, strobe moved, labels set, everything painted.
void BM_PointerMove(benchmark::State& state) {
  FrmProfile& window = bench().showLarge(state.range(0));
  int x = 0;
  for ([[maybe_unused]] auto _ : state) {
    x = (x + 7) % 1900;
    const QPointF at(x, 500);
    QMouseEvent move(QEvent::MouseMove, at, window.picture().mapToGlobal(at), Qt::NoButton, Qt::NoButton, {});
    QCoreApplication::sendEvent(&window.picture(), &move);
    QCoreApplication::processEvents();
  }
  state.SetItemsProcessed(state.iterations());
  bench().hide();
}
BENCHMARK(BM_PointerMove)->Arg(550)->Arg(5500)->Unit(benchmark::kMicrosecond);

// The arrow key held down: 1000 moves of the strobe, sample by sample, each painted.
void BM_ThousandKeyMoves(benchmark::State& state) {
  FrmProfile& window = bench().showLarge(state.range(0));
  const auto press = [&window](int key) {
    QKeyEvent down(QEvent::KeyPress, key, {});
    QCoreApplication::sendEvent(&window.picture(), &down);
    QCoreApplication::processEvents();
  };
  for ([[maybe_unused]] auto _ : state) {
    press(Qt::Key_Home);
    for (int i = 0; i < 1000; ++i) press(Qt::Key_Right);
  }
  state.SetItemsProcessed(state.iterations() * 1000);
  bench().hide();
}
BENCHMARK(BM_ThousandKeyMoves)->Arg(5500)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zel
