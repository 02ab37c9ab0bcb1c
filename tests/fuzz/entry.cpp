#include <cstddef>
#include <cstdint>

#include "tests/fuzz/reader.h"

/// What libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  read({data, size});
  return 0;
}
