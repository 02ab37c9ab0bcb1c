#include <benchmark/benchmark.h>
#include <string>

#include "engine/page_range.h"

namespace {

void pageRangeOfManyParts(benchmark::State& state) {
  std::string text = "1";
  for (int page = 3; page < 500; page += 2) {
    text += ", " + std::to_string(page);
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(tolvane::pageRange(text, 500));
  }
}
BENCHMARK(pageRangeOfManyParts);

}  // namespace
