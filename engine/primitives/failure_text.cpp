#include "engine/primitives/failure_text.h"

#include <new>
#include <stdexcept>
#include <system_error>

namespace tolvane::FailureText {

std::string of(const std::exception& failure) {
  const auto* system = dynamic_cast<const std::system_error*>(&failure);
  const bool needsThread =
      system != nullptr && system->code() == std::errc::resource_unavailable_try_again;
  const bool needsMemory = dynamic_cast<const std::bad_alloc*>(&failure) != nullptr ||
                           dynamic_cast<const std::length_error*>(&failure) != nullptr;
  if (needsMemory || needsThread) {
    return "There is not enough memory for this. Close other programs, or choose fewer or smaller "
           "files.";
  }
  return failure.what();
}

}  // namespace tolvane::FailureText
