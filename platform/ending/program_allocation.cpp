// For programs that are linked with mimalloc. It was compiled as C: where memory is short, its
// "new" cannot throw and ends the process. These take its place, in the program and in the
// libraries.

#include <cstdlib>
#include <mimalloc.h>
#include <new>

#include "platform/ending/memory_reserve.h"

namespace {

/// So that libraries which end the process come as far as that: to say why, they need memory.
void allocationFailed(int /*error*/, void* /*unused*/) {
  tolvane::MemoryReserve::release();
}

[[maybe_unused]] const bool isListening = [] {
  mi_register_error(allocationFailed, nullptr);
  return true;
}();

void* required(void* memory) {
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

void* aligned(std::size_t size, std::align_val_t alignment) {
  const auto boundary = static_cast<std::size_t>(alignment);
  return required(std::aligned_alloc(boundary, (size + boundary - 1) / boundary * boundary));
}

}  // namespace

void* operator new(std::size_t size) {
  return required(std::malloc(size));
}

void* operator new[](std::size_t size) {
  return required(std::malloc(size));
}

void* operator new(std::size_t size, std::align_val_t alignment) {
  return aligned(size, alignment);
}

void* operator new[](std::size_t size, std::align_val_t alignment) {
  return aligned(size, alignment);
}
