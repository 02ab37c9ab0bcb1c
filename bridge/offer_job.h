#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "engine/primitives/value.h"

namespace tolvane {

/// The job of an offer, as "startJob" wants it. Every interface makes it here, so that the same
/// choices give the same job. Pure functions; any thread.
struct OfferJob {
  std::string action;
  Value::Map options;

  /// @param offer as the channel sends it.
  /// @param chosen what the user set; a field of the offer that is not there keeps its default.
  /// @throws UnknownOption
  [[nodiscard]] static OfferJob make(const Value& offer, const Value::Map& chosen);
};

/// An option that has no meaning for the job; what() names those that have one.
class UnknownOption : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The options that a job may have, by their keys.
class OptionKeys {
 public:
  /// Those of the offer's fields, then those of the native action that performs it.
  [[nodiscard]] static OptionKeys ofOffer(const Value& offer);
  /// @param action none for one that there is not.
  [[nodiscard]] static OptionKeys ofAction(std::string_view action);

  /// @throws UnknownOption when `key` is none of them.
  void require(std::string_view key) const;

 private:
  [[nodiscard]] std::string listed() const;

  std::vector<std::string> keys_;
};

}  // namespace tolvane
