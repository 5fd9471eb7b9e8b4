// Strokes and texts on a picture of 1920 x 1080 device pixels, and a page of them. The argument is the number
// of segments; the growth with it is the point.

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <cmath>
#include <memory>
#include <string>

#include "canvas/qt/pdf_document.h"
#include "canvas/qt/printed_page.h"
#include "canvas/qt/raster_canvas.h"

namespace zel {
namespace {

constexpr QSize kScreen(1920, 1080);

RasterCanvas canvasFor(std::int64_t segments) {
  RasterCanvas canvas(kScreen, 1);
  canvas.setScale(0, 1000, static_cast<double>(segments), 0);
  return canvas;
}

double hill(std::int64_t i) { return 400 + 200 * std::sin(static_cast<double>(i) * 0.05); }

void drawGround(Canvas& canvas, std::int64_t segments) {
  for (std::int64_t i = 0; i < segments; ++i)
    canvas.line(static_cast<double>(i), hill(i), static_cast<double>(i + 1), hill(i + 1), kBlack);
}

// One hilly polyline, as the ground is.
void polyline(benchmark::State& state, DrawMode mode, int width) {
  RasterCanvas canvas = canvasFor(state.range(0));
  canvas.setDrawMode(mode);
  canvas.setDrawWidth(width);
  for ([[maybe_unused]] auto _ : state) {
    drawGround(canvas, state.range(0));
    benchmark::DoNotOptimize(canvas.image().constBits());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
void BM_Polyline(benchmark::State& state) { polyline(state, DrawMode::kCopyPen, 1); }
void BM_PolylineOfWidth3(benchmark::State& state) { polyline(state, DrawMode::kCopyPen, 3); }
void BM_PolylineOfTheXorPen(benchmark::State& state) { polyline(state, DrawMode::kXorPen, 1); }
BENCHMARK(BM_Polyline)->Arg(550)->Arg(5500)->Arg(32767)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PolylineOfWidth3)->Arg(550)->Arg(5500)->Arg(32767)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PolylineOfTheXorPen)->Arg(5500)->Unit(benchmark::kMicrosecond);

void BM_Clear(benchmark::State& state) {
  RasterCanvas canvas = canvasFor(1);
  for ([[maybe_unused]] auto _ : state) {
    canvas.clear();
    benchmark::DoNotOptimize(canvas.image().constBits());
  }
}
BENCHMARK(BM_Clear)->Unit(benchmark::kMicrosecond);

// A strobe erased and drawn anew, and a marker over the whole height.
void BM_StrobeAndMarker(benchmark::State& state) {
  RasterCanvas canvas = canvasFor(5500);
  canvas.setDrawMode(DrawMode::kXorPen);
  canvas.setFillColour(0x00FFFF);
  for ([[maybe_unused]] auto _ : state) {
    canvas.circle(2000, 500, 27.5);
    canvas.circle(2001, 500, 27.5);
    canvas.line(3000, 0, 3000, 1000, 0x00FFFF);
  }
}
BENCHMARK(BM_StrobeAndMarker)->Unit(benchmark::kMicrosecond);

std::unique_ptr<QGuiApplication> applicationWithFonts() {
  static char name[] = "canvas_bench";
  static char* arguments[] = {name, nullptr};
  static int count = 1;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  return std::make_unique<QGuiApplication>(count, arguments);
}

void BM_Label(benchmark::State& state) {
  const auto application = applicationWithFonts();
  RasterCanvas canvas = canvasFor(5500);
  for ([[maybe_unused]] auto _ : state) {
    canvas.clear();
    for (int i = 0; i < 8; ++i) {
      canvas.setTextPosition(i * 500, 700);
      canvas.print("1,250");
    }
  }
  state.SetItemsProcessed(state.iterations() * 8);
}
BENCHMARK(BM_Label)->Unit(benchmark::kMicrosecond);

// A whole plot: four elevation lines, Fresnel line and ground over all samples, cleared before.
void BM_PlotOfSixPolylines(benchmark::State& state) {
  RasterCanvas canvas = canvasFor(state.range(0));
  for ([[maybe_unused]] auto _ : state) {
    canvas.clear();
    for (int i = 0; i < 6; ++i) drawGround(canvas, state.range(0));
    benchmark::DoNotOptimize(canvas.image().constBits());
  }
  state.SetItemsProcessed(state.iterations() * 6 * state.range(0));
}
BENCHMARK(BM_PlotOfSixPolylines)->Arg(550)->Arg(5500)->Unit(benchmark::kMicrosecond);

// An A4 page with a ground in its box and forty lines of text, drawn and written as PDF.
void BM_PageAsPdf(benchmark::State& state) {
  const auto application = applicationWithFonts();
  std::size_t bytes = 0;
  for ([[maybe_unused]] auto _ : state) {
    PrintedPage page(11906, 16838);
    page.sheet().setScale(0, 16838, 11906, 0);
    for (int line = 0; line < 40; ++line) {
      page.sheet().setTextPosition(1400, 16138 - 240 * line);
      page.sheet().print("Start Point Latitude: 36-32-11.4 N");
    }
    Canvas& box = page.box(1191, 6000, 10716, 2825);
    box.setScale(0, 1000, static_cast<double>(state.range(0)), 0);
    drawGround(box, state.range(0));
    bytes = pdfDocument(page, 1, {"Profile", "canvas_bench"}).size();
  }
  state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(BM_PageAsPdf)->Arg(500)->Arg(5000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zel
