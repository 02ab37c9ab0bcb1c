#include <benchmark/benchmark.h>
#include <string>

#include "formats/text_pdf.h"
#include "tests/support/temporary_folder.h"

namespace {

/// @param breaks between the lines, or none.
void setText(benchmark::State& state, std::size_t size, const std::string& breaks) {
  std::string text;
  while (text.size() < size) {
    text += "Plain words with an accent, as in caf\u00E9, enough of them to fill a line" + breaks;
  }
  const tolvane::support::TemporaryFolder folder;
  const tolvane::CancellationToken token;
  for (auto _ : state) {
    tolvane::UniversalFormats::textPDF(text, folder / "text.pdf", token);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void set500PagesOfLines(benchmark::State& state) {
  setText(state, 1'890'000, ".\n");
}
BENCHMARK(set500PagesOfLines)->Unit(benchmark::kMillisecond);

void setOneLineOf500Pages(benchmark::State& state) {
  setText(state, 1'890'000, ". ");
}
BENCHMARK(setOneLineOf500Pages)->Unit(benchmark::kMillisecond);

void setTwoPages(benchmark::State& state) {
  setText(state, 7'560, ".\n");
}
BENCHMARK(setTwoPages)->Unit(benchmark::kMillisecond);

}  // namespace
