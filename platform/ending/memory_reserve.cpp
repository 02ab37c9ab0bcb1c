#include "platform/ending/memory_reserve.h"

#include <atomic>
#include <cstddef>
#include <sys/mman.h>

namespace tolvane::MemoryReserve {

namespace {

// Allocators take their memory from the system in pieces of up to 64 MiB.
constexpr std::size_t size = std::size_t{64} << 20;

std::atomic<void*> held = nullptr;

}  // namespace

void hold() noexcept {
  if (held != nullptr) {
    return;
  }
  void* const memory =
      ::mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  void* none = nullptr;
  if (memory != MAP_FAILED && !held.compare_exchange_strong(none, memory)) {
    ::munmap(memory, size);
  }
}

void release() noexcept {
  if (void* const memory = held.exchange(nullptr)) {
    ::munmap(memory, size);
  }
}

}  // namespace tolvane::MemoryReserve
