#pragma once

#include <cstdlib>

#include "platform/files/bytes.h"

/// Hands one input to a reader; each fuzzer defines it. What it throws ends the fuzzer, so that it
/// catches what the reader's contract allows, and nothing else.
void read(tolvane::BytesView input);

/// A rule that no input may break.
inline void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}
