#include "engine/primitives/conversion_failure.h"

#include <utility>

namespace tolvane {

ConversionFailure::ConversionFailure(std::string description, bool isCancelled)
    : description_(std::move(description)), isCancelled_(isCancelled) {}

ConversionFailure ConversionFailure::message(std::string sentence) {
  return {std::move(sentence), false};
}

ConversionFailure ConversionFailure::cancelled() {
  return {"Cancelled. Your source files are unchanged.", true};
}

}  // namespace tolvane
