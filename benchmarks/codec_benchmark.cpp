#include <benchmark/benchmark.h>

#include "bridge/standard_codec.h"
#include "engine/json/value_json.h"

namespace {

using tolvane::Value;

/// What a selection of a hundred files publishes.
Value selection() {
  Value::List files;
  for (int number = 0; number < 100; ++number) {
    const std::string name = "Report " + std::to_string(number) + ".pdf";
    files.emplace_back(Value::Map{{"path", "/home/user/Documents/" + name},
                                  {"name", name},
                                  {"kind", "pdf"},
                                  {"detail", "12 pages · PDF"}});
  }
  return Value::Map{{"files", std::move(files)}, {"message", ""}, {"version", 1}};
}

void encodeSelection(benchmark::State& state) {
  const Value value = selection();
  for (auto _ : state) {
    benchmark::DoNotOptimize(tolvane::StandardCodec::encode(value));
  }
}
BENCHMARK(encodeSelection);

void decodeSelection(benchmark::State& state) {
  const auto message = tolvane::StandardCodec::encode(selection());
  for (auto _ : state) {
    benchmark::DoNotOptimize(tolvane::StandardCodec::decode(message));
  }
}
BENCHMARK(decodeSelection);

void writeSelectionAsJson(benchmark::State& state) {
  const Value value = selection();
  for (auto _ : state) {
    benchmark::DoNotOptimize(tolvane::ValueJson::write(value));
  }
}
BENCHMARK(writeSelectionAsJson);

}  // namespace
