// Semi-transparent copies of a picture against a plain copy of its pixels,
// measured in the same run:
//  - SemiTransparentCopy (alpha only, and over a background colour) and
//    the member tklGetSemiTransparentPicture on a 1920 x 1080 picture,
//    against copying its pixels into a new vector (what any copy costs);
//    target: a small constant factor;
//  - the same on 960 x 540 (a quarter of the pixels): growth for four
//    times the pixels, target about 4 (linear).
// The summary prints the best of the repetitions and the ratios.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "best_time_reporter.h"
#include "norvik50/lib.h"
#include "norvik50/picture.h"

namespace {

using norvik50::Picture;
using norvik50::Translucency;

// A photo-like picture: random colours, most pixels opaque, some partly
// or wholly transparent.
const Picture& Photo(int32_t width, int32_t height) {
  static std::map<int64_t, Picture> cache;
  auto& picture = cache[int64_t{width} << 32 | height];
  if (picture.Empty()) {
    std::mt19937 rng(20261125);
    std::vector<uint32_t> pixels(static_cast<std::size_t>(width) * height);
    for (uint32_t& pixel : pixels) {
      const uint32_t alpha = rng() % 4 == 0 ? rng() % 256 : 255;
      pixel = (alpha << 24) | (rng() & 0xFFFFFFu);
    }
    picture = Picture(width, height, std::move(pixels));
  }
  return picture;
}

void BM_PlainCopy(benchmark::State& state) {
  const Picture& photo =
      Photo(static_cast<int32_t>(state.range(0)), static_cast<int32_t>(state.range(1)));
  for (auto _ : state) {
    std::vector<uint32_t> copy = photo.Pixels();
    benchmark::DoNotOptimize(copy.data());
  }
}

void BM_SemiTransparentCopy(benchmark::State& state) {
  const Picture& photo =
      Photo(static_cast<int32_t>(state.range(0)), static_cast<int32_t>(state.range(1)));
  Translucency how;
  how.opacity_percent = 50;
  for (auto _ : state) benchmark::DoNotOptimize(SemiTransparentCopy(photo, how));
}

void BM_SemiTransparentOverBack(benchmark::State& state) {
  const Picture& photo =
      Photo(static_cast<int32_t>(state.range(0)), static_cast<int32_t>(state.range(1)));
  Translucency how;
  how.opacity_percent = 50;
  how.back_rgb = 0x336699u;
  for (auto _ : state) benchmark::DoNotOptimize(SemiTransparentCopy(photo, how));
}

void BM_tklGetSemiTransparentPicture(benchmark::State& state) {
  auto photo = std::make_shared<Picture>(
      Photo(static_cast<int32_t>(state.range(0)), static_cast<int32_t>(state.range(1))));
  norvik50::LIB lib;
  for (auto _ : state) benchmark::DoNotOptimize(lib.tklGetSemiTransparentPicture(photo, 50));
}

#define PICTURE_SIZES(bm) \
  BENCHMARK(bm)->Args({960, 540})->Args({1920, 1080})->Unit(benchmark::kMillisecond)->Repetitions(3)
PICTURE_SIZES(BM_PlainCopy);
PICTURE_SIZES(BM_SemiTransparentCopy);
PICTURE_SIZES(BM_SemiTransparentOverBack);
PICTURE_SIZES(BM_tklGetSemiTransparentPicture);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  norvik50::bench::BestTimeReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\nRatios (CPU time, 1920 x 1080 against a plain copy of its pixels)\n");
  for (const char* name : {"BM_SemiTransparentCopy", "BM_SemiTransparentOverBack",
                           "BM_tklGetSemiTransparentPicture"}) {
    const std::string large = std::string(name) + "/1920/1080";
    if (const double ratio = reporter.Ratio(large, "BM_PlainCopy/1920/1080"); ratio > 0) {
      std::printf("%-32s / plain copy = %5.2f\n", name, ratio);
    }
    if (const double growth = reporter.Ratio(large, std::string(name) + "/960/540"); growth > 0) {
      std::printf("%-32s 4x the pixels: %5.2fx the time (linear: about 4)\n", name, growth);
    }
  }
  if (const double growth = reporter.Ratio("BM_PlainCopy/1920/1080", "BM_PlainCopy/960/540");
      growth > 0) {
    std::printf("%-32s 4x the pixels: %5.2fx the time\n", "BM_PlainCopy", growth);
  }
  benchmark::Shutdown();
  return 0;
}
