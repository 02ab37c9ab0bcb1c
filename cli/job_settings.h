#pragma once

#include <string>

#include "bridge/offer_job.h"
#include "cli/arguments.h"
#include "engine/primitives/value.h"

namespace tolvane {

/// The options of a native action from the command line's --set KEY=VALUE, each of its key's type.
/// @param action one that there is not has none, and is left to the engine, which says so.
/// @throws UsageError for a key that the action does not have and for a value of the wrong type.
[[nodiscard]] Value::Map actionOptions(const Arguments& arguments, const std::string& action);

/// The job of an offer with the options of --set KEY=VALUE, each of its field's type.
/// @param offer as the channel sends it.
/// @throws UsageError for a key that the offer does not have and for a value of the wrong type.
[[nodiscard]] OfferJob offerJob(const Arguments& arguments, const Value& offer);

}  // namespace tolvane
