#include <benchmark/benchmark.h>
#include <string>
#include <utility>
#include <vector>

#include "catalog/capability_catalog.h"
#include "universal/toolchain/local_toolchain.h"

namespace {

using tolvane::FileInfo;
using tolvane::FileKind;

std::vector<FileInfo> selection(const std::vector<std::pair<FileKind, const char*>>& kinds) {
  std::vector<FileInfo> files;
  for (std::size_t number = 0; number < 100; ++number) {
    const auto& [kind, extension] = kinds[number % kinds.size()];
    files.push_back({"/home/user/file" + std::to_string(number) + "." + extension, kind, ""});
  }
  return files;
}

/// What the main thread does when the inspection of a selection has come back.
void offers(benchmark::State& state, const std::vector<FileInfo>& files) {
  const tolvane::LocalToolchain toolchain;
  for (auto _ : state) {
    for (const auto& list : {tolvane::CapabilityCatalog::formats(files, toolchain),
                             tolvane::CapabilityCatalog::tools(files, toolchain)}) {
      for (const tolvane::FileCapability& offer : list) {
        benchmark::DoNotOptimize(offer.json());
      }
    }
  }
}

void offersForMixedFiles(benchmark::State& state) {
  offers(state,
         selection({{FileKind::image, "png"},
                    {FileKind::pdf, "pdf"},
                    {FileKind::presentation, "pptx"},
                    {FileKind::document, "docx"}}));
}
BENCHMARK(offersForMixedFiles)->Unit(benchmark::kMicrosecond);

void offersForImages(benchmark::State& state) {
  offers(state, selection({{FileKind::image, "png"}}));
}
BENCHMARK(offersForImages)->Unit(benchmark::kMicrosecond);

}  // namespace
