#include <benchmark/benchmark.h>
#include <string>

#include "platform/text/rich_text.h"
#include "platform/text/text_encoding.h"

namespace {

std::string prose(std::size_t size) {
  std::string text;
  while (text.size() < size) {
    text += "Plain words with an accent, as in caf\xC3\xA9, and a line end.\n";
  }
  return text;
}

void validateUtf8(benchmark::State& state) {
  const std::string text = prose(2'097'152);
  const tolvane::BytesView bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
  for (auto _ : state) {
    benchmark::DoNotOptimize(tolvane::TextEncoding::isUtf8(bytes));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(validateUtf8)->Unit(benchmark::kMicrosecond);

void readRichText(benchmark::State& state) {
  const std::string document = tolvane::RichText::document(prose(1'000'000));
  for (auto _ : state) {
    benchmark::DoNotOptimize(tolvane::RichText::plainText(document));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(document.size()));
}
BENCHMARK(readRichText)->Unit(benchmark::kMillisecond);

}  // namespace
