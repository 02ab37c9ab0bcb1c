#include "bridge/offer_job.h"

#include <algorithm>

#include "engine/native_action.h"

namespace tolvane {

namespace {

const Value::List& fieldsOf(const Value& offer) {
  static const Value::List none;
  const Value::List* fields = offer["fields"].list();
  return fields != nullptr ? *fields : none;
}

/// The native action that performs the offer; empty when outside engines do.
std::string nativeActionOf(const Value& offer) {
  const std::string* action = offer["nativeAction"].text();
  return action != nullptr ? *action : std::string();
}

}  // namespace

OfferJob OfferJob::make(const Value& offer, const Value::Map& chosen) {
  const OptionKeys known = OptionKeys::ofOffer(offer);
  OfferJob job = {nativeActionOf(offer), {}};
  for (const Value& field : fieldsOf(offer)) {
    job.options[*field["key"].text()] = field["default"];
  }
  for (const auto& [key, value] : chosen) {
    known.require(key);
    job.options[key] = value;
  }
  if (job.action.empty()) {
    job.action = "universal";
    job.options["capabilityID"] = offer["id"];
  }
  return job;
}

OptionKeys OptionKeys::ofOffer(const Value& offer) {
  OptionKeys known = ofAction(nativeActionOf(offer));
  std::vector<std::string> fields;
  for (const Value& field : fieldsOf(offer)) {
    fields.push_back(*field["key"].text());
  }
  known.keys_.insert(known.keys_.begin(), fields.begin(), fields.end());
  return known;
}

OptionKeys OptionKeys::ofAction(std::string_view action) {
  OptionKeys known;
  if (const auto native = nativeAction(action)) {
    const auto keys = optionsOf(*native);
    known.keys_.assign(keys.begin(), keys.end());
  }
  return known;
}

void OptionKeys::require(std::string_view key) const {
  if (std::find(keys_.begin(), keys_.end(), key) == keys_.end()) {
    throw UnknownOption("This has no option " + std::string(key) + ", " + listed() + ".");
  }
}

std::string OptionKeys::listed() const {
  std::string text;
  for (const std::string& key : keys_) {
    text += (text.empty() ? "only " : ", ") + key;
  }
  return text.empty() ? "nor any other" : text;
}

}  // namespace tolvane
