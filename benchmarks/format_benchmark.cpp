#include <benchmark/benchmark.h>
#include <cstdint>
#include <string>
#include <string_view>

#include "formats/delimited_text.h"
#include "formats/subtitles.h"
#include "formats/worksheet_text.h"

namespace {

using namespace tolvane;

constexpr int rowCount = 90'000;

constexpr std::string_view plainRow =
    "1042,Anna Example,\"Main Street 5, Springfield\",anna@example.org,2024-03-01,19.90,yes\r\n";
// Next to most delimiters stands a character past ASCII, which has to be looked up.
constexpr std::string_view mixedRow =
    "१०४२,अन्ना उदाहरण,\"Straße 5, Köln\",日本語のテキスト,שלום "
    "עולם,e\u0301té,👩🏽‍💻\r\n";

std::string repeated(std::string_view line) {
  std::string text;
  for (int row = 0; row < rowCount; ++row) {
    text += line;
  }
  return text;
}

void countBytes(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void readDelimited(benchmark::State& state, std::string_view line) {
  const std::string text = repeated(line);
  for (auto _ : state) {
    benchmark::DoNotOptimize(UniversalFormats::csv(text, ','));
  }
  countBytes(state, text);
}
BENCHMARK_CAPTURE(readDelimited, plain, plainRow)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readDelimited, mixed, mixedRow)->Unit(benchmark::kMillisecond);

void writeDelimited(benchmark::State& state, std::string_view line) {
  const std::string text = repeated(line);
  const Table rows = UniversalFormats::csv(text, ',');
  for (auto _ : state) {
    benchmark::DoNotOptimize(UniversalFormats::delimited(rows, ','));
  }
  countBytes(state, text);
}
BENCHMARK_CAPTURE(writeDelimited, plain, plainRow)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeDelimited, mixed, mixedRow)->Unit(benchmark::kMillisecond);

void writeWorksheet(benchmark::State& state) {
  const Table rows = UniversalFormats::csv(repeated(plainRow), ',');
  std::string text;
  for (auto _ : state) {
    text.clear();
    for (std::size_t row = 0; row < rows.size(); ++row) {
      WorksheetText::appendRow(text, row + 1, rows[row]);
    }
    benchmark::DoNotOptimize(text);
  }
  countBytes(state, text);
}
BENCHMARK(writeWorksheet)->Unit(benchmark::kMillisecond);

void convertSubtitles(benchmark::State& state) {
  const std::string text =
      repeated("17\r\n00:00:01,000 --> 00:00:02,500\r\nA line of text\r\nand another\r\n\r\n");
  for (auto _ : state) {
    benchmark::DoNotOptimize(UniversalFormats::subtitles(text, "vtt"));
  }
  countBytes(state, text);
}
BENCHMARK(convertSubtitles)->Unit(benchmark::kMillisecond);

}  // namespace
